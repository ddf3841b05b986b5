#!/usr/bin/env bash
# Installs what is missing, builds what users run, and runs the main job on a real scan.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build/demo

fail()
{
    printf 'demo.sh: %s\n' "$*" >&2
    exit 1
}

"$root/Scripts/install-dependencies.sh" build

cd -- "$root"
mkdir -p -- "$build"
if ! cmake --preset release -B "$build" -DMU_BUILD_TESTS=OFF -DMU_BUILD_BENCHMARKS=OFF >"$build/configure.log" 2>&1; then
    cat -- "$build/configure.log" >&2
    fail "the build could not be configured; the reason stands above."
fi
cmake --build "$build" || fail "the build failed; the first error stands above."

"$build/bin/tlk" run Examples/Jobs/plate.json
