#!/usr/bin/env bash
# Installs the Debian packages the build and the test suite use, each only
# when it is missing, so a machine that has them all is left untouched.
set -euo pipefail

packages=(
    cmake g++ libgtest-dev   # build and unit tests
    nlohmann-json3-dev       # parsing the trace in its tests
    groff-base man-db        # rendering the manual pages
    llvm-14-tools            # lit and FileCheck, for the end-to-end cases
    clang libclang-rt-14-dev # libFuzzer, for the short fuzz run of every target
)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    [[ $status == "install ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "installing missing packages: ${missing[*]}"
sudo=()
[[ $(id -u) -eq 0 ]] || sudo=(sudo)
"${sudo[@]}" apt-get update -q
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
