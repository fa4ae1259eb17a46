"""A till of a crash test with the cashier at it."""
import asyncio
import contextlib
import re
import sqlite3
import time

from crash.run import PHASES, SECRET, Failure, Killed, patiently

LOCKED = r"\[not saved\] .*locked"  # by this test
KNOWN_PHONES = [f"791600000{number:02}" for number in (1, 2, 3, 4, 5, 10)]


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
        self.delivers = True
        self.lock = None
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
                    "Http:retryFirst": 20, "Http:retryMax": 200}
        self.config.write_text("".join(f"{key}={value}\n" for key, value in settings.items()))
        self.config.chmod(0o600)

    async def live(self):
        """Sells and dies until there were enough kills."""
        while not self.run.enough():
            self.target = self.random.choice(PHASES)
            with contextlib.suppress(Killed):
                self.delivers = self.random.random() < 0.7
                await self.start(None if self.delivers else "--no-delivery")
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
                self.check_open(receipt)
                self.opened.add(receipt)
            elif done := re.match(r"Receipt (\d+) is (?:not )?reported", line):
                # Of an older one, kept at an earlier start, nobody knows the positions any longer.
                if int(done[1]) == self.receipt:
                    self.announced.setdefault(self.receipt, (self.positions, None))
            elif too := re.match(r"Receipt (\d+) is open, too", line):
                self.check_open(int(too[1]))
            elif line.startswith("Receipts still to be reported"):
                self.backlog = True
            elif not re.match(rf"{LOCKED}|\[(error|message)\]", line) and not self.hear(line):
                raise Failure(f"till {self.number} says at its start: {line}")
        self.leave()
        kept = receipt == self.receipt and positions >= self.positions
        if self.receipt and not self.leaving and not kept and self.receipt not in self.forgiven:
            self.run.findings["lost"].append(
                f"till {self.number}, open receipt {self.receipt}: {self.positions} positions were "
                f"shown, receipt {receipt} with {positions} came back")
        self.receipt, self.positions, self.leaving = receipt, positions, False

    def check_open(self, number):
        """A receipt that was told to be closed or cancelled must not come back as open."""
        if number in (self.cancelled | set(self.announced)) - self.forgiven:
            self.run.findings["wrong"].append(
                f"till {self.number}, receipt {number}: told to be done, and open again")

    async def sell(self):
        choice = self.random
        self.enter("sale")
        if not self.receipt:
            if choice.random() < 0.15:
                await self.do("shift", "Shift .* begins", "1")
            kind = 2 if choice.random() < 0.08 else 1
            opened = await self.do(f"open {kind}", r"Receipt (\d+) is open")
            self.receipt, self.positions, self.leaving = int(opened[1]), 0, False
            if self.receipt in self.opened - self.forgiven:
                self.run.findings["duplicated"].append(
                    f"till {self.number}: number {self.receipt} given again")
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
        if self.announced and choice.random() < 0.2:
            await self.report(choice.choice(list(self.announced)))
        await (self.cancel() if choice.random() < 0.3 else self.commit())

    async def identify(self):
        fresh = self.random.random() < 0.4
        self.phone = (f"79{self.random.randint(10**8, 10**9 - 1)}" if fresh
                      else self.random.choice(KNOWN_PHONES))
        self.enter("identification")
        await self.do(f"card {self.phone}", r"Card \d|There is no customer")
        self.leave()

    async def cancel(self):
        locked = self.random.random() < 0.05
        if locked:
            self.lock = asyncio.create_task(self.hold_store(self.random.uniform(2, 3)))
            await asyncio.sleep(0.05)
        self.enter("cancel")
        self.leaving = True
        self.cancelling.add(self.receipt)
        await self.do("cancel", "Receipt .* cancelled", "1")
        self.leave()
        self.cancelled.add(self.receipt)
        self.receipt = None
        if locked and self.random.random() < 0.7:
            await self.lock  # the next receipt is stored, and the cancelled one before it

    async def report(self, number):
        self.enter("report")
        await self.do(f"report {number}",
                      f"Receipt {number} is (not )?reported|There is no closed receipt")
        self.leave()

    async def hold_store(self, seconds):
        """Locks the store for longer than the till waits for it."""
        def hold():
            # Not to be made: the till makes it for itself alone.
            with contextlib.closing(sqlite3.connect(f"file:{self.data}/till.db?mode=rw", uri=True,
                                                    isolation_level=None)) as store:
                store.execute("BEGIN IMMEDIATE")
                time.sleep(seconds)
        try:
            await asyncio.to_thread(hold)
            self.run.faults["store locked"] += 1
        except sqlite3.OperationalError:
            pass  # not there yet, or never free for so long

    async def commit(self):
        self.enter("commit")
        self.leaving = True
        done = await self.do("commit", r"Receipt (\d+) is closed: ([\d.,]+)\.")
        self.leave()
        self.announced[int(done[1])] = (self.positions, float(done[2].replace(",", "")))
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
        if self.lock:
            await self.lock
        self.target, self.backlog = None, True
        while self.backlog:
            await self.start("--no-delivery")
            self.process.stdin.close()
            if code := await patiently(self.process.wait(), f"till {self.number}, the last end"):
                raise Failure(f"till {self.number}, told to end, ended with code {code}")
        # What a forgiven receipt left parked or refused stays so.
        await self.finish([0, 1], "report", "--refused", "--yes")
        await self.finish([0, 3], "deliver", "--once")

    async def finish(self, codes, *arguments):
        """Lets a command of the office run until it ends with one of the codes."""
        for _ in range(20):
            command = await self.run.start("till", "--config", self.config, *arguments,
                                           log=f"till{self.number}.log")
            said, _ = await patiently(command.communicate(), " ".join(arguments))
            if command.returncode in codes:
                return
            if command.returncode < 0:
                break
            await asyncio.sleep(0.2)  # of a lock file that a kill left empty, until it is old
        raise Failure(f"till {self.number}: {' '.join(arguments)} ends with code "
                      f"{command.returncode}: {said.decode()}")
