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

# With clang at hand, a short fuzz run of every target, 30 s each, starting
# from its kept corpus: a crash, a hang, a leak or an oversized allocation
# fails the run and leaves the input in build-fuzz/smoke/<target>/.
if command -v clang++ >/dev/null; then
    CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYNTEL_FUZZ=ON -DZYNTEL_TESTS=OFF
    cmake --build build-fuzz -j "$jobs"
    smoke() {
        local work=build-fuzz/smoke/$1
        rm -rf "$work" && mkdir -p "$work/found"
        "build-fuzz/fuzz/$1_fuzz" -max_total_time=30 -max_len=2048 -timeout=10 -malloc_limit_mb=64 \
            -artifact_prefix="$work/" "$work/found" "fuzz/corpus/$1" >"$work/log" 2>&1 ||
            { tail -40 "$work/log"; echo "fuzz target $1 failed: $work" >&2; return 1; }
    }
    export -f smoke
    basename -s _fuzz.cpp fuzz/*_fuzz.cpp | xargs -P "$jobs" -I{} bash -c 'smoke {}'
fi
