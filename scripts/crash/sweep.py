"""Lets each single call on a till's files fail, or kills the till there.

Two sales and a return are sold and delivered with one fault: at each call that the selling till or
the deliverer makes on the store, of each kind, once, twice in a row or from there to the end, with
the service up and down. Then all is started without faults. Each receipt that the cashier was told
to be committed must have its one order with its lines and status, unless it was told to be only in
memory at the end; nothing else may be at the service that no receipt explains.
"""
import contextlib
import errno
import json
import os
import pathlib
import random
import re
import signal
import sqlite3
import subprocess
import tempfile
import urllib.request
from concurrent.futures import ThreadPoolExecutor
from collections import Counter

from crash.comparison import expected_order
from crash.run import SECRET

LINES = """card 9160000001
add 4600 Milk 89.90 2
discount 1 9.80 15
commit
add 4601 Bread 45.50 0.350
commit
open 2
add 4602 Tea 10
commit
"""
HANG = 60  # seconds
KINDS = {"EIO": errno.EIO, "ENOSPC": errno.ENOSPC, "EINTR": errno.EINTR, "short": "short",
         "kill": "kill"}
LENGTHS = {"once": 1, "twice": 2, "to the end": 0}


class Simulator:
    """A service of one worker's own."""

    def __init__(self, program, directory):
        port = directory / "port"
        self.process = subprocess.Popen([program, "--port-file", port], stdout=subprocess.DEVNULL,
                                        env={**os.environ, "SIMULATOR_SECRET_KEY": SECRET})
        while not port.exists() or not port.read_text().strip():
            if self.process.poll() is not None:
                raise RuntimeError("the simulator does not start")
        self.address = f"http://127.0.0.1:{port.read_text().strip()}"

    def call(self, method, path):
        request = urllib.request.Request(self.address + path, b"" if method == "POST" else None,
                                         method=method)
        with urllib.request.urlopen(request, timeout=HANG) as answer:
            return answer.read()

    def orders(self):
        return json.loads(self.call("GET", "/simulator/dump"))["orders"]


class Case:
    """One fault: which process, which call, what kind, how long, and how the service is."""

    def __init__(self, process, call, kind, length, is_up):
        self.process, self.call, self.kind = process, call, kind
        self.length, self.is_up = length, is_up

    def __str__(self):
        return (f"{self.process}, call {self.call}, {self.kind} {self.length}, service "
                f"{'up' if self.is_up else 'down'}")


class Worker:
    """Carries cases out, one after the other."""

    def __init__(self, binaries, shim):
        self.till, self.shim = binaries / "till", shim
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="sweep-"))
        self.simulator = Simulator(binaries / "simulator", self.directory)
        self.number = 0

    def start_anew(self):
        self.simulator.call("POST", "/simulator/reset")
        self.number += 1
        self.data = self.directory / f"data{self.number}"
        for name, address in ("up", self.simulator.address), ("down", "http://127.0.0.1:1"):
            config = self.directory / name
            config.write_text(f"LmMindbox:url={address}/v3/operations/sync\nLmMindbox:endpoint="
                              f"till-demo\nLmMindbox:secretKey={SECRET}\nTill:shopCode=1\n"
                              f"Till:cashCode=1\nTill:language=en\nTill:dataDir={self.data}\n")
            config.chmod(0o600)

    def run(self, is_up, *arguments, fault=None, lines=""):
        environment = {**os.environ, "LD_PRELOAD": str(self.shim), "FAULT_FILES": str(self.data),
                       "FAULT_COUNT": str(self.directory / "count")}
        if fault:
            environment.update(FAULT_AT=str(fault.call), FAULT_KIND=str(KINDS[fault.kind]),
                               FAULT_FOR=str(LENGTHS[fault.length]))
        return subprocess.run([self.till, "--config", self.directory / ("up" if is_up else "down"),
                               *arguments], input=lines, env=environment, text=True, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=HANG)

    def count(self, process, is_up):
        """How many calls a process makes without a fault."""
        self.start_anew()
        self.run(is_up, "--no-delivery", lines=LINES)
        if process == "deliverer":
            self.run(True, "deliver", "--once")
        return int((self.directory / "count").read_text())

    def findings(self, case):
        """What is wrong after a case, in words."""
        self.start_anew()
        try:
            sold = self.run(case.is_up, "--no-delivery", lines=LINES,
                            fault=case if case.process == "till" else None)
            delivered = None
            if case.process == "deliverer":
                delivered = self.run(True, "deliver", "--once", fault=case)
            ends = [self.run(True, "--no-delivery"), self.run(True, "deliver", "--once")]
        except subprocess.TimeoutExpired as hang:
            return [f"hang: {hang.stdout}"]
        found = [f"ends with code {end.returncode}: {end.stdout}" for end in ends
                 if end.returncode != 0]
        # A data directory that cannot be made is no place to sell.
        allowed = {0, 1, -9 if case.kind == "kill" else 0, 0 if "Receipt" in sold.stdout else 2}
        found += [f"ended with code {end.returncode}: {end.stdout}" for end in (sold, delivered)
                  if end and end.returncode not in allowed]
        if not (self.data / "till.db").exists():
            return [*found, f"there is no store: {sold.stdout}"]
        return found + self.compare(case, sold.stdout)

    def compare(self, case, said):
        committed = {int(number) for number in re.findall(r"Receipt (\d+) is committed", said)}
        in_memory = set()
        for number, where in re.findall(r"Receipt (\d+) is (only in memory|on the disk now)", said):
            (in_memory.add if where == "only in memory" else in_memory.discard)(int(number))
        found = []
        if in_memory and case.length != "to the end" and case.kind != "kill":
            found.append(f"only in memory although the fault has gone: {in_memory}")
        with contextlib.closing(sqlite3.connect(self.data / "till.db")) as store:
            if store.execute("PRAGMA integrity_check").fetchone() != ("ok",):
                found.append("the store is damaged")
            rows = store.execute("SELECT number, state, document FROM receipts").fetchall()
            found += [f"waits: {row}" for row in store.execute("SELECT message FROM messages")]
        receipts = {number: json.loads(text) for number, state, text in rows if state == "committed"}
        found += [f"receipt {number} is left {state}" for number, state, _ in rows
                  if state not in ("committed", "open", "cancelled")]
        orders = {}
        for order in self.simulator.orders():
            orders.setdefault(int(order["ids"]["externalOrderIdLm"][10:17]), []).append(order)
        for number in committed - in_memory:
            if number not in receipts:
                found.append(f"receipt {number} was committed and is not in the store")
        for number, receipt in receipts.items():
            if receipt["header"]["kind"] == 1:
                found += self.check_order(receipt, orders.pop(number, []))
        for number in orders:
            # Of a receipt in memory alone the order has arrived all the same, its status too.
            if number not in in_memory:
                found.append(f"order {number} has no receipt")
            elif any(line.get("status") != "Paid" for order in orders[number]
                     for line in order["lines"]) and case.is_up and case.kind != "kill":
                found.append(f"order {number} has no status")
        return found

    @staticmethod
    def check_order(receipt, orders):
        number = receipt["header"]["num"]
        if len(orders) != 1:
            return [f"receipt {number} has {len(orders)} orders"]
        return [f"receipt {number}, {member}: expected {value}, found {orders[0][member]}"
                for member, value in expected_order(receipt).items() if orders[0][member] != value]


def sweep(binaries, workers, most, seed):
    """Carries out all cases, or so many by lot; returns how many of each kind and the findings."""
    shim = pathlib.Path(tempfile.mkdtemp(prefix="sweep-")) / "faultyfiles.so"
    source = pathlib.Path(__file__).with_name("faultyfiles.c")
    subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", shim, source, "-ldl"], check=True)
    crew = [Worker(binaries, shim) for _ in range(workers)]

    def end():
        for worker in crew:
            worker.simulator.process.kill()
            worker.simulator.process.wait()

    signal.signal(signal.SIGTERM, lambda *_: (end(), os._exit(128 + signal.SIGTERM)))
    try:
        cases = [Case(process, call, kind, length, is_up)
                 for process in ("till", "deliverer") for is_up in (True, False)
                 for call in range(1, crew[0].count(process, is_up) + 1)
                 for kind in KINDS for length in LENGTHS
                 # A call that is interrupted for ever is tried for ever, as it has to be.
                 if (kind != "kill" or length == "once")
                 and (kind != "EINTR" or length != "to the end")]
        random.Random(seed).shuffle(cases)
        cases = cases[:most]
        counts, findings = Counter(), []

        def work(worker, own):
            for case in own:
                for finding in worker.findings(case):
                    findings.append(f"{case}: {finding}")
                    print(findings[-1], flush=True)
                counts[f"{case.kind} {case.length}"] += 1
                if counts.total() % 500 == 0:
                    print(f"{counts.total()} of {len(cases)} cases", flush=True)
        with ThreadPoolExecutor(workers) as pool:
            for task in [pool.submit(work, worker, cases[index::workers])
                         for index, worker in enumerate(crew)]:
                task.result()
        return counts, findings
    finally:
        end()
