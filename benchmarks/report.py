#!/usr/bin/env python3
"""Makes a table, and with --docs the measured part of the documentation, of the benchmarks' JSON.

usage: report.py [--docs DIRECTORY --command TEXT] FILE.json...
"""

import argparse
import json
import math
import pathlib
import platform
import re
import sys

BEGIN, END = "<!-- measured -->", "<!-- measured: end -->"
# Of what waits for nothing the processor time is taken, which a busy machine disturbs less.
BUSY = ("orderPayload", "statusPayload", "parseAnswer", "expandMask")
LINES = (1, 10, 100, 1000, 10000)
WAITING = (100, 1000, 10000, 100000)
MIB = 2**20
# A short run leaves these out and takes fewer samples than the others need.
LONG_RUN_ONLY = [f"deliver/{n}" for n in WAITING[1:]]
FEWEST_SAMPLES = 50

# What, its floor, the benchmark, the largest ratio wanted (None: stated only).
PAIRS = [
    ("client: look a customer up", "the bare exchange", "getCustomer", 1.3),
    ("plugin: identify, customer without e-mail", "the bare exchange", "identify/withoutEmail",
     1.5),
    ("plugin: identify, with e-mail", "both bare exchanges", "identify/withEmailBothExchanges",
     1.5),
    *[(f"order payload, {n:,} lines", "built by hand", f"orderPayload/{n}", 1.5) for n in LINES],
    *[(f"status payload, {n:,} lines", "built by hand", f"statusPayload/{n}", 1.5) for n in LINES],
    ("answer of 1 KB to a result", "fromJson", "parseAnswer/1024", 1.3),
    ("answer of 10 KB to a result", "fromJson", "parseAnswer/10240", 1.3),
    ("answer of 1 MB to a result", "fromJson", "parseAnswer/1048576", 1.3),
    ("default order id by its mask", "formatted by hand", "expandMask", 5),
    ("queue: put", "one prepared insert", "put", 1.2),
    *[(f"delivery, {n:,} waiting", "exchange and delete", f"deliver/{n}", 1.3) for n in WAITING],
    ("commit while the service is down", "two prepared inserts", "commitWhileDown/twoInserts", 2),
    ("commit while the service is down", "two inserts, one transaction",
     "commitWhileDown/oneTransaction", None),
    ("load the plugin", "an empty plugin", "load", None),
]

# Steps of a sale with their transactions; a delivered message shares its own with others.
SYNCS = [("opening", 1), ("position", 1), ("discount", 1), ("card", 1), ("commit", 2),
         ("delivery", 1)]


class Results(dict):
    """Runs by name; a missing one ends the report, except for what a short run leaves out."""

    def __init__(self):
        super().__init__()
        self.context = {}

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


def row(what, ours, floor_name, floor, ratio, target, wanted):
    met = "" if target is None else "yes" if ratio <= target else "no"
    beside = f"{floor_name}: {floor}" if floor else floor_name
    return [what, ours, beside, f"{ratio:.2f}", wanted, met]


def at_most(target):
    return "stated" if target is None else f"≤ {target:g}"


def flatness(results, what, low, high, amount):
    """Cost of one piece among many against that among few; a few samples would say nothing."""
    if results.left_out(high):
        return []
    for name in (low, high):
        samples = results[name]["iterations"]
        if samples < FEWEST_SAMPLES and not results.is_short():
            sys.exit(f"report.py: {name}: {samples} samples, expected at least {FEWEST_SAMPLES}")
    few, many = (time(results, name, "ours") / amount(name) for name in (low, high))
    return [row(what, seconds(many), "among few", seconds(few), many / few, 1.2, at_most(1.2))]


def rows(results):
    table = []
    for what, floor_name, name, target in PAIRS:
        if results.left_out(name):
            continue
        ours, floor = (time(results, name, side) for side in ("ours", "floor"))
        table.append(row(what, seconds(ours), floor_name, seconds(floor), ours / floor, target,
                         at_most(target)))
        if name == "getCustomer":
            ours, floor = (results[name][side] for side in ("ours_p99", "floor_p99"))
            table.append(row(what + ", p99", seconds(ours), floor_name, seconds(floor),
                             ours / floor, None, "stated"))
    number = lambda name: int(name.split("/")[-1])
    for kind, what in (("orderPayload", "order"), ("statusPayload", "status")):
        table += flatness(results, f"{what} payload: a line at 10,000 against 100",
                          f"{kind}/100", f"{kind}/10000", number)
    table += flatness(results, "delivery: a message at 100,000 against 100",
                      "deliver/100", "deliver/100000", lambda _: 1)
    for lines in (1, 10, 100, 1000):
        count = results[f"connections/{lines}"]["connections"]
        table.append(row(f"connections of the plugin in a sale of {lines:,} lines", f"{count:.0f}",
                         "one", "", count, 1, "1"))
    for service in ("up", "down"):
        for step, floor in SYNCS:
            if step in (run := results[f"syncs/{service}"]):
                table.append(row(f"syncs of {step}, service {service}", f"{run[step]:.2f}",
                                 "transactions", str(floor), run[step] / floor, 1.05, "≤ 1.05"))
    return table + memory(results["sales"])


def memory(run):
    table = []
    for kind in ("resident", "heap"):
        before, after = run[f"{kind}_before"], run[f"{kind}_after"]
        grown = (after - before) / MIB
        table.append([f"memory ({kind}) after {run['sales']:,.0f} sales", f"{after / MIB:.2f} MiB",
                      f"after 1,000 sales: {before / MIB:.2f} MiB", f"{grown:+.2f} MiB", "≤ +1 MiB",
                      "yes" if grown <= 1 else "no"])
    return table


HEADER = ["what", "ours", "floor", "ratio", "to reach", "met"]


def plain(table):
    lines = [HEADER, *table]
    widths = [max(map(len, column)) for column in zip(*lines)]
    return "\n".join("  ".join(map(str.ljust, line, widths)).rstrip() for line in lines)


def markdown(table):
    lines = [HEADER, ["---"] * len(HEADER), *table]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def text(x, y, content, anchor="middle", size=12):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}">'
            f'{content}</text>')


def stroke(x1, y1, x2, y2, style='stroke="#ddd"'):
    return f'<line x1="{x1}" x2="{x2}" y1="{y1:.1f}" y2="{y2:.1f}" {style}/>'


def bar(y, width, style):
    return f'<rect x="235" y="{y}" width="{width:.1f}" height="28" {style}/>'


def svg(width, height, parts):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
            'font-family="sans-serif" fill="#222">'
            f'<rect width="{width}" height="{height}" fill="white"/>\n'
            + "\n".join(parts) + "\n</svg>\n")


def line_chart(results):
    """Cost a line against the lines of the receipt, both axes from the figures."""
    left, top, right, bottom = 70, 50, 620, 330
    series = [("order, plugin", "orderPayload", "ours", "#1b6ca8", ""),
              ("order, by hand", "orderPayload", "floor", "#1b6ca8", "5 4"),
              ("status, plugin", "statusPayload", "ours", "#c0562b", ""),
              ("status, by hand", "statusPayload", "floor", "#c0562b", "5 4")]
    points = {label: [(n, time(results, f"{kind}/{n}", side) / n * 1e6) for n in LINES]
              for label, kind, side, _, _ in series}
    top_value = max(v for values in points.values() for _, v in values) * 1.1
    x = lambda n: left + (right - left) * math.log10(n) / math.log10(LINES[-1])
    y = lambda v: bottom - (bottom - top) * v / top_value
    parts = [text(345, 25, "Cost a line of the payload, to the bytes", size=15),
             text(345, 372, "lines of the receipt"), text(62, 40, "µs a line", "end")]
    step = 10 ** math.floor(math.log10(top_value / 2))
    step *= 5 if top_value / step > 20 else 2 if top_value / step > 8 else 1
    for i in range(int(top_value / step) + 1):
        parts += [stroke(left, y(i * step), right, y(i * step)),
                  text(left - 8, y(i * step) + 4, f"{i * step:g}", "end")]
    parts += [text(x(n), bottom + 20, f"{n:,}") for n in LINES]
    for i, (label, _, _, colour, dash) in enumerate(series):
        path = " ".join(f"{x(n):.1f},{y(v):.1f}" for n, v in points[label])
        style = f'fill="none" stroke="{colour}" stroke-width="2" stroke-dasharray="{dash}"'
        height = 64 + 18 * i
        parts += [f'<polyline points="{path}" {style}/>', stroke(440, height, 480, height, style),
                  text(488, height + 4, label, "start")]
    return svg(660, 385, parts)


def bar_chart(results):
    """Latency of the exchange alone and of what the plugin makes of it."""
    bars = [("bare exchange", "getCustomer", "floor"), ("client: look-up", "getCustomer", "ours"),
            ("plugin: identify, without e-mail", "identify/withoutEmail", "ours"),
            ("both bare exchanges", "identify/withEmailBothExchanges", "floor"),
            ("plugin: identify, with e-mail", "identify/withEmailBothExchanges", "ours")]
    longest = max(results[name][field + "_p99"] for _, name, field in bars)
    width = lambda value: 340 * value / longest
    parts = [text(345, 25, "Latency with and without the plugin", size=15),
             text(345, 45, "dark: median, light: 99th percentile")]
    for i, (label, name, field) in enumerate(bars):
        median, p99, y = results[name][field], results[name][field + "_p99"], 62 + 44 * i
        colour = "#1b6ca8" if field == "ours" else "#777"
        parts += [text(225, y + 19, label, "end"),
                  bar(y, width(p99), f'fill="{colour}" opacity="0.35"'),
                  bar(y, width(median), f'fill="{colour}"'),
                  text(241 + width(p99), y + 19, f"{seconds(median)} / {seconds(p99)}", "start")]
    return svg(700, 72 + 44 * len(bars), parts)


def machine(context):
    cpu = pathlib.Path("/proc/cpuinfo").read_text()
    model = re.search(r"^model name\s*: (.*)$", cpu, re.MULTILINE)
    load = " ".join(f"{load:.1f}" for load in context["load_avg"])
    return (f"{model[1] if model else 'unknown CPU'}, {context['num_cpus']} cores at "
            f"{context['mhz_per_cpu']} MHz, {platform.system()} {platform.release()}, "
            f"load average {load} at the start")


def write_docs(directory, results, command, table):
    (directory / "performance-lines.svg").write_text(line_chart(results))
    (directory / "performance-latency.svg").write_text(bar_chart(results))
    page = directory / "performance.md"
    before, rest = page.read_text().split(BEGIN)
    measured = (f"{BEGIN}\nMachine: {machine(results.context)}.\n"
                f"Date: {results.context['date']}. Command: `{command}`.\n\n{markdown(table)}\n\n"
                "![Cost a line against the lines of the receipt](performance-lines.svg)\n\n"
                f"![Latency with and without the plugin](performance-latency.svg)\n{END}")
    page.write_text(before + measured + rest.split(END)[1])


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--docs", type=pathlib.Path,
                        help="where performance.md is to be brought up to date")
    parser.add_argument("--command", default="scripts/bench", help="how the figures were made")
    parser.add_argument("files", nargs="+", metavar="FILE")
    arguments = parser.parse_args()
    results = read(arguments.files)
    table = rows(results)
    print(plain(table))
    if arguments.docs:
        write_docs(arguments.docs, results, arguments.command, table)


if __name__ == "__main__":
    main()
