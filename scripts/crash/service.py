"""The loyalty service of a crash test."""
import asyncio
import json
import re
import urllib.request

from crash.run import PATIENCE, Failure, patiently

LOSSLESS = ["delay", "drop", "cut", "http500"]
# An order creation answered with 200 and no order is a refusal, which "report --refused" mends.
MISLEADING = ["emptyBody", "html"]
MISLED = ["Offline.CreateAuthorizedOrder", "Offline.ChangeStatus", "Offline.GetCustomer",
          "Offline.RegisterCustomer", "Offline.ConfirmMobilePhone"]


class Service:
    """The simulator: started, disturbed, killed and started again on the same port."""

    def __init__(self, run):
        self.run = run
        self.random = run.random("service")
        self.port = 0
        self.codes = {}

    async def start(self):
        self.process = await self.run.start(
            "simulator", "--port", self.port, "--state", self.run.directory / "service.jsonl",
            log="simulator.log")
        first = (await patiently(self.process.stdout.readline(), "the simulator")).decode()
        listening = re.search(r":(\d+)/", first)
        if not listening:
            raise Failure("the simulator does not start; see simulator.log")
        self.port = int(listening[1])
        self.reader = asyncio.create_task(self.read())

    async def read(self):
        while line := (await self.process.stdout.readline()).decode():
            if sms := re.match(r"SMS to (\d+): code (\d+)", line):
                self.codes[sms[1]] = sms[2]

    async def disturb(self):
        for kind in LOSSLESS:
            for executed in (True, False):
                await self.order({"kind": kind, "executed": executed, "count": 0,
                                  "probability": 0.04})

    async def order_special(self):
        """A fault that costs a time-out or that misleads, on one of the next requests."""
        fault = self.random.choice([
            {"kind": "delay", "milliseconds": 1300}, {"kind": "slowDrip", "milliseconds": 40},
            *({"kind": kind, "operation": self.random.choice(MISLED)} for kind in MISLEADING)])
        if fault["kind"] != "slowDrip":  # which answers as the operation does
            fault["executed"] = self.random.random() < 0.5
        await self.order(fault)

    async def order(self, order):
        await self.call("POST", "/simulator/faults", json.dumps(order).encode())

    async def dump(self):
        """The simulator's state; counts the faults that it has played since its start."""
        dump = await self.call("GET", "/simulator/dump")
        self.run.faults.update(dump["faults"]["played"])
        return dump

    async def call(self, method, path, body=None):
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}{path}", body, method=method)

        def exchange():
            with urllib.request.urlopen(request, timeout=PATIENCE) as answer:
                return json.load(answer)
        try:
            return await asyncio.to_thread(exchange)
        except OSError as error:
            raise Failure(f"the simulator does not take {method} {path}: {error}") from None

    async def kill_and_restart(self):
        if self.run.enough():
            return
        await self.dump()
        if not self.run.kill("simulator", self.process):
            return  # there were enough kills meanwhile
        await self.run.gone(self.process, "the simulator")
        await self.reader
        await asyncio.sleep(self.random.uniform(0, 0.4))
        await self.start()
        await self.disturb()
