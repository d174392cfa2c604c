#!/usr/bin/env python3
"""Prints each benchmark's median CPU time per ingredient at every size, its
growth from the smallest to the largest size, and its ratio to the baseline
(the benchmark of the same name with "Baseline" added) at each size.

Usage: bench_ingredients --benchmark_repetitions=5 --benchmark_format=json | growth.py
"""
import json
import sys

per_item = {}  # name -> {size: ms per ingredient}
for run in json.load(sys.stdin)["benchmarks"]:
    if run.get("aggregate_name") != "median":
        continue
    name, size = run["run_name"].split("/")[:2]
    to_ms = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]
    per_item.setdefault(name, {})[int(size)] = run["cpu_time"] * to_ms / int(size)

print("| benchmark | size | ms per ingredient | baseline ms per ingredient | ratio to baseline |")
print("|---|---:|---:|---:|---:|")
for name, sizes in per_item.items():
    if name.endswith("Baseline"):
        continue
    baseline = per_item.get(name + "Baseline", {})
    for size, time in sorted(sizes.items()):
        base = baseline.get(size)
        ratio = f"{time / base:.2f}" if base else "-"
        base_text = f"{base:.3f}" if base else "-"
        print(f"| {name} | {size} | {time:.3f} | {base_text} | {ratio} |")
print()
print("| benchmark | growth of the per-ingredient cost, smallest to largest size |")
print("|---|---:|")
for name, sizes in per_item.items():
    ordered = [sizes[size] for size in sorted(sizes)]
    print(f"| {name} | {ordered[-1] / ordered[0]:.2f}x |")
