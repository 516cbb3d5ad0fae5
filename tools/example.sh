#!/usr/bin/env bash
# Builds the tool, writes sample captures of the three streams into
# scratch/example and converts them there as a user would: every stream file
# of the directory, first in the default (correlated) mode, then in raw mode,
# then into one timeline trace of the whole session.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j "$(nproc)" --target zyntelbin2json zyntelbin2trace make_samples

rm -rf scratch/example
mkdir -p scratch/example
build/make_samples scratch/example
cd scratch/example
../../build/zyntelbin2json
../../build/zyntelbin2json -raw
../../build/zyntelbin2trace

for json in *.json; do
    echo
    echo "== $json: $(wc -c < "$json") bytes; its first lines:"
    head -n 30 "$json"
done

echo
echo "The timeline trace of the sample session is scratch/example/zyntel_trace.json:"
echo "open it in Perfetto UI (or any viewer of the Trace Event Format)."
