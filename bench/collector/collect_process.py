#!/usr/bin/env python3
"""Times `keltemporalxmp COMMAND --json FILE` (collect unless given; pantry also reads every nested
document) as a whole process on the nested composition of bench_collector (1,110 nested documents,
MARKERS markers each), the streaming reader against `--reader toolkit`, runs interleaved so that
both see the same load; checks both print the same.

Usage: collect_process.py BUILD_DIR [MARKERS [RUNS [COMMAND]]]   (BUILD_DIR: build/release)
Prints the medians of wall time and of user + system CPU time, the ratios and the peak RSS.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time


def run(command):
    """Wall seconds, CPU seconds (user + system) and peak RSS in MB of one run; output discarded."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    if status != 0:
        sys.exit(f"{' '.join(command)} failed with status {status}")
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def main(argv):
    if len(argv) < 2:
        sys.exit(__doc__)
    build = argv[1]
    markers = argv[2] if len(argv) > 2 else "20"
    runs = int(argv[3]) if len(argv) > 3 else 5
    command = argv[4] if len(argv) > 4 else "collect"
    tool = os.path.join(build, "tools/keltemporalxmp/keltemporalxmp")
    with tempfile.TemporaryDirectory() as scratch:
        packet = os.path.join(scratch, "composition.xmp")
        subprocess.run([os.path.join(build, "bench/bench_collector"), "--write-composition", markers, packet],
                       check=True)
        readers = {"fast": [tool, command, "--json", packet],
                   "toolkit": [tool, command, "--json", "--reader", "toolkit", packet]}
        outputs = {name: subprocess.run(command, check=True, capture_output=True).stdout
                   for name, command in readers.items()}
        if outputs["fast"] != outputs["toolkit"]:
            sys.exit("the two readers printed different answers")
        times = {name: [] for name in readers}
        for _ in range(runs):
            for name, command in readers.items():
                times[name].append(run(command))
        size = os.path.getsize(packet) / 1e6
    records = outputs["fast"].count(b'"form"') + outputs["fast"].count(b'"item"')
    print(f"composition: {size:.1f} MB, {records} records, {runs} runs each")
    medians = {}
    for name, samples in times.items():
        wall, cpu, rss = (statistics.median(column) for column in zip(*samples))
        medians[name] = (wall, cpu)
        print(f"{name:8} wall {wall:.3f} s  cpu {cpu:.3f} s  peak RSS {rss:.0f} MB")
    print(f"toolkit / fast: wall {medians['toolkit'][0] / medians['fast'][0]:.1f}x, "
          f"cpu {medians['toolkit'][1] / medians['fast'][1]:.1f}x")


if __name__ == "__main__":
    main(sys.argv)
