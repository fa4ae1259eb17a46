#!/usr/bin/python3
"""Lets real tills sell while a real simulator with a limited capacity is away for a while.

Prints for each second, counted from the simulator's return, how many requests were served, turned
away and unanswered, from the tills' logs.
"""
import argparse
import collections
import contextlib
import datetime
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import time

USUAL = 60  # seconds of usual business before the outage
EXCHANGE = re.compile(r"^(\S+ \S+) \w+ lmmindbox: ((?:sale|delivery) \S+) .*?: (.*)")
COMMIT = re.compile(r"^(\S+ \S+) .*Receipt \d+ is committed")


def start_simulator(options, root):
    process = subprocess.Popen([options.bin / "simulator", "--port", str(options.port), "--state",
                                root / "state", "--capacity", str(options.capacity)],
                               stdout=subprocess.PIPE, text=True)
    process.stdout.readline()  # wait until it listens
    return process


def start_till(options, root, number):
    config = root / f"{number}.conf"
    config.touch(0o600)
    config.write_text(f"LmMindbox:url=http://127.0.0.1:{options.port}/v3/operations/sync\n"
                      "LmMindbox:endpoint=till-demo\nLmMindbox:secretKey=demo-secret\n"
                      f"Till:dataDir={root / str(number)}\nTill:log={root / str(number)}.log\n"
                      f"Till:language=en\nTill:cashCode={number + 1}\n")
    return subprocess.Popen([options.bin / "till", "--config", config], stdin=subprocess.PIPE,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, text=True)


def steps(options):
    """The commands to the tills and the simulator, in the order of time."""
    chance = random.Random(1)
    end = USUAL + options.outage + options.watch
    events = [(USUAL, -1, "leave"), (USUAL + options.outage, -1, "return"), (end, -1, "end")]
    for till in range(options.tills):
        at = chance.expovariate(options.receipts_per_hour / 3600)
        while at < end:
            events += [(at, till, "open\nadd 4600 Milk 2.50\ncard 9160000001\n"),
                       (at + options.scanning, till, "commit\n")]
            at += options.scanning + chance.expovariate(
                1 / (3600 / options.receipts_per_hour - options.scanning))
    return sorted(events)


def run(options, root):
    """Returns when the service came back."""
    with contextlib.ExitStack() as stack:
        simulator = start_simulator(options, root)
        tills = [start_till(options, root, number) for number in range(options.tills)]
        for till in tills:
            stack.callback(till.wait)
            stack.callback(till.kill)
        time.sleep(10)
        begin = time.monotonic()
        for at, till, text in steps(options):
            time.sleep(max(0, begin + at - time.monotonic()))
            if text == "leave":
                simulator.kill()
                simulator.wait()
            elif text == "return":
                simulator = start_simulator(options, root)
                back = datetime.datetime.now().timestamp()
            elif text == "end":
                break
            else:
                tills[till].stdin.write(text)
                tills[till].stdin.flush()
        simulator.kill()
        simulator.wait()
    return back


def read(log, back):
    """Returns a till's exchanges, and when its queue was first empty after the service's return."""
    exchanges, waiting, empty = [], 0, None
    for line in log.read_text().splitlines():
        if not (step := EXCHANGE.match(line) or COMMIT.match(line)):
            continue
        at = datetime.datetime.fromisoformat(step[1]).timestamp() - back
        if step.re is COMMIT:
            waiting += 1  # the order's status change waits too
            continue
        fate = 0 if "HTTP 200" in step[3] else 1 if "HTTP 503" in step[3] else 2
        if "not sent" not in step[3]:
            exchanges.append((at, fate))
        waiting -= fate == 0 and "delivery Offline.ChangeStatus" in step[2]
        if waiting == 0 and at >= 0 and empty is None:
            empty = at
    return exchanges, empty


def report(options, root, back):
    logs = [read(root / f"{till}.log", back) for till in range(options.tills)]
    counts = collections.Counter((int(at // 1), fate) for log, _ in logs for at, fate in log)
    for second in range(-USUAL - options.outage, options.watch):
        print(second, *(counts[second, fate] for fate in range(3)), sep=",")
    empty = [empty for _, empty in logs]
    print("not empty" if None in empty else f"empty after {max(empty):.0f} s", file=sys.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("bin", type=pathlib.Path, help="directory of the programs")
    for name, value in (("tills", 40), ("receipts-per-hour", 225), ("outage", 120), ("scanning", 2),
                        ("capacity", 20), ("watch", 240), ("port", 18114)):
        parser.add_argument(f"--{name}", type=int, default=value)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        root = pathlib.Path(name)
        report(options, root, run(options, root))


if __name__ == "__main__":
    main()
