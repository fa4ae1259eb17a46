"""The integrator's commands of the till as a program, against the simulated service.
usage: office_test.py TILL SIMULATOR SOURCE [TEST...]"""
import json
import os
import pathlib
import re
import subprocess
import sys
import time
import unittest

from place import Place

TILL, SIMULATOR, SOURCE = (pathlib.Path(sys.argv.pop(1)) for _ in range(3))


def first_column(text):
    return re.findall(r"^\| (`.*?) \|", text, re.M)


def wait_for(condition):
    end = time.monotonic() + 60
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
        self.assertRegex(self.till("receipts", "show", "1"), r"(?s)Milk +2 +2\.50 +5\.00\n.*No card\.$")
        self.till("receipts", "show", "9", expect=1)
        self.till("receipts", "shew", "1", expect=2)

    def test_a_day_of_refused_receipts_is_reported_in_one_go_beside_a_selling_till(self):
        self.place.settings["LmMindbox:secretKey"] = "wrong"
        for _ in range(3):
            self.sell()
        self.place.settings["LmMindbox:secretKey"] = "demo-secret"
        self.place.write_settings()
        with subprocess.Popen([TILL, "--config", self.place.config, "--no-delivery"], text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as selling:
            self.addCleanup(selling.kill)
            selling.stdin.write("add 4600 Milk 2.50\n")
            selling.stdin.flush()
            wait_for(lambda: len(self.read("receipts")) == 4)
            self.assertIn("Receipts to report again: 3.",
                          self.till("report", "--refused", expect=1, lines=["2"]))
            self.assertEqual(len(self.read("receipts", "--refused")), 3)
            self.assertRegex(self.till("report", "--refused", lines=["1"]),
                             r"(?s)Receipt 1 is reported.*Receipt 2 is.*Receipt 3 is reported")
            self.assertEqual(self.read("receipts", "--refused"), [])
            self.assertIn("Receipt 2 is reported", self.till("report", "1", "2", "--yes"))
            selling.stdin.close()
        self.till("report", expect=2)
        self.till("report", "1", "--refused", expect=2)

    def test_a_newer_store_is_read_and_exported_and_ends_a_delivery(self):
        self.sell()
        self.place.query("PRAGMA user_version = 99")
        self.assertEqual((self.read("queue")["waiting"], len(self.read("receipts"))), (1, 1))
        exported = self.place.root / "export.json"
        self.till("queue", "export", str(exported))
        self.assertEqual(len(json.loads(exported.read_text())["waiting"]), 1)
        for command in (["deliver"], ["deliver", "--once"], ["queue", "park", "1"]):
            self.assertIn("newer version", self.till(*command, expect=1))

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
        self.assertEqual(str(self.read("queue", "parked", expect=3)["messages"][0]["id"]), first)
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
        answers["check"].update(certificateExpires=0, clockAhead=0)  # only when the service tells them
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
            try:
                self.assertIn("damaged/till.db.1", self.sell().stdout)
                wait_for(lambda: self.read("queue")["waiting"] == 0)
            finally:
                deliverer.kill()

    def metrics(self):
        """The samples by name with labels, of a complete file that all users may read."""
        file = self.place.root / "till.prom"
        self.till("metrics", "--output", str(file))
        self.assertEqual(file.stat().st_mode & 0o777, 0o644)
        lines = file.read_text().splitlines()
        return {name: float(value) for name, value in
                (line.rsplit(" ", 1) for line in lines if not line.startswith("#"))}

    def test_metrics_replace_no_pipe(self):
        pipe = self.place.root / "pipe"
        os.mkfifo(pipe)
        self.assertIn("expected a regular file", self.till("metrics", "--output", pipe, expect=1))
        self.assertTrue(pipe.is_fifo())

    def test_metrics_count_what_happened_in_all_processes(self):
        self.sell("card 79160000001")
        self.order_fault(kind="drop", count=1, operation="Offline.CreateAuthorizedOrder")
        self.sell()
        self.till("deliver", "--once")
        self.order_fault(kind="emptyBody", httpCode=200, count=1)
        self.sell()
        found = self.metrics()
        def exchanges(operation, outcome, name="exchanges_total"):
            name = "loyalty_till_" + name
            return found.get(f'{name}{{operation="Offline.{operation}",outcome="{outcome}"}}')
        self.assertEqual([exchanges(*which) for which in (
            ("GetCustomer", "success"), ("CreateAuthorizedOrder", "success"),
            ("CreateAuthorizedOrder", "no_answer"), ("ChangeStatus", "success"))], [1, 2, 2, 2])
        self.assertLess(exchanges("GetCustomer", "success", "exchange_seconds_total"), 5)
        self.assertEqual([found[f'loyalty_till_{name}'] for name in (
            "store_readable", "selling", "waiting_messages", "parked_messages",
            "unstored_receipts", 'receipts{outcome="reported"}', 'receipts{outcome="refused"}')],
            [1, 0, 0, 0, 0, 2, 1])
        self.assertAlmostEqual(found["loyalty_till_last_success_timestamp_seconds"], time.time(),
                               delta=60)
        page = (SOURCE / "docs/install.md").read_text()
        self.assertEqual(set(re.findall(r"`(\w+)`", "".join(first_column(page)))),
                         {re.split("[{ ]", name)[0].removeprefix("loyalty_till_")
                          for name in found})
        self.assertEqual(re.findall(r"^- `(Loyalty\w+)`", page, re.M), re.findall(
            r"alert: (\w+)", (SOURCE / "packaging/alerts.yml").read_text()))
        # A damaged count or store must not stop the metrics.
        (self.place.data / "unsaved").write_bytes(b"x" * 9)
        (self.place.data / "till.db").write_bytes(b"no database" * 100)
        self.assertEqual(self.metrics()["loyalty_till_store_readable"], 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
