"""Reads the benchmarks' figures."""

import json
import pathlib
import re
import sys

# Of what waits for nothing the processor time is taken, which a busy machine disturbs less.
BUSY = ("orderPayload", "statusPayload", "parseAnswer", "expandMask")
LINES = (1, 10, 100, 1000, 10000)
WAITING = (100, 1000, 10000, 100000)
# A short run leaves these out.
LONG_RUN_ONLY = [*[f"deliver/{n}" for n in WAITING[1:]], "hungService/halfMinuteApart"]


class Results(dict):
    """Runs by name; a missing one ends the report, except for what a short run leaves out."""

    def __init__(self):
        super().__init__()
        self.context = {}
        self.instructions = {}

    def __missing__(self, name):
        sys.exit(f"report.py: {name}: there is no such figure")

    def is_short(self):
        return self.context.get("quick") == "yes"

    def left_out(self, name):
        return self.is_short() and name in LONG_RUN_ONLY


def read(files):
    results = Results()
    for file in files:
        content = json.loads(pathlib.Path(file).read_text())
        results.context = results.context or content["context"]
        for run in content["benchmarks"]:
            parts = run["name"].split("/")
            tail = ("manual_time", "iterations:", "real_time")
            name = "/".join(p for p in parts if not p.startswith(tail))
            if run.get("error_occurred"):
                sys.exit(f"{file}: {name}: {run['error_message']}")
            results[name] = run
    return results


def time(results, name, side):
    """Median seconds of one call of a benchmark's side, "ours" or "floor"."""
    return results[name][side + "_cpu" * name.startswith(BUSY)]


def seconds(value):
    for unit, size in (("s", 1), ("ms", 1e-3), ("µs", 1e-6)):
        if value >= 0.9995 * size:  # 999.7 µs are 1 ms
            return f"{value / size:.3g} {unit}"
    return f"{value * 1e9:.3g} ns"
