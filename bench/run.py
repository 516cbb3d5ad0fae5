#!/usr/bin/env python3
"""Throughput and memory benchmark of zyntelbin2json.

Builds a Release tool, generates large captures of the three streams and,
for each capture and for correlated mode, -raw and -raw -hex, measures the
tool's wall time, input and output MB/s and peak resident memory, and, side
by side, the time `cat` takes to copy the JSON the tool wrote to a new file
on the same disk. Prints a table with the ratio tool time / copy time
(medians of --runs runs). Every timed command writes a new file and starts
after a sync, so that neither pays for the write-back of the other's output. A second table shows peak memory for firmware
captures of two sizes.

    bench/run.py [--fw-mib 256] [--host-mib 128] [--client-mib 128] [--runs 3]
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MODES = [("correlated", []), ("-raw", ["-raw"]), ("-raw -hex", ["-raw", "-hex"])]


def build(build_dir, targets=("zyntelbin2json", "make_bench_captures")):
    subprocess.run(["cmake", "-S", ROOT, "-B", build_dir, "-DCMAKE_BUILD_TYPE=Release", "-DZYNTEL_TESTS=OFF"],
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", build_dir, "-j", str(os.cpu_count() or 2), "--target", *targets],
                   check=True, stdout=subprocess.DEVNULL)


def timed(command, cwd, stdout=subprocess.DEVNULL):
    """Runs a command; returns (wall seconds, peak resident KiB).

    The command runs under GNU time, whose small process is what forks, so
    the peak is the command's own and not that of a copy of this script."""
    report = os.path.join(cwd, ".peak")
    start = time.perf_counter()
    result = subprocess.run(["/usr/bin/time", "-f", "%M", "-o", report] + command, cwd=cwd, stdout=stdout)
    elapsed = time.perf_counter() - start
    if result.returncode != 0:
        sys.exit(f"failed: {' '.join(command)}")
    with open(report) as text:
        peak = int(text.read().split()[-1])
    os.remove(report)
    return elapsed, peak


def output_name(capture, options):
    base = capture.rsplit(".", 1)[0]
    return base + (".raw.json" if "-raw" in options else ".json")


def measure(tool, directory, capture, options, runs):
    tool_times, rss, copy_times = [], [], []
    json_name = output_name(capture, options)
    json_path = os.path.join(directory, json_name)
    copy_path = os.path.join(directory, "copy.json")
    for _ in range(runs):
        # Each command writes a new file, starting with no dirty pages of an
        # earlier command waiting to be written back.
        for stale in (json_path, copy_path):
            if os.path.exists(stale):
                os.remove(stale)
        os.sync()
        seconds, peak = timed([tool, capture] + options, directory)
        tool_times.append(seconds)
        rss.append(peak)
        with open(copy_path, "wb") as copy:
            os.sync()
            seconds, _ = timed(["cat", json_name], directory, stdout=copy)
        copy_times.append(seconds)
    output_bytes = os.path.getsize(os.path.join(directory, json_name))
    os.remove(json_path)
    os.remove(copy_path)
    return statistics.median(tool_times), statistics.median(copy_times), max(rss), output_bytes


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fw-mib", type=int, default=256)
    parser.add_argument("--host-mib", type=int, default=128)
    parser.add_argument("--client-mib", type=int, default=128)
    parser.add_argument("--memory-mib", default="64,512", help="firmware capture sizes for the memory table")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--dir", default=os.path.join(ROOT, "scratch", "bench"))
    args = parser.parse_args()

    build_dir = os.path.join(ROOT, "build-release")
    build(build_dir)
    tool = os.path.join(build_dir, "zyntelbin2json")
    generator = os.path.join(build_dir, "make_bench_captures")
    shutil.rmtree(args.dir, ignore_errors=True)
    os.makedirs(args.dir)
    subprocess.run([generator, args.dir, str(args.fw_mib), str(args.host_mib), str(args.client_mib)], check=True)

    print(f"{'capture':<24} {'mode':<11} {'in MB':>7} {'out MB':>8} {'tool s':>7} {'in MB/s':>8} "
          f"{'out MB/s':>9} {'peak RSS':>9} {'cat s':>6} {'ratio':>6}")
    for capture in ["zyntel_fw_bench.bin", "zyntel_host_bench.bin", "zyntel_client_bench.bin"]:
        input_mb = os.path.getsize(os.path.join(args.dir, capture)) / 1e6
        if input_mb == 0:
            continue  # a size of 0 MiB was asked for
        for mode, options in MODES:
            tool_s, copy_s, rss_kib, output_bytes = measure(tool, args.dir, capture, options, args.runs)
            output_mb = output_bytes / 1e6
            print(f"{capture:<24} {mode:<11} {input_mb:7.1f} {output_mb:8.1f} {tool_s:7.2f} {input_mb / tool_s:8.1f} "
                  f"{output_mb / tool_s:9.1f} {rss_kib / 1024:7.1f}Mi {copy_s:6.2f} {tool_s / copy_s:6.2f}",
                  flush=True)

    print(f"\n{'firmware capture':<18} {'mode':<11} {'peak RSS':>9}")
    for size in [int(text) for text in args.memory_mib.split(",")]:
        directory = os.path.join(args.dir, f"memory-{size}")
        os.makedirs(directory)
        subprocess.run([generator, directory, str(size), "0", "0"], check=True)
        for mode, options in MODES:
            rss = timed([tool, "zyntel_fw_bench.bin"] + options, directory)[1]
            os.remove(os.path.join(directory, output_name("zyntel_fw_bench.bin", options)))
            print(f"{str(size) + ' MiB':<18} {mode:<11} {rss / 1024:7.1f}Mi", flush=True)
        shutil.rmtree(directory)
    shutil.rmtree(args.dir)


if __name__ == "__main__":
    main()
