#!/usr/bin/env python3
"""Byte comparison of two builds of zyntelbin2json on the benchmark captures.

Converts the same generated captures of the three streams with both tools,
in correlated mode, -raw and -raw -hex, and compares the JSON files after
masking what differs between any two runs: the hex-dump row keys (memory
addresses) and the "argv[0]" line. Prints one line per capture and mode and
exits with 1 if any output differs.

    bench/compare_outputs.py BEFORE_TOOL AFTER_TOOL [--mib 32] [--dir DIR]

The captures come from make_bench_captures of a Release build (see run.py).
"""
import argparse
import hashlib
import os
import re
import shutil
import subprocess
import sys

from run import MODES, ROOT, build, output_name

CAPTURES = ["zyntel_fw_bench.bin", "zyntel_host_bench.bin", "zyntel_client_bench.bin"]
ROW_KEY = re.compile(rb'^      "0x[0-9a-f]+"')


def masked_digest(path):
    digest = hashlib.sha256()
    with open(path, "rb") as text:
        for line in text:
            if b'"argv[0]"' in line:
                continue
            digest.update(ROW_KEY.sub(b"ADDR", line))
    return digest.hexdigest()


def convert(tool, directory, capture, options):
    json_path = os.path.join(directory, output_name(capture, options))
    subprocess.run([os.path.abspath(tool), capture] + options, cwd=directory, stdout=subprocess.DEVNULL, check=True)
    digest, size = masked_digest(json_path), os.path.getsize(json_path)
    os.remove(json_path)
    return digest, size


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("before")
    parser.add_argument("after")
    parser.add_argument("--mib", type=int, default=32, help="size of each capture")
    parser.add_argument("--dir", default=os.path.join(ROOT, "scratch", "compare"))
    args = parser.parse_args()

    build_dir = os.path.join(ROOT, "build-release")
    build(build_dir)
    shutil.rmtree(args.dir, ignore_errors=True)
    os.makedirs(args.dir)
    size = str(args.mib)
    subprocess.run([os.path.join(build_dir, "make_bench_captures"), args.dir, size, size, size], check=True)

    differences = 0
    for capture in CAPTURES:
        for mode, options in MODES:
            before, before_size = convert(args.before, args.dir, capture, options)
            after, after_size = convert(args.after, args.dir, capture, options)
            verdict = "same" if before == after else "DIFFERENT"
            differences += before != after
            print(f"{capture:<24} {mode:<11} {before_size:>12} {after_size:>12} bytes  {verdict}", flush=True)
    shutil.rmtree(args.dir)
    sys.exit(1 if differences else 0)


if __name__ == "__main__":
    main()
