#!/usr/bin/env bash
# Installs the packages that are missing on a Debian machine: those of build and tests, only those of a build without
# tests, or those of the fuzzers.
#
#     Scripts/install-dependencies.sh [all|build|fuzz]
set -euo pipefail

buildPackages=(
    binutils
    cmake
    fonts-dejavu-core
    g++
    libasio-dev
    libcairo2-dev
    libcli11-dev
    libeigen3-dev
    libfmt-dev
    libpng-dev
    libpugixml-dev
    libtiff-dev
    libxxhash-dev
    libzip-dev
    ninja-build
    nlohmann-json3-dev
    pkg-config
)
testPackages=(
    clang-format
    git
    libbenchmark-dev
    libgmock-dev
    libgtest-dev
    python3
    python3-xxhash
    shellcheck
)
# Older releases of clang cannot read the distribution's own standard library.
fuzzPackages=(
    clang-19
    libclang-rt-19-dev
)

fail()
{
    printf '%s\n' "$*" >&2
    exit 1
}

isInstalled()
{
    [[ $(dpkg-query --show --showformat='${Status}' "$1" 2>/dev/null) == 'install ok installed' ]]
}

# Runs a command as root, by sudo if need be.
asRoot()
{
    if [[ $(id -u) -eq 0 ]]; then
        "$@"
    else
        sudo "$@"
    fi
}

case ${1:-all} in
    all) packages=("${buildPackages[@]}" "${testPackages[@]}") ;;
    build) packages=("${buildPackages[@]}") ;;
    fuzz) packages=("${buildPackages[@]}" "${fuzzPackages[@]}") ;;
    *) fail "install-dependencies.sh: '$1' is no choice. Say all, build, fuzz, or nothing for all." ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    fail "This machine has no apt-get. Install by hand what these Debian packages hold: ${packages[*]}"
fi

missing=()
for package in "${packages[@]}"; do
    isInstalled "$package" || missing+=("$package")
done
if [[ ${#missing[@]} -eq 0 ]]; then
    exit 0
fi

printf 'Installing %s\n' "${missing[*]}"
if [[ $(id -u) -ne 0 ]] && ! command -v sudo >/dev/null; then
    fail "Installing needs root, and there is no sudo. As root, run: apt-get install ${missing[*]}"
fi
asRoot apt-get update </dev/null || fail "apt-get update failed. Check the network and the package sources."
asRoot env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends "${missing[@]}" </dev/null ||
    fail "These packages could not be installed: ${missing[*]}"
