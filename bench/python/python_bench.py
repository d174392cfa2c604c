#!/usr/bin/env python3
"""The Python binding beside the command-line tool, and the archive scan on one and two workers.

Usage (release build): PYTHONPATH=build/release/python /usr/bin/python3 bench/python/python_bench.py \
    build/release/tools/keltemporalxmp/keltemporalxmp [--repetitions 5] [--files 1000]

1. kx.read_markers on a sidecar of 10,000 markers (a name, a comment and two
   cue points each, five types, one track each) against `keltemporalxmp
   markers --json` on the same file, run alternately: the call alone, and a
   whole `python3 -c` process that imports the module and reads the file.
2. examples/python/scan_archive.py's scan over FILES sidecars of 50 markers on
   a LocalCluster of one worker process and of two, each started and warmed
   up before it is timed.
Medians; the ratios are what counts.
"""

import argparse
import importlib.util
import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import keltemporalxmp as kx

SOURCE_DIR = Path(__file__).resolve().parents[2]
TYPES = ("Chapter", "Comment", "Cue", "Speech", "Segmentation")


def markers(count):
    second = kx.TICKS_PER_SECOND
    return [
        kx.Marker(
            name=f"marker {i}",
            type=TYPES[i % len(TYPES)],
            start=i * second,
            duration=second,
            comment=f"comment of marker {i}",
            cue_points=[("speaker", "Ann"), ("take", str(i))],
        )
        for i in range(count)
    ]


def sidecar(path, count):
    path.write_bytes(b"")
    kx.write_markers(path, markers(count), frame_rate=(25, 1))
    return path


def wall(command):
    begin = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return time.perf_counter() - begin


def timed(call):
    begin = time.perf_counter()
    call()
    return time.perf_counter() - begin


def read_markers_against_tool(tool, folder, repetitions):
    path = sidecar(folder / "markers-10000.xmp", 10000)
    assert len(kx.read_markers(path)) == 10000
    reader = [sys.executable, "-c", f"import keltemporalxmp as kx; kx.read_markers({str(path)!r})"]
    tool_times, call_times, process_times = [], [], []
    for _ in range(repetitions):
        tool_times.append(wall([tool, "markers", str(path), "--json"]))
        call_times.append(timed(lambda: kx.read_markers(path)))
        process_times.append(wall(reader))
    tool_time = statistics.median(tool_times)
    print(f"sidecar: {path.stat().st_size / 1e6:.1f} MB, 10,000 markers; medians of {repetitions}")
    print("| measure | time (s) | markers --json (s) | ratio |")
    print("|---|---:|---:|---:|")
    for name, times in (("kx.read_markers call", call_times), ("python3 -c import + read_markers", process_times)):
        median = statistics.median(times)
        print(f"| {name} | {median:.3f} | {tool_time:.3f} | {median / tool_time:.2f} |")


def load_scan_example():
    module_spec = importlib.util.spec_from_file_location("scan_archive", SOURCE_DIR / "examples" / "python" / "scan_archive.py")
    module = importlib.util.module_from_spec(module_spec)
    module_spec.loader.exec_module(module)
    return module


def worker_cpu(client):
    return sum(client.run(time.process_time).values())


def scan_on_workers(scan_archive, root, workers, repetitions):
    """Median wall time, and the CPU seconds of this process (client and scheduler) and of the workers per scan."""
    from distributed import Client

    paths = scan_archive.find_files(str(root))
    with scan_archive.local_cluster(workers) as cluster, Client(cluster) as client:
        client.run(__import__, "keltemporalxmp")
        times = []
        with open(os.devnull, "w") as out:
            scan_archive.scan_on_cluster(client, paths[:50], out)  # warm-up
            own, theirs = time.process_time(), worker_cpu(client)
            for _ in range(repetitions):
                times.append(timed(lambda: scan_archive.scan_on_cluster(client, paths, out)))
            own, theirs = time.process_time() - own, worker_cpu(client) - theirs
    return statistics.median(times), own / repetitions, theirs / repetitions


def scan_speedup(folder, files, repetitions):
    scan_archive = load_scan_example()
    root = folder / "archive"
    for i in range(files):
        sub = root / f"reel{i % 10}"
        sub.mkdir(parents=True, exist_ok=True)
        sidecar(sub / f"clip{i}.xmp", 50)
    one, one_client, one_workers = scan_on_workers(scan_archive, root, 1, repetitions)
    two, two_client, two_workers = scan_on_workers(scan_archive, root, 2, repetitions)
    print(f"scan of {files} sidecars of 50 markers, medians of {repetitions}")
    print("| workers | time (s) | speed-up | client CPU (s) | workers' CPU (s) |")
    print("|---:|---:|---:|---:|---:|")
    print(f"| 1 | {one:.2f} | 1.00 | {one_client:.2f} | {one_workers:.2f} |")
    print(f"| 2 | {two:.2f} | {one / two:.2f} | {two_client:.2f} | {two_workers:.2f} |")
    # On free cores the client's work overlaps the workers', which two workers halve.
    bound = max(one_client, one_workers) / max(two_client, two_workers / 2)
    print(f"speed-up the CPU times allow on two free cores: {bound:.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("tool", help="the built keltemporalxmp program")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--files", type=int, default=1000)
    options = parser.parse_args()
    print(f"load average before: {os.getloadavg()[0]:.1f} on {os.cpu_count()} CPUs")
    with tempfile.TemporaryDirectory() as folder:
        read_markers_against_tool(options.tool, Path(folder), options.repetitions)
        scan_speedup(Path(folder), options.files, options.repetitions)
    print(f"load average after: {os.getloadavg()[0]:.1f}")


if __name__ == "__main__":
    main()
