#!/usr/bin/env python3
"""Draws how many times as fast ours is as other libraries, a bar for each, as SVG.

    chart.py OUTPUT.svg RESULT.json...     the results of Google Benchmark, as table.py takes them
    chart.py OUTPUT.svg TABLES.md          the tables of a document that have columns "x LIBRARY"

A bar is the geometric mean over all inputs of one kind of work.
"""

import collections
import re
import sys

import table

COLOURS = ["#4477aa", "#ee6677", "#228833", "#ccbb44", "#66ccee", "#aa3377", "#999999",
           "#332288", "#ee9944", "#000000"]


def means_of_results(paths):
    """The mean ratio by kind of work, then by library."""
    times, _, _, _ = table.read_results(paths)
    ratios = collections.defaultdict(lambda: collections.defaultdict(list))
    for (work, _), by_side in times.items():
        for side, values in by_side.items():
            if side != table.OURS and table.OURS in by_side:
                ratios[work][side].append(table.statistics.median(values) /
                                          table.statistics.median(by_side[table.OURS]))
    return {work: {side: table.geometric_mean(values) for side, values in sides.items()}
            for work, sides in sorted(ratios.items(), key=lambda item: table.WORKS.index(item[0]))}


def means_of_document(path):
    """The same from Markdown: a kind of work is a heading, or what stands before "x" in a column."""
    means, heading, columns, ratios = {}, "", [], {}
    with open(path, encoding="utf-8") as file:
        lines = file.read().splitlines() + [""]
    for line in lines:
        cells = [cell.strip() for cell in line.strip("|").split("|")] if line.startswith("|") else []
        if line.startswith("#"):
            heading = line.lstrip("# ")
        elif not cells:
            for (work, side), values in ratios.items():
                means.setdefault(work, {}).setdefault(side, table.geometric_mean(values))
            columns, ratios = [], {}
        elif not columns:
            columns = [re.fullmatch(r"(.*?) ?x ([\w+-]+(?: [A-Z][\w+-]*)?)", cell) for cell in cells]
        elif not cells[0].startswith("geometric"):
            for cell, column in zip(cells, columns):
                if column and re.fullmatch(r"\d+\.?\d*", cell):
                    key = (column[1] or heading, column[2])
                    ratios.setdefault(key, []).append(float(cell))
    return means


def draw(means, output):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams.update({"svg.fonttype": "none", "svg.hashsalt": "nuxml", "font.size": 10})
    from matplotlib import pyplot

    sides = sorted({side for by_side in means.values() for side in by_side})
    colours = {side: COLOURS[index % len(COLOURS)] for index, side in enumerate(sides)}
    figure, axes = pyplot.subplots(figsize=(8, 1 + 0.24 * sum(len(m) + 1 for m in means.values())))
    place, ticks, seen = 0.0, [], set()
    for work, by_side in means.items():
        ticks.append((place + (len(by_side) - 1) / 2, work))
        for side, mean in sorted(by_side.items()):
            axes.barh(place, mean - 1, left=1, color=colours[side], height=0.8,
                      label=None if side in seen else side)
            axes.annotate(f"{mean:.2f}", (mean, place), va="center", fontsize=8, xytext=(
                3 if mean >= 1 else -3, 0), textcoords="offset points",
                ha="left" if mean >= 1 else "right")
            seen.add(side)
            place += 1
        place += 1
    axes.set_xscale("log")
    axes.set_xlim(0.2, 60)
    axes.set_xticks([0.25, 0.5, 1, 2, 4, 8, 16, 32])
    axes.xaxis.set_major_formatter(lambda value, _: f"{value:g}")
    axes.xaxis.set_minor_locator(matplotlib.ticker.NullLocator())
    axes.axvline(1, color="black", linewidth=0.8)
    axes.set_yticks([tick for tick, _ in ticks], [work for _, work in ticks])
    axes.invert_yaxis()
    axes.set_xlabel("times as fast as the other library (right of 1: ours is faster)")
    axes.legend(loc="lower right", frameon=False)
    for side in ("top", "right"):
        axes.spines[side].set_visible(False)
    figure.tight_layout()
    figure.savefig(output, metadata={"Date": None})


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    output, *inputs = sys.argv[1:]
    means = means_of_document(inputs[0]) if inputs[0].endswith(".md") else means_of_results(inputs)
    if not any(means.values()):
        sys.exit("there is nothing to draw")
    draw(means, output)


if __name__ == "__main__":
    main()
