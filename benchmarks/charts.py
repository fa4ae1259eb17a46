#!/usr/bin/python3
"""Draws the pictures of docs/scale.md and docs/performance.md.

usage: charts.py chain DATA PICTURE   also compares the real tills with the simulated ones
       charts.py table FILE PICTURE
"""
import csv
import pathlib
import sys

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams["svg.hashsalt"] = "chart"
from matplotlib import pyplot  # noqa: E402

UNITS = {"µs": 1e-3, "ms": 1, "s": 1e3}


def means(file, first, last, width):
    """Averages the curve over spans of `width` seconds: the span's middle, then requests a second by fate."""
    with open(file, newline="", encoding="utf-8") as lines:
        rows = [row for row in (list(map(int, row)) for row in csv.reader(lines))
                if first <= row[0] < last]
    return [[sum(column) / width for column in zip(*rows[i:i + width])]
            for i in range(0, len(rows) - width + 1, width)]


def draw_chain(data, picture):
    print("| minutes | real: served, turned away | simulated |")
    print("| ---: | ---: | ---: |")
    for real, few in zip(*(means(data / f"{name}.csv", 0, 600, 120) for name in ("real", "few"))):
        cells = [", ".join(f"{120 * mean:.0f}" for mean in kind[1:3]) for kind in (real, few)]
        print(f"| to {(real[0] + 60.5) / 60:.0f} | {cells[0]} | {cells[1]} |")
    figure, axes = pyplot.subplots(3, 1, figsize=(9, 9))
    for axis, name, end, width, title in zip(
            axes, ("10000", "real", "few"), (5000, 600, 600), (30, 10, 10),
            ("10,000 tills, simulated", "40 real tills", "the same simulated")):
        seconds, *fates = zip(*means(data / f"{name}.csv", -60, end, width))
        axis.stackplot([second / 60 for second in seconds], fates,
                       labels=("served", "turned away", "without an answer"),
                       colors=("#1b6ca8", "#c0562b", "#999999"))
        axis.set(title=title, xlabel="minutes since the service is back",
                 ylabel="requests a second")
    axes[0].legend(loc="lower right", fontsize=8)
    save(figure, picture)


def draw_table(file, picture):
    cells = [line.strip("| \n").split(" | ") for line in open(file, encoding="utf-8")]
    timed = [(row[0], *(float(value) * UNITS[unit] for value, unit in (
        row[1].split(), row[2].split(": ")[1].split()))) for row in cells
             if len(row) == 4 and row[1].split()[-1] in UNITS]
    names, ours, baseline = zip(*reversed(timed))
    figure, axis = pyplot.subplots(figsize=(9, 5))
    axis.barh([i + 0.2 for i in range(len(names))], ours, 0.4, label="ours", color="#1b6ca8")
    axis.barh([i - 0.2 for i in range(len(names))], baseline, 0.4, label="baseline", color="#999")
    axis.set_yticks(range(len(names)), names)
    axis.set(xscale="log", xlabel="milliseconds")
    axis.legend()
    save(figure, picture)


def save(figure, picture):
    figure.tight_layout()
    figure.savefig(picture, metadata={"Date": None})


if __name__ == "__main__":
    {"chain": draw_chain, "table": draw_table}[sys.argv[1]](*map(pathlib.Path, sys.argv[2:]))
