#!/usr/bin/python3
"""Prints a table of simulated chains' figures and draws their curves.

usage: draw.py DATA PICTURES
"""

import argparse
import csv
import json
import pathlib

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams["svg.hashsalt"] = "chain"
from matplotlib import pyplot  # noqa: E402

TILLS = (100, 1000, 10000)
KINDS = ("", "-no-jitter", "-no-retry-after", "-no-jitter-no-retry-after")
HEADER = ["tills", "jitter", "`Retry-After`", "seconds above 1.5 × capacity", "busiest second",
          "empty after", "of the ideal", "wasted", "oldest order", "put-offs on end",
          "customers unknown", "cashier's wait: mean, p99, longest"]


def curve(file):
    with open(file, newline="") as lines:
        return [{key: int(value) for key, value in row.items()} for row in csv.DictReader(lines)]


def requests(row):
    return row["served"] + row["turnedAway"] + row["inVain"]


def smooth(values, width):
    """Means over so many values, at the middle of each."""
    return [sum(values[i:i + width]) / width for i in range(0, len(values) - width + 1, width)]


def yes(value):
    return "yes" if value else "no"


def row_of(r):
    waits = r["waitsAfter"]
    return [f"{r['tills']:,}", yes(r["jitter"]), yes(r["retryAfter"]), str(r["longestOverload"]),
            f"{r['peak'] / r['capacity']:.1f} ×", f"{r['emptyAfter']:,.0f} s",
            f"{r['emptyAfter'] / r['ideal']:.2f}", f"{r['wasted']:.1%}",
            f"{r['oldest'] / 3600:.1f} h", str(r["mostPutOffs"]), f"{r['customersUnknown']:.1%}",
            f"{waits['mean']:.1f}, {waits['p99']:.1f}, {waits['longest']:.1f} s"]


def table(directory):
    rows = [HEADER, ["---"] * len(HEADER)]
    for tills in TILLS:
        rows += [row_of(json.loads((directory / f"{tills}{kind}.json").read_text()))
                 for kind in KINDS]
    return "\n".join("| " + " | ".join(row) + " |" for row in rows)


def draw_drain(directory, tills, file):
    """Requests a second around the end of the outage, by what became of them."""
    figure, axis = pyplot.subplots(figsize=(9, 3.5))
    figures = json.loads((directory / f"{tills}.json").read_text())
    rows = [row for row in curve(directory / f"{tills}.csv") if row["second"] >= -600]
    width = 30
    minutes = [second / 60 for second in smooth([row["second"] for row in rows], width)]
    parts = [smooth([row[part] for row in rows], width)
             for part in ("served", "turnedAway", "inVain")]
    axis.stackplot(minutes, parts, labels=("served", "turned away", "without an answer"),
                   colors=("#1b6ca8", "#c0562b", "#999999"))
    axis.axhline(figures["capacity"], color="black", linewidth=1, label="capacity")
    axis.axhline(1.5 * figures["capacity"], color="black", linewidth=1, linestyle=":",
                 label="1.5 × capacity")
    axis.set_title(f"{tills:,} tills")
    axis.set_xlabel("minutes since the service is back")
    axis.set_ylabel("requests a second")
    axis.legend(loc="upper right", fontsize=8)
    save(figure, file)


def draw_real(directory, file):
    figure, axis = pyplot.subplots(figsize=(9, 3.5))
    width = 5
    for name, label, colour in (("real", "200 real tills", "#c0562b"),
                                ("few", "the same simulated", "#1b6ca8")):
        rows = curve(directory / f"{name}.csv")
        rows = rows[next(i for i, row in enumerate(rows) if row["second"] % width == 0):]
        axis.plot(smooth([row["second"] for row in rows], width),
                  smooth([requests(row) for row in rows], width), color=colour, label=label)
    axis.axhline(json.loads((directory / "few.json").read_text())["capacity"], color="black",
                 linewidth=1, label="capacity")
    axis.set_xlabel("seconds since the service is back")
    axis.set_ylabel("requests a second")
    axis.legend(fontsize=8)
    save(figure, file)


def save(figure, file):
    figure.tight_layout()
    figure.savefig(file, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("data", type=pathlib.Path)
    parser.add_argument("pictures", type=pathlib.Path)
    arguments = parser.parse_args()
    print(table(arguments.data))
    draw_drain(arguments.data, TILLS[-1], arguments.pictures / "chain.svg")
    draw_real(arguments.data, arguments.pictures / "chain-real.svg")


if __name__ == "__main__":
    main()
