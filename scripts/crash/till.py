"""A till of a crash test with the cashier at it."""
import asyncio
import contextlib
import re
import time

from crash.run import PHASES, SECRET, Failure, Killed, patiently

LOCKED = r"\[not saved\] .*locked"  # by this test
KNOWN_PHONES = [f"791600000{number:02}" for number in (1, 2, 3, 4, 5, 8, 10)]


class Till:
    """A till with its cashier, who remembers what the till has told."""

    def __init__(self, run, service, number):
        self.run = run
        self.service = service
        self.number = number
        self.random = run.random(f"till {number}")
        self.data = run.directory / f"till{number}"
        self.config = run.directory / f"till{number}.conf"
        self.durations = dict.fromkeys(PHASES, 0.05)
        self.phase, self.target, self.timer, self.process = "start", None, None, None
        self.phone = ""
        self.backlog = False   # whether the start left receipts to be reported later
        self.receipt = None    # the open one's number
        self.positions = 0     # of the open receipt, as shown
        self.leaving = False   # whether the open receipt was told to be committed or cancelled
        self.announced = {}    # number -> (positions, total) of the committed receipts
        self.opened, self.cancelling, self.cancelled = set(), set(), set()
        self.in_memory = set()  # told not to be in the store, and not told otherwise since
        self.forgiven = set()   # of those, the ones that a kill may have taken
        settings = {"LmMindbox:url": f"http://127.0.0.1:{service.port}/v3/operations/sync",
                    "LmMindbox:endpoint": "till-demo", "LmMindbox:secretKey": SECRET,
                    "LmMindbox:timeout": 1, "Till:dataDir": self.data, "Till:cashCode": number,
                    "Till:language": "en",
                    "Till:retryFirst": 20, "Till:retryMax": 200,
                    "Http:retryFirst": 20, "Http:retryMax": 200}
        self.config.write_text("".join(f"{key}={value}\n" for key, value in settings.items()))
        self.config.chmod(0o600)

    async def live(self):
        """Sells and dies until there were enough kills."""
        while not self.run.enough():
            self.target = self.random.choice(PHASES)
            with contextlib.suppress(Killed):
                await self.start("--no-delivery" if self.random.random() < 0.3 else None)
                while not self.run.enough():
                    await self.sell()
            self.run.end(self.process)
            self.disarm()
            await self.run.gone(self.process, f"till {self.number}")

    async def start(self, *options):
        arguments = ["--config", self.config, *filter(None, options)]
        self.process = await self.run.start("till", *arguments, log=f"till{self.number}.log",
                                            stdin=asyncio.subprocess.PIPE)
        self.enter("start")
        self.forgiven |= self.in_memory
        self.in_memory.clear()
        self.write = self.process.stdin.write
        self.write(b"# ready\n")
        receipt, positions, self.backlog = None, 0, False
        while (line := await self.line()) != "# ready":
            if again := re.match(r"Receipt (\d+) is open again: (\d+) positions", line):
                receipt, positions = int(again[1]), int(again[2])
                self.opened.add(receipt)
            elif done := re.match(r"Receipt (\d+) is reported", line):
                # Of an older one, kept at an earlier start, nobody knows the positions any longer.
                if int(done[1]) == self.receipt:
                    self.announced.setdefault(self.receipt, (self.positions, None))
            elif line.startswith("Receipts still to be reported"):
                self.backlog = True
            elif not re.match(LOCKED, line) and not self.hear(line):
                raise Failure(f"till {self.number} says at its start: {line}")
        self.leave()
        kept = receipt == self.receipt and positions >= self.positions
        if self.receipt and not self.leaving and not kept and self.receipt not in self.forgiven:
            self.run.findings["lost"].append(
                f"till {self.number}, open receipt {self.receipt}: {self.positions} positions were "
                f"shown, receipt {receipt} with {positions} came back")
        self.receipt, self.positions, self.leaving = receipt, positions, False

    async def sell(self):
        choice = self.random
        self.enter("sale")
        if not self.receipt:
            if choice.random() < 0.05:
                await self.do("shift", "Shift .* begins", "1")
            kind = 2 if choice.random() < 0.08 else 1
            opened = await self.do(f"open {kind}", r"Receipt (\d+) is open")
            self.receipt, self.positions, self.leaving = int(opened[1]), 0, False
            self.opened.add(self.receipt)
        if choice.random() < 0.65:
            await self.identify()
        self.enter("sale")
        for _ in range(choice.randint(1, 4)):
            price, quantity = choice.randint(1, 99999) / 100, choice.choice([1, 2, 0.345, 7.5])
            added = await self.do(f'add {choice.randint(1000, 9999)} "Товар {choice.random()}" '
                                  f"{price} {quantity}", r"(\d+)\. Товар")
            self.positions = int(added[1])
            if choice.random() < 0.4:
                await self.do(f"discount {self.positions} 0.0{choice.randint(1, 3)} "
                              f"{choice.randint(1, 99)} {choice.choice([0, 6])} "
                              f"{choice.choice([0, 0, 1])}", r"\d+\. .* -|The discount is larger")
        if choice.random() < 0.1:
            self.enter("identification")
            await self.do("edit", "Done|Failed|Nothing")
        self.leave()
        await (self.cancel() if choice.random() < 0.08 else self.commit())

    async def identify(self):
        fresh = self.random.random() < 0.4
        self.phone = (f"79{self.random.randint(10**8, 10**9 - 1)}" if fresh
                      else self.random.choice(KNOWN_PHONES))
        self.enter("identification")
        await self.do(f"card {self.phone}", r"Card \d|There is no card")
        self.leave()

    async def cancel(self):
        self.leaving = True
        self.cancelling.add(self.receipt)
        await self.do("cancel", "Receipt .* cancelled", "1")
        self.cancelled.add(self.receipt)
        self.receipt = None

    async def commit(self):
        self.enter("commit")
        self.leaving = True
        done = await self.do("commit", r"Receipt (\d+) is committed, total ([\d.]+)\.")
        self.leave()
        self.announced[int(done[1])] = (self.positions, float(done[2]))
        self.receipt = None
        self.enter("delivery")
        await asyncio.sleep(self.durations["delivery"] if self.timer else 0)

    async def do(self, command, end, *answers):
        """Gives a command with its answers, answers its dialogs, returns the match of the line that
        ends it."""
        self.write("".join(f"{line}\n" for line in (command, *answers)).encode())
        while not (found := re.match(end, line := await self.line())):
            if line.startswith("[not ") and not re.match(LOCKED, line):
                raise Failure(f"till {self.number}: {line}")
            self.hear(line)
            for answer in await self.answers(line):
                self.write(f"{answer}\n".encode())
        return found

    def hear(self, line):
        """Remembers which receipts are only in memory; returns whether the line is about that."""
        if lost := re.match(r"Receipt (\d+) is only in memory", line):
            self.in_memory.add(int(lost[1]))
        elif found := re.match(r"Receipt (\d+) is on the disk now", line):
            self.in_memory.discard(int(found[1]))
        return lost or found

    async def answers(self, line):
        choice = self.random
        if line.startswith("[question]"):
            return ["2" if choice.random() < 0.1 else "1"]
        if line.startswith("[form]"):
            email = f"c{choice.randrange(10**6)}@example.org" if choice.random() < 0.7 else ""
            return ["/cancel"] if choice.random() < 0.1 else ["Анна", "", "1", email]
        if line.startswith("[input]"):
            await asyncio.sleep(0.01)  # the code may still be under way from the simulator
            # An older code when the simulator was killed before it showed the last one.
            code = self.service.codes.get(self.phone, "/cancel")
            return choice.choices(["0", "/cancel", code], [1, 1, 8])
        return []

    async def line(self):
        line = await patiently(self.process.stdout.readline(), f"till {self.number}, {self.phase}")
        if line:
            return line.decode().rstrip("\n")
        await self.run.gone(self.process, f"till {self.number}, {self.phase}:")
        raise Killed

    def enter(self, phase):
        self.phase, self.entered = phase, time.monotonic()
        if self.timer or phase != self.target:
            return
        # The start comes once; of the other phases not always the first one is hit.
        if phase == "start" or self.random.random() < 0.6:
            delay = self.random.uniform(0, 1.1 * self.durations[phase])
            self.timer = asyncio.get_running_loop().call_later(
                delay, lambda: self.run.kill("till", self.process, self.phase))

    def leave(self):
        """Learns how long the phase takes, so that kills fall anywhere into it."""
        took = time.monotonic() - self.entered
        self.durations[self.phase] += 0.2 * (took - self.durations[self.phase])

    def disarm(self):
        if self.timer:
            self.timer.cancel()
        self.timer = None

    async def settle(self):
        """Starts without faults until nothing is being committed and nothing waits."""
        self.target, self.backlog = None, True
        while self.backlog:
            await self.start("--no-delivery")
            self.process.stdin.close()
            if code := await patiently(self.process.wait(), f"till {self.number}, the last end"):
                raise Failure(f"till {self.number}, told to end, ended with code {code}")
        for _ in range(20):
            deliverer = await self.run.start("till", "--config", self.config, "deliver", "--once",
                                             log=f"till{self.number}.log")
            said, _ = await patiently(deliverer.communicate(), "the last delivery")
            if deliverer.returncode == 0:
                return
            if deliverer.returncode < 0:
                break
        raise Failure(f"till {self.number}: the queue is not emptied, the deliverer ends with code "
                      f"{deliverer.returncode}: {said.decode()}")
