#!/usr/bin/env python3
"""Prints each format's export and import time for 100,000 markers beside the
baseline (ReadAllMarkers over the parsed packet), as medians of the repetitions.

Usage: bench_exchange --benchmark_repetitions=3 --benchmark_format=json | ratios.py
"""
import json
import sys

median = {}
for run in json.load(sys.stdin)["benchmarks"]:
    if run.get("aggregate_name") == "median":
        median[(run["run_name"].split("/")[0], run.get("label", ""))] = run["cpu_time"]

baseline = median[("ReadAllMarkersBaseline", "")]
print(f"Baseline, ReadAllMarkers of 100,000 markers: {baseline:.0f} ms")
print("| format | export (ms) | ratio | import (ms) | ratio |")
print("|---|---:|---:|---:|---:|")
for (name, label), time in median.items():
    if name == "Export":
        imported = median[("Import", label)]
        print(f"| {label} | {time:.0f} | {time / baseline:.2f} | {imported:.0f} | {imported / baseline:.2f} |")
