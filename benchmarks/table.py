#!/usr/bin/env python3
"""Prints one table of ratios from the JSON results of Google Benchmark.

    table.py RESULT.json...

A number says how many times as fast ours is as that library: the median time of its
repetitions divided by the median of ours. Benchmarks are named WORK/INPUT/SIDE.
"""

import collections
import json
import math
import statistics
import sys

OURS = "nuxml"
# Other forms of ours stand after ours, a copy is the limit and stands last.
LAST = "copy"
WORKS = ["read", "conform", "check", "rewrite", "escape", "unescape", "load", "loadFirst", "destroy",
         "write", "format", "select", "edit", "save", "restore"]


def read_results(paths):
    """Times and bytes per second by work and input, then by side; who cannot be timed; and how
    many times as long as its processor time a benchmark took."""
    times = collections.defaultdict(lambda: collections.defaultdict(list))
    speeds = collections.defaultdict(lambda: collections.defaultdict(list))
    failures, waits = [], []
    for path in paths:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        # Nothing is written when the filter leaves nothing to measure.
        for result in json.loads(text)["benchmarks"] if text else []:
            if result.get("run_type", "iteration") != "iteration":
                continue
            work, subject, side = result["name"].split("/")[:3]
            if result.get("error_occurred"):
                failures.append(f"{work} {subject}: {side} {result['error_message']}")
                continue
            # What was measured in a process of its own stands as the time on the wall.
            if result["name"].endswith("/manual_time"):
                times[work, subject][side].append(result["real_time"])
            else:
                times[work, subject][side].append(result["cpu_time"])
                waits.append(result["real_time"] / result["cpu_time"])
            speeds[work, subject][side].append(result.get("bytes_per_second", 0.0))
    return times, speeds, sorted(set(failures)), statistics.median(waits or [1])


def order_of_side(side):
    return (side == LAST, not side.startswith(OURS), side)


def geometric_mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def format_row(cells, widths):
    return " | ".join(cell.ljust(width) if index < 1 else cell.rjust(width)
                      for index, (cell, width) in enumerate(zip(cells, widths)))


def ratio_rows(times, speeds, sides):
    """One row per input, and the geometric mean after the last input of each kind of work."""
    ratios = collections.defaultdict(lambda: collections.defaultdict(list))
    rows = []
    # Interleaved runs come in any order.
    for work in sorted({work for work, _ in times}, key=WORKS.index):
        for subject in sorted(subject for row_work, subject in times if row_work == work):
            by_side = times[work, subject]
            ours = by_side.get(OURS)
            megabytes = statistics.median(speeds[work, subject][OURS]) / 1e6 if ours else None
            cells = [f"{work} {subject}", f"{megabytes:.0f}" if ours else "-"]
            for side in sides:
                if ours and side in by_side:
                    ratio = statistics.median(by_side[side]) / statistics.median(ours)
                    ratios[work][side].append(ratio)
                    cells.append(f"{ratio:.2f}")
                elif side in by_side:
                    # Without ours there is nothing to divide by; the plain speed still tells.
                    speed = statistics.median(speeds[work, subject][side]) / 1e6
                    cells.append(f"{speed:.0f} MB/s")
                else:
                    cells.append("-")
            rows.append(cells)
        if ratios[work]:
            rows.append([f"{work}, geometric mean", ""] + [
                f"{geometric_mean(ratios[work][side]):.2f}" if ratios[work][side] else "-"
                for side in sides])
    return rows


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    times, speeds, failures, wait = read_results(sys.argv[1:])
    sides = sorted({side for by_side in times.values() for side in by_side if side != OURS},
                   key=order_of_side)
    rows = ratio_rows(times, speeds, sides)
    head = ["work and input", f"{OURS} MB/s"] + [f"x {side}" for side in sides]
    widths = [max(len(row[column]) for row in [head] + rows) for column in range(len(head))]
    print(format_row(head, widths))
    print("-|-".join("-" * width for width in widths))
    for row in rows:
        print(format_row(row, widths))
    repetitions = {len(values) for by_side in times.values() for values in by_side.values()}
    print(f"\nMedians of {min(repetitions, default=0)} interleaved repetitions, processor time."
          " A number above 1 means that ours is faster.")
    if wait > 1.2:
        print(f"The machine was busy with other work (it took {wait:.1f} times the processor time):"
              " expect noise.")
    for failure in failures:
        print(f"Not timed: {failure}")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
