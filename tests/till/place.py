"""A till as a program with its settings and data, and its simulated service."""
import contextlib
import json
import os
import pathlib
import re
import sqlite3
import subprocess
import tempfile
import urllib.request


class Place(contextlib.ExitStack):
    def __init__(self, till, simulator):
        super().__init__()
        self.till, self.simulator = till, simulator
        self.root = pathlib.Path(self.enter_context(tempfile.TemporaryDirectory()))
        self.data, self.config = self.root / "data", self.root / "till.conf"
        self.settings = {"LmMindbox:endpoint": "till-demo", "LmMindbox:secretKey": "demo-secret",
                         "Till:shopCode": "12", "Till:cashCode": "3",
                         "Till:dataDir": str(self.data), "Till:language": "en"}
        self.mode, self.more, self.environment, self.around = 0o600, "", {}, []
        self.simulate()

    def simulate(self, *arguments):
        simulator = subprocess.Popen([self.simulator, *arguments], text=True,
                                     stdout=subprocess.PIPE)
        self.callback(simulator.communicate)
        self.callback(simulator.kill)
        self.address = re.search(r"https?://[\d.:]+", simulator.stdout.readline())[0]
        self.talk_to(self.address)

    def talk_to(self, address, path="/v3/operations/sync"):
        self.settings["LmMindbox:url"] = address + path

    def order_fault(self, **fault):
        urllib.request.urlopen(f"{self.address}/simulator/faults", json.dumps(fault).encode())

    def write_settings(self):
        self.config.touch()
        self.config.write_text("\n".join(f"{key}={value}" for key, value in self.settings.items())
                               + "\n" + self.more)
        self.config.chmod(self.mode)

    def run(self, *arguments, lines=()):
        self.write_settings()
        environment = {name: value for name, value in os.environ.items() if "proxy" not in name}
        return subprocess.run([*self.around, self.till, "--config", self.config, "--language", "en",
                               *arguments], text=True, input="\n".join([*lines, ""]),
                              env={**environment, **self.environment}, check=False,
                              capture_output=True)

    def sell(self, *lines):
        return self.run("--no-delivery", lines=[*lines, "add 4600 Milk 2.50 2", "commit"])

    def query(self, statement):
        with contextlib.closing(sqlite3.connect(self.data / "till.db")) as store, store:
            store.execute(statement)
