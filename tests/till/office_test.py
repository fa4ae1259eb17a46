"""The integrator's commands of the till as a program, against the simulated service.
usage: office_test.py TILL SIMULATOR SOURCE [TEST...]"""
import contextlib
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import unittest

from place import Place

TILL, SIMULATOR, SOURCE = (pathlib.Path(sys.argv.pop(1)) for _ in range(3))


def first_column(text):
    return re.findall(r"^\| (`.*?) \|", text, re.M)


def open_files(process):
    files = set()
    for file in pathlib.Path(f"/proc/{process.pid}/fd").iterdir():
        with contextlib.suppress(FileNotFoundError):  # closed since it was listed
            files.add(os.readlink(file))
    return files


def wait_for(condition):
    end = time.monotonic() + 10
    while not condition():
        assert time.monotonic() < end
        time.sleep(0.01)


class Office(unittest.TestCase):
    def setUp(self):
        self.place = self.enterContext(Place(TILL, SIMULATOR))
        self.sell, self.order_fault = self.place.sell, self.place.order_fault

    def till(self, *arguments, expect=0, lines=()):
        done = self.place.run(*arguments, lines=lines)
        self.assertEqual(done.returncode, expect, done.stdout + done.stderr)
        return done.stdout

    def read(self, *arguments, expect=0):
        return json.loads(self.till(*arguments, "--json", expect=expect))

    def test_a_refused_receipt_is_listed_shown_and_reported_once_more(self):
        self.order_fault(kind="emptyBody", httpCode=200, operation="Offline.CreateAuthorizedOrder",
                         count=1)
        self.sell()
        self.sell()
        refused, = self.read("receipts", "--refused")
        self.assertEqual((refused["number"], refused["state"], refused["report"]),
                         (1, "committed", "refused"))
        self.assertTrue(refused["told"])
        self.assertEqual(len(self.read("receipts", "--since", refused["begun"][:10])), 2)
        self.assertEqual(self.read("receipts", "--since", "2999-01-01"), [])
        self.assertRegex(self.till("receipts"), r"^2  .* waiting in the queue\n1  .* refused: .+\n$")

        self.assertIn("Receipt 1 is reported.", self.till("report", "1"))
        self.till("report", "9", expect=1)
        self.till("deliver", "--once")
        shown, = self.read("receipts", "show", "1")
        self.assertEqual((shown["report"], shown["document"]["header"]["num"]), ("reported", 1))
        self.assertEqual([(entry["state"], entry["report"]) for entry in shown["history"]],
                         [("open", ""), ("committing", ""), ("committed", "refused"),
                          ("committed", "queued"), ("committed", "reported")])
        self.assertIn("1. Milk  2.000 x 2.50 = 5.00\ntotal 5.00", self.till("receipts", "show", "1"))
        self.till("receipts", "show", "9", expect=1)
        self.till("receipts", "shew", "1", expect=2)

    def test_exit_codes_tell_a_monitor_what_is_waiting_and_what_is_parked(self):
        self.sell()
        self.till("deliver", "--once")
        self.till("queue")
        self.place.talk_to("http://127.0.0.1:1")
        self.till("--no-delivery", lines=["add 1 Milk 2.50 1", "commit"] * 30)
        state = self.read("queue")
        self.assertEqual((state["waiting"], state["parked"], len(state["messages"])), (60, 0, 50))
        self.assertIn("the first 50 of 60", self.till("queue", "list"))
        self.till("deliver", "--once", expect=1)
        first = str(state["messages"][0]["id"])
        self.till("queue", "park", first)
        self.assertEqual(str(self.read("queue", "parked", expect=3)[0]["id"]), first)
        self.place.talk_to(self.place.address)
        self.till("deliver", "--once", expect=3)
        self.till("queue", expect=3)
        (self.place.data / "till.db").write_bytes(b"no database" * 100)
        for command in (["queue"], ["deliver", "--once"], ["receipts"]):
            self.till(*command, expect=1)
        self.assertIn("damaged/till.db.1", self.till())
        self.assertRegex((self.place.data / "till.log").read_text(),
                         "info till.cashier: .*damaged/till.db.1")

    def test_json_has_the_members_that_are_documented_and_no_others(self):
        self.sell()
        text = (SOURCE / "docs/commands.md").read_text().split("## For programs")[1]
        sections = re.split(r"\n`till (\w+)", text)[1:]
        answers = {"check": self.read("check"), "queue": self.read("queue"),
                   "receipts": self.read("receipts", "show", "1")[0]}
        answers["check"].update(certificateExpires=0, clockAhead=0)  # where the service tells them
        self.assertEqual(set(answers), set(sections[::2]))
        for command, section in zip(sections[::2], sections[1::2]):
            documented = re.findall(r"`(.+?)`", "".join(first_column(section)))
            told = list(answers[command])
            for inner in {"messages", "findings"} & set(told):
                told += [f"{inner}[].{name}" for name in answers[command][inner][0]]
            self.assertEqual(sorted(told), sorted(documented))

    def test_a_standing_delivery_goes_on_with_the_store_that_replaces_a_damaged_one(self):
        self.sell()
        with subprocess.Popen([TILL, "--config", self.place.config, "deliver"]) as deliverer:
            self.addCleanup(deliverer.kill)
            wait_for(lambda: self.read("queue")["waiting"] == 0)
            with open(self.place.data / "till.db", "r+b") as store:
                store.write(b"damage")
            self.assertIn("damaged/till.db.1", self.sell().stdout)
            wait_for(lambda: self.read("queue")["waiting"] == 0)
            deliverer.terminate()

    def metrics(self):
        """The samples by name with labels; the file must be whole and readable for others."""
        file = self.place.root / "till.prom"
        self.till("metrics", "--output", str(file))
        self.assertEqual(file.stat().st_mode & 0o777, 0o644)
        lines = file.read_text().splitlines()
        self.assertEqual(lines[-1], "# EOF")
        return {name: float(value) for name, value in
                (line.rsplit(" ", 1) for line in lines if not line.startswith("#"))}

    def test_metrics_count_what_happened_in_all_processes(self):
        self.sell("card 79160000001")
        self.order_fault(kind="drop", count=1, operation="Offline.CreateAuthorizedOrder")
        self.sell()
        self.till("deliver", "--once")
        self.order_fault(kind="emptyBody", httpCode=200, count=1)
        self.sell()
        found = self.metrics()
        def exchanges(operation, outcome, end="_count", le=""):
            name = "loyalty_till_exchange_duration_seconds" + end
            return found.get(f'{name}{{operation="Offline.{operation}",outcome="{outcome}"{le}}}')
        self.assertEqual([exchanges(*which) for which in (
            ("GetCustomer", "success"), ("CreateAuthorizedOrder", "success"),
            ("CreateAuthorizedOrder", "no_answer"), ("ChangeStatus", "success"))], [1, 2, 2, 2])
        self.assertEqual(exchanges("GetCustomer", "success", "_bucket", ',le="10.0"'), 1)
        self.assertLess(exchanges("GetCustomer", "success", "_sum"), 5)
        self.assertEqual([found[f'loyalty_till_{name}'] for name in (
            "store_readable", "selling", "waiting_messages", "parked_messages",
            "unstored_receipts", 'receipts{outcome="reported"}', 'receipts{outcome="refused"}')],
            [1, 0, 0, 0, 0, 2, 1])
        self.assertAlmostEqual(found["loyalty_till_last_success_timestamp_seconds"], time.time(),
                               delta=60)
        fleet = (SOURCE / "docs/fleet.md").read_text()
        self.assertEqual(set(re.findall(r"`(\w+)`", "".join(first_column(fleet)))),
                         {re.split("[{ ]|_bucket|_sum|_count", name)[0].removeprefix("loyalty_till_")
                          for name in found})
        self.assertEqual(re.findall(r"^\| (Loyalty\w+)", fleet, re.M), re.findall(
            r"alert: (\w+)", (SOURCE / "packaging/alerts.yml").read_text()))
        # Neither a damaged file of counts nor a damaged store keeps the figures from coming.
        (self.place.data / "exchanges").write_bytes(b"x" * 9)
        (self.place.data / "till.db").write_bytes(b"no database" * 100)
        self.assertEqual(self.metrics()["loyalty_till_store_readable"], 0)

    def test_every_program_lets_its_log_go_at_a_hang_up(self):
        log = self.place.data / "till.log"
        self.place.write_settings()
        windows = [[window]] if (window := TILL.with_name("till-window")).exists() else []
        for program in ([TILL], [TILL, "deliver"], *windows):
            log.unlink(missing_ok=True)
            with self.subTest(program), subprocess.Popen(
                    [*program, "--config", self.place.config], stdin=subprocess.PIPE,
                    stdout=subprocess.DEVNULL, env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}
            ) as process, contextlib.ExitStack() as at_the_end:
                at_the_end.callback(process.kill)
                wait_for(log.exists)
                log.rename(f"{log}.1")
                process.send_signal(signal.SIGHUP)
                wait_for(log.exists)
                wait_for(lambda: str(log) in open_files(process))
                self.assertNotIn(f"{log}.1", open_files(process))
                self.assertEqual(log.stat().st_mode & 0o777, 0o600)
                self.assertIsNone(process.poll())


if __name__ == "__main__":
    unittest.main(verbosity=2)
