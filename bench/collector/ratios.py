#!/usr/bin/env python3
"""Prints the collector's median time per marker beside the baseline's, and
the growth from 20 to 40 markers per document; then the flat composition's
time per record beside the track reader's per marker.

Usage: bench_collector --benchmark_repetitions=5 --benchmark_format=json | ratios.py
"""
import json
import sys

per_marker = {}
total = {}
for run in json.load(sys.stdin)["benchmarks"]:
    if run.get("aggregate_name") == "median":
        total[run["run_name"]] = run["cpu_time"]
        per_marker[run["run_name"]] = run["cpu_time"] * 1e3 / run["markers"]  # ms to µs

print("| markers per document | collector (µs per marker) | baseline (µs per marker) | ratio |")
print("|---:|---:|---:|---:|")
for count in ("20", "40"):
    collect, baseline = per_marker["Collect/" + count], per_marker["CollectBaseline/" + count]
    print(f"| {count} | {collect:.1f} | {baseline:.1f} | {collect / baseline:.2f} |")
for name in ("Collect", "CollectBaseline"):
    print(f"{name}: 40 markers per document take {total[name + '/40'] / total[name + '/20']:.2f}x the time of 20")

flat, reader = per_marker["CollectFlat"], per_marker["CollectFlatBaseline"]
print(f"Flat 100,000 uses: collector {flat:.2f} µs per record, track reader {reader:.2f} µs per marker, "
      f"ratio {flat / reader:.2f}")
