#!/usr/bin/env bash
# Installs what is missing, checks the format of the sources, then builds and tests each preset.
#
#     Scripts/test.sh [PRESET...]      default: release asan
#
# It stops at the first step that fails. The last line tells how many tests passed and failed; a step other than the
# tests that fails counts as one failure.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
presets=("$@")
[[ $# -gt 0 ]] || presets=(release asan)

passed=0
failed=0

finish()
{
    local status=$?
    if [[ $status -ne 0 && $failed -eq 0 ]]; then
        failed=1
    fi
    printf '%d passed, %d failed\n' "$passed" "$failed"
}
trap finish EXIT

fail()
{
    printf 'test.sh: %s\n' "$*" >&2
    exit 1
}

# Release 14 of the formatter is the distribution's; others format differently.
formatter()
{
    local candidate
    for candidate in clang-format-14 clang-format; do
        if [[ $("$candidate" --version 2>/dev/null) == *'version 14.'* ]]; then
            printf '%s' "$candidate"
            return
        fi
    done
    fail "clang-format 14 was not found."
}

checkFormat()
{
    local format files
    format=$(formatter)
    # A checkout may belong to somebody else than who runs the tests.
    mapfile -d '' files < <(git -c safe.directory='*' ls-files -z -- '*.h' '*.cpp')
    [[ ${#files[@]} -gt 0 ]] || fail "no tracked source was found: the check of formats needs the git checkout."
    printf '%s\0' "${files[@]}" | xargs -0 "$format" --dry-run -Werror ||
        fail "sources are not formatted. Run $format -i on the files named above."
    printf '%d sources are formatted.\n' "${#files[@]}"
}

# Adds the counts of a JUnit file; one that is missing or holds no test is a failure.
count()
{
    local counts
    counts=$(python3 - "$1" <<'PYTHON'
import sys
import xml.etree.ElementTree

suite = xml.etree.ElementTree.parse(sys.argv[1]).getroot()
total, failures, skipped, disabled = (int(suite.get(key, 0)) for key in ("tests", "failures", "skipped", "disabled"))
if total == 0:
    sys.exit(sys.argv[1] + ": no test was run.")
print(total - failures - skipped - disabled, failures)
PYTHON
    ) || fail "the results of the tests could not be read from $1."
    passed=$((passed + ${counts% *}))
    failed=$((failed + ${counts#* }))
}

testPreset()
{
    local preset=$1 junit=$root/build/$1/junit.xml status=0
    printf '\n== %s\n' "$preset"
    cmake --preset "$preset" || fail "preset $preset could not be configured; the reason stands above."
    cmake --build --preset "$preset" || fail "preset $preset could not be built; the first error stands above."
    rm -f -- "$junit"
    ctest --preset "$preset" --output-junit "$junit" || status=$?
    count "$junit"
    [[ $status -eq 0 ]] || fail "tests of preset $preset failed; they are listed above."
}

"$root/Scripts/install-dependencies.sh"
cd -- "$root"
checkFormat
for preset in "${presets[@]}"; do
    testPreset "$preset"
done
