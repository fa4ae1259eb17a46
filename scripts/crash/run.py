"""What all actors of a crash test share: its settings, its processes and its counts."""
import asyncio
import contextlib
import os
import pathlib
import random
import signal
import time
from collections import Counter

SECRET = "crash-test-secret"
PATIENCE = 60  # seconds for one step of a process on a busy machine
PHASES = ("start", "identification", "sale", "cancel", "commit", "report", "delivery")
FINDINGS = ("lost", "duplicated", "unexplained", "wrong", "broken files")


class Killed(Exception):
    """The process ended because the test killed it."""


class Failure(Exception):
    """The test cannot go on: a process hangs or has ended by itself."""


class Run:
    """What all actors share: the settings of the run and its counts."""

    def __init__(self, options, directory):
        self.wanted = options.kills
        self.seed = options.seed
        self.directory = directory
        self.binaries = pathlib.Path(options.build).resolve() / "bin"
        self.kills, self.phases, self.faults = Counter(), Counter(), Counter()
        self.findings = {kind: [] for kind in FINDINGS}
        self.environment = {name: value for name, value in os.environ.items()
                            if name not in ("TILL_CONFIG", "QT_LOGGING_RULES",
                                            "QT_MESSAGE_PATTERN")}
        self.environment["SIMULATOR_SECRET_KEY"] = SECRET
        self.receipts = self.cancelled = self.in_memory = 0
        self.processes = []  # that nobody has killed yet
        self.begun = time.monotonic()

    def random(self, actor):
        return random.Random(f"{self.seed}/{actor}")

    def enough(self):
        return self.kills.total() >= self.wanted

    async def start(self, program, *arguments, log, stdin=asyncio.subprocess.DEVNULL):
        with open(self.directory / log, "ab") as errors:
            process = await asyncio.create_subprocess_exec(
                str(self.binaries / program), *map(str, arguments), stdin=stdin,
                stdout=asyncio.subprocess.PIPE, stderr=errors, env=self.environment,
                start_new_session=True)
        self.processes = [known for known in self.processes if known.returncode is None]
        self.processes.append(process)
        return process

    def kill(self, victim, process, phase=None):
        """Kills the process unless there were enough kills; returns whether it did."""
        if self.enough() or not self.end(process):
            return False
        self.kills[victim] += 1
        if phase:
            self.phases[phase] += 1
        if self.kills.total() % 100 == 0:
            print(f"{self.kills.total()} kills, {time.monotonic() - self.begun:.0f} s", flush=True)
        return True

    def end(self, process):
        """Kills the process, once; returns whether it did."""
        if process not in self.processes or process.returncode is not None:
            return False
        self.processes.remove(process)
        # asyncio's own kill() looks first whether the process has ended, and so takes the exit code
        # away from the thread that waits for it.
        with contextlib.suppress(ProcessLookupError):
            os.kill(process.pid, signal.SIGKILL)
        return True

    async def gone(self, process, name):
        """Waits for the end of a process that nobody but the test may end."""
        code = await process.wait()
        if code != -signal.SIGKILL:
            raise Failure(f"{name} ended by itself with code {code}")

    async def end_all(self):
        for process in list(self.processes):
            if self.end(process):
                await process.wait()

    def table(self):
        rows = [("receipts", self.receipts), ("  only in memory, and told", self.in_memory),
                ("cancelled", self.cancelled),
                ("kills", self.kills.total()),
                *((f"  of {name}", self.kills[name])
                  for name in ("till", "deliverer", "office", "simulator")),
                *((f"  during {name}", self.phases[name]) for name in PHASES),
                ("faults", self.faults.total()),
                *((f"  {name}", count) for name, count in sorted(self.faults.items())),
                *((kind, len(found)) for kind, found in self.findings.items()),
                ("seconds", round(time.monotonic() - self.begun))]
        return "\n".join(f"{name:28}{count:8}" for name, count in rows)


async def patiently(step, name):
    try:
        async with asyncio.timeout(PATIENCE):
            return await step
    except TimeoutError:
        raise Failure(f"no answer within {PATIENCE} s: {name}") from None
