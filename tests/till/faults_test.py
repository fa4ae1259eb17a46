"""Runs the till as a program with faults of its disk and queue, and examines the files it leaves.
usage: faults_test.py TILL SIMULATOR [TEST...]"""
import contextlib
import http.server
import json
import os
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import threading
import unittest
import urllib.request

TILL, SIMULATOR = sys.argv.pop(1), sys.argv.pop(1)
SECRET = "s3cret,key;of the test"
PIPES = {"text": True, "stdout": subprocess.PIPE, "stderr": subprocess.STDOUT}


class Till(contextlib.AbstractContextManager):
    """A selling till, driven line by line."""

    def __init__(self, config, **environment):
        self.output = ""
        self.process = subprocess.Popen(
            [TILL, "--config", config, "--no-delivery"], stdin=subprocess.PIPE,
            env={**os.environ, **environment}, **PIPES)
        self.start = self.say()

    def type(self, *lines):
        self.process.stdin.write("\n".join([*lines, ""]))
        self.process.stdin.flush()

    def say(self, *lines):
        """Types the lines and returns the till's answers."""
        self.type(*lines, "# end")
        said = ""
        while not said.endswith("# end\n"):
            line = self.process.stdout.readline()
            assert line, f"the till ended: {said}"
            said += line
        self.output += said
        return said

    def __exit__(self, *_):
        self.output += self.process.communicate()[0]
        assert self.process.returncode == 0, self.process.returncode


class RepeatingService(http.server.BaseHTTPRequestHandler):
    """A service that refuses everything and repeats the secret key in many spellings."""

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        key = self.headers["Authorization"]
        answer = json.dumps({"status": "ProtocolError", "errorMessage": f"bad: {key}", key: [key]})
        self.send_response(400)
        self.send_header("Content-Length", len(answer))
        self.end_headers()
        self.wfile.write(answer.encode())

    def log_message(self, *_):
        pass


class Faults(unittest.TestCase):
    def setUp(self):
        root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.data, self.config = root / "data", root / "till.conf"
        self.configure("http://127.0.0.1:1")

    def configure(self, address):
        self.config.write_text(f"LmMindbox:url={address}/v3/operations/sync\nLmMindbox:endpoint="
                               f"till-demo\nLmMindbox:secretKey={SECRET}\nTill:language=en\n"
                               f"Till:dataDir={self.data}")
        self.config.chmod(0o600)

    def command(self, *arguments):
        return subprocess.run([TILL, "--config", self.config, *arguments], check=False, **PIPES)

    def rows(self, query):
        with contextlib.closing(sqlite3.connect(self.data / "till.db")) as store:
            return store.execute(query).fetchall()

    def committed(self):
        """Each committed receipt's number, count of positions and report."""
        rows = self.rows("SELECT number, (SELECT count(*) FROM positions WHERE receipt = receipts.id), "
                         "report FROM receipts WHERE state = 'committed'")
        return {number: (positions, report) for number, positions, report in rows}

    def test_receipts_that_a_locked_store_does_not_take_are_stored_when_it_is_free(self):
        with Till(self.config) as till:
            till.say("add 1 Milk 2.00", "commit")
            store = sqlite3.connect(self.data / "till.db", isolation_level=None)
            self.addCleanup(store.close)
            store.execute("BEGIN EXCLUSIVE")
            self.assertRegex(till.say("add 2 Bread 3.00", "commit"),
                             r"\[not saved\] .*till\.db: .*locked\nReceipt 2 is only in memory")
            self.assertIn("Not saved: receipt 2.\nThe till keeps running", till.say("quit"))
            store.execute("ROLLBACK")
            self.assertIn("Receipt 2 is on the disk now", till.say("add 3 Tea 1.00"))
        self.assertEqual(self.committed(), {1: (1, "queued"), 2: (1, "queued")})

    def test_a_newer_store_is_refused_by_name_and_left_as_it_is(self):
        with Till(self.config) as till:
            till.say("add 1 Milk 2.00", "commit")
        with contextlib.closing(sqlite3.connect(self.data / "till.db")) as store:
            store.execute("PRAGMA user_version = 9")
        before = (self.data / "till.db").read_bytes()
        for command, code in ([], 2), (["deliver", "--once"], 1):
            answer = self.command(*command)
            self.assertEqual((answer.returncode, answer.stdout.count("newer version")), (code, 1))
        self.assertEqual((self.data / "till.db").read_bytes(), before)

    def test_a_store_that_cannot_be_read_is_named_whatever_is_asked(self):
        (self.data / "till.db").mkdir(parents=True)
        for command in ["queue"], ["receipts"], ["report", "1"]:
            answer = self.command(*command)
            self.assertIn("till.db: expected a regular file", answer.stdout)
            self.assertEqual(answer.returncode, 1)

    def test_a_key_that_the_service_repeats_is_left_nowhere(self):
        service = http.server.ThreadingHTTPServer(("127.0.0.1", 0), RepeatingService)
        self.addCleanup(service.server_close)
        threading.Thread(target=service.serve_forever, daemon=True).start()
        self.addCleanup(service.shutdown)
        with Till(self.config) as till:
            till.say("add 1 Milk 2.00", "commit")  # its order waits
        self.configure(f"http://127.0.0.1:{service.server_port}")
        with Till(self.config, QT_LOGGING_RULES="*.debug=true") as till:
            till.say("card 79161234567", "add 1 Milk 2.00", "commit", "queue")
        for command in (["deliver", "--once"], ["queue", "parked"],
                        ["queue", "export", self.data / "export.json"]):
            till.output += self.command(*command).stdout
        self.assertNotIn("\n\n", till.output)
        answers = [self.rows("SELECT answer FROM receipts WHERE report = 'refused'")[0][0],
                   *re.findall("refused, HTTP code.*", till.output)]
        self.assertEqual(len(answers), 3)
        for answer in answers:
            self.assertIn("bad: Mindbox secretKey", answer)
        left = [till.output, *(path.read_bytes().decode(errors="replace")
                               for path in self.data.rglob("*") if path.is_file())]
        self.assertTrue(any("HTTP 400" in text for text in left))
        for text in left:
            self.assertNotIn(SECRET, text)

    def test_a_whole_sale_leaves_no_secret_and_no_open_file(self):
        self.addCleanup(os.umask, os.umask(0))
        simulator = subprocess.Popen([SIMULATOR, "--seed", "1"], **PIPES,
                                     env={**os.environ, "SIMULATOR_SECRET_KEY": SECRET})
        self.addCleanup(simulator.communicate)
        self.addCleanup(simulator.kill)
        address = re.search(r"http://[\d.:]+", simulator.stdout.readline())[0]
        self.configure(address)
        with Till(self.config, QT_LOGGING_RULES="*.debug=true") as till:
            till.type("card 79161234567", "1", "Anna", "", "1", "a@example.org")
            code = re.search(r"code (\d+)", simulator.stdout.readline())[1]
            said = till.say(code, "edit", "Anna", "05.03.1990", "1", "b@example.org",
                            "add 1 Milk 2.00", "commit", "queue")
            self.assertRegex(said, r"(?s)Done: .*\nMessages waiting: 1")
            arguments = pathlib.Path(f"/proc/{till.process.pid}/cmdline").read_text()
        till.output += self.command("queue", "export", self.data / "export.json").stdout
        till.output += self.command("deliver", "--once").stdout
        self.assertTrue(till.output.endswith("waiting: 0, parked: 0\n"))
        with urllib.request.urlopen(f"{address}/simulator/dump") as dump:
            left = {"dump": dump.read().decode(), "arguments": arguments, "output": till.output}
        self.assertIn("b@example.org", left["dump"])
        for path in [self.data, *self.data.rglob("*")]:
            mode = 0o700 if path.is_dir() else 0o600
            self.assertEqual(path.stat().st_mode & 0o7777, mode, path)
            if path.is_file():
                left[path.name] = path.read_bytes().decode(errors="replace")
        line = f"Подтверждение телефона '79161234567' кодом '{code}'"
        self.assertEqual(left["till.log"].count(line), 1)
        left["till.log"] = left["till.log"].replace(line, "")
        for name, text in left.items():
            self.assertNotIn(SECRET, text, name)
            self.assertNotRegex(text, rf"\b{code}\b", name)


if __name__ == "__main__":
    unittest.main(verbosity=2)
