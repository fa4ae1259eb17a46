"""The loyalty service of a crash test."""
import asyncio
import json
import re
import urllib.request

from crash.run import PATIENCE, Failure, patiently

LOSSLESS = ["delay", "drop", "cut", "http500"]
# An order creation answered with 200 and no order is a refusal that the cashier is told of, so
# these are for the other operations.
MISLEADING = ["emptyBody", "html"]
SAFE_TO_MISLEAD = ["Offline.ChangeStatus", "Offline.GetCustomer", "Offline.RegisterCustomer",
                   "Offline.ConfirmMobilePhone"]


class Service:
    """The simulator: started, disturbed, killed and started again on the same port."""

    def __init__(self, run):
        self.run = run
        self.random = run.random("service")
        self.port = 0
        self.codes = {}

    async def start(self):
        self.process = await self.run.start(
            "simulator", "--verbose", "--port", self.port, "--state",
            self.run.directory / "service.db", log="simulator.log")
        first = (await patiently(self.process.stdout.readline(), "the simulator")).decode()
        listening = re.search(r":(\d+)/", first)
        if not listening:
            raise Failure("the simulator does not start; see simulator.log")
        self.port = int(listening[1])
        self.reader = asyncio.create_task(self.read())

    async def read(self):
        """Takes SMS codes and faults from the output, which outlives the simulator's counts."""
        while line := (await self.process.stdout.readline()).decode():
            if sms := re.match(r"SMS to (\d+): code (\d+)", line):
                self.codes[sms[1]] = sms[2]
            elif line.startswith("fault: "):
                self.run.faults[line.split()[1]] += 1

    async def disturb(self):
        await self.order({"random": {"seed": self.random.randrange(2**31), "probability": 0.3,
                                     "kinds": LOSSLESS, "milliseconds": 60}})

    async def order_special(self):
        """A fault that costs a time-out or that misleads, on one of the next requests."""
        fault = self.random.choice([
            {"kind": "delay", "milliseconds": 1300}, {"kind": "slowDrip", "milliseconds": 40},
            *({"kind": kind, "operation": self.random.choice(SAFE_TO_MISLEAD)}
              for kind in MISLEADING),
            {"kind": "wrongCodeAsValidationError", "operation": "Offline.ConfirmMobilePhone"}])
        await self.order({**fault, "executed": self.random.random() < 0.5})

    async def order(self, order):
        await self.call("POST", "/simulator/faults", json.dumps(order).encode())

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
        self.run.kill("simulator", self.process)
        await self.run.gone(self.process, "the simulator")
        await self.reader
        await asyncio.sleep(self.random.uniform(0, 0.4))
        await self.start()
        await self.disturb()
