#!/usr/bin/env python3
"""Times `keltemporalxmp markers --json` over a batch of small media files in one process: COUNT
copies of a WAV file (9 KB of silence) carrying the markers of examples/interview.json, one tool
build against another (the baseline: a build of an earlier commit), runs interleaved so that both see
the same load; checks both print the same.

Usage: media_batch.py TOOL BASELINE_TOOL [COUNT [RUNS]]
Prints the medians of user + system CPU and of wall time, and their ratio.
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import wave

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def run(command, cwd):
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, cwd=cwd)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{command[0]} failed with status {status}")
    return usage.ru_utime + usage.ru_stime, time.perf_counter() - start


def main(argv):
    if len(argv) < 3:
        sys.exit(__doc__)
    tools = {"tool": os.path.abspath(argv[1]), "baseline": os.path.abspath(argv[2])}
    count = int(argv[3]) if len(argv) > 3 else 1000
    runs = int(argv[4]) if len(argv) > 4 else 9
    with tempfile.TemporaryDirectory() as scratch:
        first = os.path.join(scratch, "clip.wav")
        with wave.open(first, "wb") as audio:
            audio.setnchannels(1)
            audio.setsampwidth(2)
            audio.setframerate(8000)
            audio.writeframes(bytes(8000))
        subprocess.run([tools["tool"], "write-markers", "--from", os.path.join(SOURCE, "examples/interview.json"),
                        first], check=True, stdout=subprocess.DEVNULL)
        files = [f"clip{index:05}.wav" for index in range(count)]
        for name in files:
            shutil.copyfile(first, os.path.join(scratch, name))
        outputs = {name: subprocess.run([tool, "markers", "--json", *files], cwd=scratch, check=True,
                                        capture_output=True).stdout for name, tool in tools.items()}
        if outputs["tool"] != outputs["baseline"]:
            sys.exit("the two builds printed different markers")
        samples = {name: [] for name in tools}
        for _ in range(runs):
            for name, tool in tools.items():
                samples[name].append(run([tool, "markers", "--json", *files], scratch))
        size = os.path.getsize(first) / 1e3
    print(f"{count} files of {size:.1f} KB, {runs} runs each")
    medians = {name: [statistics.median(column) for column in zip(*values)] for name, values in samples.items()}
    for name, (cpu, wall) in medians.items():
        print(f"{name:8} cpu {cpu:.3f} s  wall {wall:.3f} s")
    print(f"tool / baseline: cpu {medians['tool'][0] / medians['baseline'][0]:.2f}, "
          f"wall {medians['tool'][1] / medians['baseline'][1]:.2f}")


if __name__ == "__main__":
    main(sys.argv)
