#!/usr/bin/env python3
"""Makes a table, and with --docs the measured part of the documentation, of the benchmarks' JSON.

usage: report.py [--docs DIRECTORY --command TEXT] FILE.json...
"""

import argparse
import pathlib
import platform
import re
import sys

from charts import bar_chart, line_chart
from figures import LINES, WAITING, read, seconds, time

BEGIN, END = "<!-- measured -->", "<!-- measured: end -->"
MIB = 2**20
# Fewer samples would say nothing of a growth.
FEWEST_SAMPLES = 50

# What, its floor, the benchmark, the largest ratio wanted (None: stated only), the figure taken.
PAIRS = [
    ("client: look a customer up", "the bare exchange", "getCustomer/client", 1.1),
    ("client: look a customer up, p99", "the bare exchange", "getCustomer/client", 1.2, "_p99"),
    ("the same by QNetworkAccessManager and an event loop", "the bare exchange",
     "getCustomer/networkAccessManager", None),
    ("plugin: identify, customer without e-mail", "the bare exchange", "identify/withoutEmail",
     1.5),
    ("plugin: identify, with e-mail", "both bare exchanges", "identify/withEmailBothExchanges",
     1.5),
    ("till: identify, kept on disk", "both exchanges and one update", "identifyKept", 1.2),
    ("ten sales against a hung service", "one time-out", "hungService/atOnce", 1.1),
    ("the same half a minute apart, all times a fifth", "one time-out",
     "hungService/halfMinuteApart", None),
    *[(f"order payload, {n:,} lines", "built by hand", f"orderPayload/{n}", 1.5) for n in LINES],
    *[(f"status payload, {n:,} lines", "built by hand", f"statusPayload/{n}", 1.5) for n in LINES],
    ("answer of 1 KB to a result", "fromJson", "parseAnswer/1024", 1.3),
    ("answer of 10 KB to a result", "fromJson", "parseAnswer/10240", 1.3),
    ("answer of 1 MB to a result", "fromJson", "parseAnswer/1048576", 1.3),
    ("default order id by its mask", "formatted by hand", "expandMask", 5),
    ("queue: put", "one prepared insert", "put", 1.2),
    *[(f"delivery, {n:,} waiting", "bare exchanges", f"deliver/{n}", 1.2) for n in WAITING],
    ("delivery, 1,000 waiting, the service 20 ms away", "bare exchanges", "deliverFarther/1000",
     None),
    ("commit while the service is down", "two inserts and an update, one transaction",
     "commitWhileDown", 1.2),
    ("the same at the till, from the key", "that and the update that begins it", "commitAtTill",
     1.2),
    ("load the plugin", "an empty plugin", "load", None),
    ("start of the till, 100,000 receipts, 10,000 waiting", "with none", "start", 1.2),
    ("first paint of the window", "an empty window", "firstPaint/empty", 2),
    ("first paint of the window", "a window with one word", "firstPaint/word", None),
    ("position added, 1,000 lines: the window's processor time", "10 lines", "addPosition", 1.2,
     "_cpu"),
    ("position added, 1,000 lines: from key to paint", "10 lines", "addPosition", None),
]

# Steps of a sale with their transactions; a delivered message shares its own with others.
SYNCS = [("opening", 1), ("position", 1), ("discount", 1), ("card", 1), ("commit", 2),
         ("delivery", 1)]


COUNTED = {"lookUp": "one look-up", "bareExchange": "its bare exchange",
           "payload": "one order payload of 100 lines", "answer": "one answer of 1 KB",
           "delivery": "the delivery of one message",
           "commit": "one commit at the till while the service is down",
           "identification": "one identification at the till, two exchanges"}


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


def growth(results):
    """What a delivery's message costs more in a long queue, against what its floor costs more."""
    if results.left_out("deliver/100000"):
        return []
    ours, floor = (results["deliver/100000"][side] / results["deliver/100"][side]
                   for side in ("ours", "floor"))
    return [row("delivery: a message at 100,000 against 100", f"{ours:.2f}", "the floor's growth",
                f"{floor:.2f}", ours / floor, 1.1, at_most(1.1))]


def rows(results):
    table = []
    for what, floor_name, name, target, *figure in PAIRS:
        if results.left_out(name):
            continue
        if figure:
            ours, floor = (results[name][side + figure[0]] for side in ("ours", "floor"))
        else:
            ours, floor = (time(results, name, side) for side in ("ours", "floor"))
        table.append(row(what, seconds(ours), floor_name, seconds(floor), ours / floor, target,
                         at_most(target)))
    number = lambda name: int(name.split("/")[-1])
    for kind, what in (("orderPayload", "order"), ("statusPayload", "status")):
        table += flatness(results, f"{what} payload: a line at 10,000 against 100",
                          f"{kind}/100", f"{kind}/10000", number)
    table += growth(results)
    for lines in (1, 10, 100, 1000):
        count = results[f"connections/{lines}"]["connections"]
        table.append(row(f"connections of the plugin in a sale of {lines:,} lines", f"{count:.0f}",
                         "one", "", count, 1, "1"))
    for service in ("up", "down"):
        for step, floor in SYNCS:
            if step in (run := results[f"syncs/{service}"]):
                table.append(row(f"syncs of {step}, service {service}", f"{run[step]:.2f}",
                                 "transactions", str(floor), run[step] / floor, 1.05, "≤ 1.05"))
    table += instructions(results)
    started = [results["start"][f"resident_{when}"] for when in ("before", "after")]
    return table + [grown("memory (resident) of the till, 100,000 receipts, 10,000 waiting",
                          "with none", *started, 5)] + memory(results["sales"])


def instructions(results):
    """Counts of valgrind; a machine's load does not change them."""
    return [[f"instructions: {what}", f"{results.instructions[name]:,}", "", "", "stated", ""]
            for name, what in COUNTED.items() if name in results.instructions]


def grown(what, floor_name, before, after, most):
    more = (after - before) / MIB
    return [what, f"{after / MIB:.2f} MiB", f"{floor_name}: {before / MIB:.2f} MiB",
            f"{more:+.2f} MiB", f"≤ +{most} MiB", "yes" if more <= most else "no"]


def memory(run):
    table = []
    for kind in ("resident", "heap"):
        before, after = run[f"{kind}_before"], run[f"{kind}_after"]
        table.append(grown(f"memory ({kind}) after {run['sales']:,.0f} sales", "after 1,000 sales",
                           before, after, 1))
    return table


HEADER = ["what", "ours", "floor", "ratio", "to reach", "met"]


def plain(table):
    lines = [HEADER, *table]
    widths = [max(map(len, column)) for column in zip(*lines)]
    return "\n".join("  ".join(map(str.ljust, line, widths)).rstrip() for line in lines)


def markdown(table):
    lines = [HEADER, ["---"] * len(HEADER), *table]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


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
    parser.add_argument("--instructions", type=pathlib.Path,
                        help="file with valgrind's counts, lines of name and number")
    parser.add_argument("files", nargs="+", metavar="FILE")
    arguments = parser.parse_args()
    results = read(arguments.files)
    if arguments.instructions:
        lines = arguments.instructions.read_text().splitlines()
        results.instructions = {name: int(count) for name, count in map(str.split, lines)}
    table = rows(results)
    print(plain(table))
    if arguments.docs:
        write_docs(arguments.docs, results, arguments.command, table)


if __name__ == "__main__":
    main()
