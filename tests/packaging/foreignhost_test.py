"""Builds the example host against an installation and nothing else, and sells with it.
usage: foreignhost_test.py CMAKE BUILD_DIRECTORY EXAMPLE SIMULATOR"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

CMAKE, BUILD, EXAMPLE, SIMULATOR = sys.argv[1:5]
del sys.argv[1:]
PHONE = "9035550001"


def run(*command):
    done = subprocess.run(command, check=False, text=True, capture_output=True)
    assert done.returncode == 0, f"{command}: {done.stdout}{done.stderr}"


class ForeignHost(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        prefix, build = self.root / "installed", self.root / "built"
        run(CMAKE, "--install", BUILD, "--prefix", prefix)
        run(CMAKE, "-S", EXAMPLE, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}")
        run(CMAKE, "--build", build)
        self.program = build / "foreignhost"
        self.simulator = subprocess.Popen([SIMULATOR], text=True, stdout=subprocess.PIPE)
        self.addCleanup(self.simulator.communicate)
        self.addCleanup(self.simulator.kill)
        self.address = re.search(r"http://[\d.:]+", self.simulator.stdout.readline())[0]
        self.config = self.root / "till.conf"
        self.config.touch(0o600)
        self.config.write_text(f"LmMindbox:url={self.address}/v3/operations/sync\n"
                               "LmMindbox:endpoint=till-demo\nLmMindbox:secretKey=demo-secret\n")

    def sell(self):
        return subprocess.Popen([self.program, self.config, self.root, PHONE], text=True,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def test_sells_to_a_new_customer_and_ends_with_its_input(self):
        registration = "1\nAnna\n05.03.1990\n1\na@example.org\n"
        # The input ends where the code is asked for, behind an empty answer that is asked again.
        said = self.sell().communicate(registration + "\n", timeout=30)[0]
        self.assertRegex(said, r"(?s)no customer: .+\ndelivered: 1\n")
        self.simulator.stdout.readline()  # the first SMS
        time.sleep(1)  # an order is known by its second
        with self.sell() as host:
            code = re.search(r"code (\d+)", self.simulator.stdout.readline())[1]
            said = host.communicate(code + "\n", timeout=30)[0]
        self.assertEqual(host.returncode, 0, said)
        self.assertRegex(said, r"(?s)customer: Anna\n.*delivered: 1\n")
        with urllib.request.urlopen(f"{self.address}/simulator/dump") as dump:
            orders = json.load(dump)["orders"]
        self.assertEqual([(order["mobilePhone"], order["totalPrice"], order["lines"][0]["status"])
                          for order in orders],
                         [("", 179.8, "Paid"), ("79035550001", 179.8, "Paid")])


if __name__ == "__main__":
    unittest.main(verbosity=2)
