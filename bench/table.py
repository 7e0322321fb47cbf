#!/usr/bin/env python3
"""Prints the table of a benchmark run: zvp_bench --benchmark_format=json > run.json; bench/table.py run.json [before.json]

One line a row, in nanoseconds a call. With a second file the ratio of the first to it stands beside.
"""
import json
import sys


def load(path):
    with open(path) as file:
        rows = json.load(file)["benchmarks"]
    return {r["name"]: 1e9 / r["items_per_second"] for r in rows if "items_per_second" in r}


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    now = load(sys.argv[1])
    before = load(sys.argv[2]) if len(sys.argv) > 2 else {}
    width = max(map(len, now), default=10)
    for name, ns in now.items():
        ratio = f"  {ns / before[name]:6.2f}" if name in before else ""
        print(f"{name:{width}}  {ns:9.2f}{ratio}")


main()
