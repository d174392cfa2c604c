#!/usr/bin/env python3
"""Prints each benchmark's median time beside its baseline's and the ratio.

A baseline is the benchmark of the same name with "Baseline" after the
function name: ReadTime/90f25 pairs with ReadTimeBaseline/90f25.
Usage: bench_timestrings --benchmark_repetitions=10 \
           --benchmark_enable_random_interleaving=true --benchmark_format=json | ratios.py
"""
import json
import sys

medians = {}
allocations = {}
for run in json.load(sys.stdin)["benchmarks"]:
    if run.get("aggregate_name") == "median":
        medians[run["run_name"]] = run["cpu_time"]
        allocations[run["run_name"]] = run.get("allocations", 0.0)

print("| conversion | time (ns) | baseline (ns) | ratio | allocations per call |")
print("|---|---:|---:|---:|---:|")
for name, time in medians.items():
    function, _, argument = name.partition("/")
    if function.endswith("Baseline"):
        continue
    baseline = medians.get(function + "Baseline" + ("/" + argument if argument else ""))
    if baseline is None:
        continue
    print(f"| {name} | {time:.1f} | {baseline:.1f} | {time / baseline:.2f} | {allocations[name]:g} |")
