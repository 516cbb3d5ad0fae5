#!/usr/bin/env python3
"""Speed and memory of zyntelbin2trace against zyntelbin2json.

Builds Release tools, generates the benchmark captures of the three streams
(the same generator and sizes as bench/run.py) and times, per capture and for
the three together, zyntelbin2trace's export next to zyntelbin2json's
correlated conversion of the same files (medians of --runs runs, each command
writing a new file after a sync), wall time and CPU time (user + system,
steadier than wall time on a shared machine). A second table gives both tools' peak
memory on a firmware capture of --memory-mib MiB.

    bench/trace_export.py [--fw-mib 256] [--host-mib 128] [--client-mib 128] [--runs 3] [--memory-mib 512]
"""
import argparse
import os
import resource
import shutil
import statistics
import subprocess

from run import ROOT, build, timed

CAPTURES = ["zyntel_fw_bench.bin", "zyntel_host_bench.bin", "zyntel_client_bench.bin"]


def json_outputs(captures):
    return [capture.rsplit(".", 1)[0] + ".json" for capture in captures]


def cpu_seconds():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def run_json(tool, directory, captures):
    """zyntelbin2json converts the files one by one when given none: the same
    conversion as naming each, in one process."""
    return timed([tool] if len(captures) > 1 else [tool, captures[0]], directory), json_outputs(captures)


def run_trace(tool, directory, captures):
    return timed([tool, "-q", "-o", "trace.json"] + captures, directory), ["trace.json"]


def measure(run, tool, directory, captures, runs):
    """Median wall and CPU seconds, peak RSS in KiB and output bytes."""
    times, cpu_times, peaks, output_bytes = [], [], [], 0
    for _ in range(runs):
        os.sync()
        cpu_before = cpu_seconds()
        (seconds, peak), outputs = run(tool, directory, captures)
        cpu_times.append(cpu_seconds() - cpu_before)
        times.append(seconds)
        peaks.append(peak)
        paths = [os.path.join(directory, name) for name in outputs]
        output_bytes = sum(os.path.getsize(path) for path in paths)
        for path in paths:
            os.remove(path)
    return statistics.median(times), statistics.median(cpu_times), max(peaks), output_bytes


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fw-mib", type=int, default=256)
    parser.add_argument("--host-mib", type=int, default=128)
    parser.add_argument("--client-mib", type=int, default=128)
    parser.add_argument("--memory-mib", type=int, default=512)
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--dir", default=os.path.join(ROOT, "scratch", "bench-trace"))
    args = parser.parse_args()

    build_dir = os.path.join(ROOT, "build-release")
    build(build_dir, ("zyntelbin2json", "zyntelbin2trace", "make_bench_captures"))
    json_tool, trace_tool, generator = (os.path.join(build_dir, name) for name in
                                        ("zyntelbin2json", "zyntelbin2trace", "make_bench_captures"))
    shutil.rmtree(args.dir, ignore_errors=True)
    os.makedirs(args.dir)
    subprocess.run([generator, args.dir, str(args.fw_mib), str(args.host_mib), str(args.client_mib)], check=True)
    captures = [name for name in CAPTURES if os.path.getsize(os.path.join(args.dir, name)) > 0]

    print(f"{'captures':<24} {'in MB':>7} {'json MB':>8} {'trace MB':>9} {'json s':>7} {'trace s':>8} {'ratio':>6} "
          f"{'json cpu':>9} {'trace cpu':>10} {'ratio':>6} {'json RSS':>9} {'trace RSS':>10}")
    for group in [[name] for name in captures] + ([captures] if len(captures) > 1 else []):
        label = group[0] if len(group) == 1 else "all three"
        input_mb = sum(os.path.getsize(os.path.join(args.dir, name)) for name in group) / 1e6
        json_s, json_cpu, json_rss, json_bytes = measure(run_json, json_tool, args.dir, group, args.runs)
        trace_s, trace_cpu, trace_rss, trace_bytes = measure(run_trace, trace_tool, args.dir, group, args.runs)
        print(f"{label:<24} {input_mb:7.1f} {json_bytes / 1e6:8.1f} {trace_bytes / 1e6:9.1f} {json_s:7.2f} "
              f"{trace_s:8.2f} {trace_s / json_s:6.2f} {json_cpu:9.2f} {trace_cpu:10.2f} {trace_cpu / json_cpu:6.2f} "
              f"{json_rss / 1024:7.1f}Mi {trace_rss / 1024:8.1f}Mi", flush=True)
    shutil.rmtree(args.dir)

    directory = os.path.join(args.dir, "memory")
    os.makedirs(directory)
    subprocess.run([generator, directory, str(args.memory_mib), "0", "0"], check=True)
    json_rss = measure(run_json, json_tool, directory, CAPTURES[:1], 1)[2]
    trace_rss = measure(run_trace, trace_tool, directory, CAPTURES[:1], 1)[2]
    print(f"\nfirmware capture of {args.memory_mib} MiB: peak RSS zyntelbin2json {json_rss / 1024:.1f} MiB, "
          f"zyntelbin2trace {trace_rss / 1024:.1f} MiB")
    shutil.rmtree(args.dir)


if __name__ == "__main__":
    main()
