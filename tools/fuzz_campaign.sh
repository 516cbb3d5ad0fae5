#!/usr/bin/env bash
# A long fuzzing campaign for one target, then its corpus rebuilt:
#   tools/fuzz_campaign.sh <target> [cpu-seconds]      (default 600)
# <target> is a fuzz/*_fuzz.cpp name without "_fuzz.cpp", e.g. fw_raw. It
# needs the libFuzzer build in build-fuzz, or in $FUZZ_BUILD (README,
# Fuzzing). The target runs at the lowest priority until it has used the
# given CPU time (not wall time: the machine is shared), starting from
# fuzz/corpus/<target> and the seeds of make_fuzz_seeds; then everything
# worth keeping is merged into a fresh, minimal fuzz/corpus/<target>. A
# finding stops the run and is left in <build>/campaign/<target>/ as
# crash-*, leak-*, oom-* or timeout-*.
set -euo pipefail
cd "$(dirname "$0")/.."
target=$1
cpu_limit=${2:-600}
build=${FUZZ_BUILD:-build-fuzz}
fuzzer=$build/fuzz/${target}_fuzz
work=$build/campaign/$target
corpus=fuzz/corpus/$target
# Inputs stay short so that the corpus stays small; comparisons guide the
# search (value profile) but only code coverage decides what the merge keeps.
options=(-max_len=2048 -timeout=10 -rss_limit_mb=1024 -malloc_limit_mb=64)

rm -rf "$work" && mkdir -p "$work/found" "$work/seeds" "$work/merged" "$corpus"
"$build/make_fuzz_seeds" "$work/all-seeds"
if [ -d "$work/all-seeds/$target" ]; then mv "$work/all-seeds/$target"/* "$work/seeds/"; fi

nice -n 19 "$fuzzer" "${options[@]}" -use_value_profile=1 -print_final_stats=1 -artifact_prefix="$work/" \
    "$work/found" "$corpus" "$work/seeds" >"$work/log" 2>&1 &
pid=$!
ticks=$(getconf CLK_TCK)
cpu=0
while kill -0 "$pid" 2>/dev/null; do
    read -r -a stat <"/proc/$pid/stat" || break
    cpu=$(((stat[13] + stat[14]) / ticks)) # user and system time
    if [ "$cpu" -ge "$cpu_limit" ]; then kill -INT "$pid"; break; fi
    sleep 5
done
wait "$pid" || true
if ls "$work" | grep -qE '^(crash|leak|oom|timeout)-'; then
    echo "$target: finding kept in $work; see $work/log" >&2
    exit 1
fi
echo "$target: $cpu CPU seconds, $(grep -o 'number_of_executed_units: [0-9]*' "$work/log" | cut -d' ' -f2) executions"

nice -n 19 "$fuzzer" "${options[@]}" -merge=1 "$work/merged" "$corpus" "$work/found" "$work/seeds" >"$work/merge.log" 2>&1
# Inputs kept as regression cases (crash-*, ...) stay whatever the merge says.
find "$corpus" -name 'crash-*' -o -name 'leak-*' -o -name 'oom-*' -o -name 'timeout-*' | xargs -r cp -t "$work/merged"
rm -rf "$corpus" && mv "$work/merged" "$corpus"
echo "$target: corpus of $(ls "$corpus" | wc -l) files, $(du -sk --apparent-size "$corpus" | cut -f1) KiB"
