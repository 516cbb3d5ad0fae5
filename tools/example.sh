#!/usr/bin/env bash
# Builds the tool, writes sample captures of the three streams into
# scratch/example and converts them there as a user would: every stream file
# of the directory, first in the default (correlated) mode, then in raw mode.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j "$(nproc)" --target zyntelbin2json make_samples

rm -rf scratch/example
mkdir -p scratch/example
build/make_samples scratch/example
cd scratch/example
../../build/zyntelbin2json
../../build/zyntelbin2json -raw

for json in *.json; do
    echo
    echo "== $json: $(wc -c < "$json") bytes; its first lines:"
    head -n 30 "$json"
done
