#!/usr/bin/env bash
# Builds and runs the whole test suite twice: once as the tool is shipped,
# once under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
tools/install_dependencies.sh
tools/install_browser_test_dependencies.sh

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure -j "$jobs")

cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DZYNTEL_SANITIZE=ON
cmake --build build-sanitize -j "$jobs"
(cd build-sanitize &&
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
        ctest --output-on-failure -j "$jobs")
