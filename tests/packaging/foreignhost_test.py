"""Builds against an installation alone: each of its headers, the code samples of docs/host.md, and
the example host, which then sells.
usage: foreignhost_test.py CMAKE BUILD_DIRECTORY EXAMPLE SIMULATOR"""
import concurrent.futures
import json
import os
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
# The names that the samples of docs/host.md use.
PARAMETERS = """BasicLoyaltySystem *system, QSharedPointer<AbstractDocument> receipt,
    DialogPresenter &cashier, ReceiptKeeper &keeper, QSharedPointer<ProgressDisplay> progress,
    MessageSink &queue, QString text, QJsonObject kept, QJsonObject message"""


def run(*command):
    done = subprocess.run(command, check=False, text=True, capture_output=True)
    assert done.returncode == 0, f"{command}: {done.stdout}{done.stderr}"


def setUpModule():
    global PREFIX
    PREFIX = pathlib.Path(unittest.enterModuleContext(tempfile.TemporaryDirectory()))
    run(CMAKE, "--install", BUILD, "--prefix", PREFIX)


class Installed(unittest.TestCase):
    def setUp(self):
        packages = next(PREFIX.glob("**/pkgconfig"))
        self.flags = subprocess.run(
            ["pkg-config", "--cflags", "loyalty-till"], check=True, text=True,
            env=os.environ | {"PKG_CONFIG_PATH": str(packages)}, capture_output=True).stdout.split()
        root = PREFIX / "include/loyalty-till"
        self.headers = [str(header.relative_to(root)) for header in root.glob("**/*.h")]
        self.assertIn("host/dialog.h", self.headers)

    def errors(self, code):
        return subprocess.run(["c++", "-std=c++20", "-fPIC", "-fsyntax-only", *self.flags, "-xc++",
                               "-"], input=code, text=True, check=False, capture_output=True).stderr

    def test_each_header_compiles_by_itself(self):
        codes = [f"#include <{header}>\n" * 2 for header in self.headers]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for header, errors in zip(self.headers, pool.map(self.errors, codes)):
                self.assertEqual(errors, "", header)

    def test_each_piece_of_the_page_compiles(self):
        page = (pathlib.Path(EXAMPLE) / "../../docs/host.md").read_text(encoding="utf-8")
        pieces = re.findall(r"```cpp\n(.*?)```", page, re.DOTALL)
        self.assertGreater(len(pieces), 5)
        includes = "".join(f"#include <{header}>\n" for header in self.headers)
        functions = "".join(f"void piece{i}({PARAMETERS}) {{{{\n{piece}}}}}\n"
                            for i, piece in enumerate(pieces))
        self.assertEqual(self.errors(f"{includes}#include <QPluginLoader>\n"
                                     "using namespace Qt::StringLiterals;\n"
                                     f"void say(QString);\nvoid keep();\n{functions}"), "")


class ForeignHost(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        build = self.root / "built"
        run(CMAKE, "-S", EXAMPLE, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={PREFIX}")
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
        # The input ends at the code dialog, after an empty answer that repeats the dialog.
        said = self.sell().communicate(registration + "\n", timeout=30)[0]
        self.assertRegex(said, r"(?s)no customer: .+\ndelivered: 1\n")
        self.simulator.stdout.readline()  # the first SMS
        time.sleep(1)  # an order's id contains its second
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
