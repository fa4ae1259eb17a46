"""Provokes each wrong setting that "till check" tells apart, and holds docs/check.md's table
against what it said.
usage: check_test.py TILL SIMULATOR DOCUMENT [--write]    --write: puts the table into the document"""
import datetime
import email.utils
import fcntl
import http.server
import json
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

from place import Place

TILL, SIMULATOR = sys.argv[1:3]
DOCUMENT = pathlib.Path(sys.argv[3])
WRITES = "--write" in sys.argv
del sys.argv[1:]

CERTIFICATES = """
: >none.pem
new='openssl req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=service'
for authority in authority other; do
    $new -x509 -days 90 -subj /CN=$authority -keyout $authority.key -out $authority.pem
done
sign() { # NAME HOST DAYS
    $new -keyout $1.key -out $1.csr
    printf "subjectAltName=$2" > $1.ext
    openssl x509 -req -in $1.csr -CA authority.pem -CAkey authority.key -CAcreateserial \\
        -extfile $1.ext -days $3 -out $1.pem
}
sign good IP:127.0.0.1 60
sign short IP:127.0.0.1 5
sign strange DNS:elsewhere.example 60
sign expired IP:127.0.0.1 0
sleep 1
"""


class Answer(http.server.BaseHTTPRequestHandler):
    """Answers everything with one body, at one time."""
    body, at = b"<html>Log in</html>", None

    def do_POST(self):
        self.send_response(200)
        self.send_header("Content-Length", str(len(self.body)))
        self.end_headers()
        self.wfile.write(self.body)
    do_GET = do_POST

    def date_time_string(self, timestamp=None):
        return email.utils.format_datetime(
            datetime.datetime.now(datetime.timezone.utc) + (self.at or datetime.timedelta()),
            usegmt=True)

    def log_message(self, *_):
        pass


class Wrong(Place):
    """One about which something can be wrong."""

    def __init__(self):
        super().__init__(TILL, SIMULATOR)
        self.settings["LmMindbox:timeout"] = "1"

    def secure(self, name, authority="authority"):
        pem = {end: CERTIFICATE_DIRECTORY / f"{name}.{end}" for end in ("pem", "key")}
        self.simulate("--certificate", pem["pem"], "--private-key", pem["key"])
        self.trust(authority)

    def trust(self, authority="authority"):
        self.settings["Http:caFile"] = CERTIFICATE_DIRECTORY / f"{authority}.pem"

    def serve(self, **handler):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0),
                                                 type("Handler", (Answer,), handler))
        self.callback(server.server_close)
        self.callback(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.talk_to(f"http://127.0.0.1:{server.server_port}")

    def hang(self):
        listener = self.enter_context(socket.create_server(("127.0.0.1", 0)))
        self.talk_to(f"http://127.0.0.1:{listener.getsockname()[1]}")


def no_way(place):
    place.settings["LmMindbox:url"] = "https://loyalty.invalid/v3/operations/sync"


def through(place, environment):
    place.settings["LmMindbox:url"] = "https://loyalty.example/v3/operations/sync"
    if environment:
        place.environment["https_proxy"] = "http://127.0.0.1:1"
    else:
        place.settings["Http:proxy"] = "http://127.0.0.1:1"


def refuse(place):
    place.order_fault(kind="emptyBody", httpCode=200, operation="Offline.CreateAuthorizedOrder",
                      count=1)
    place.sell()
    place.run("deliver", "--once")


def fill(place):
    place.data.mkdir(0o700)
    place.around = ["unshare", "-rm", "sh", "-c",
                    f'mount -t tmpfs -o size=1m,mode=700 none {place.data} && exec "$@"', "sh"]


def put(**settings):
    """Settings whose keys are written with "_" for ":"."""
    return lambda place: place.settings.update(
        {key.replace("_", ":", 1): value for key, value in settings.items()})


def without(key):
    return lambda place: place.settings.pop(key)


def in_store(statement):
    return lambda place: (place.sell(), place.query(statement))


RULE = "| --- | --- | --- | --- | --- |\n"
F, W = "failed", "warning"
ID_MASK = "%(document.shopCode[04d])%(document.cashCode[02d])"
# What is wrong, how it is provoked, and what is found, in order.
CASES = [
    ("a line without \"=\"", lambda place: setattr(place, "more", "LmMindbox:timeout\n"),
     [(F, "settings.file")]),
    ("settings that others may read", lambda place: setattr(place, "mode", 0o644),
     [(W, "settings.file")]),
    ("a misspelt key", put(LmMindbox_secretkey="x"), [(W, "settings.values")]),
    ("time-out 0", lambda place: (put(LmMindbox_timeout="0")(place),
                                  place.order_fault(kind="delay", milliseconds=200, count=1)),
     [(F, "settings.values"), (F, "service.lookup")]),
    ("no register number", without("Till:cashCode"), [(W, "settings.values")]),
    ("no key", without("LmMindbox:secretKey"), [(F, "settings.values"), (F, "service.lookup")]),
    ("a key in quotation marks", put(LmMindbox_secretKey='"demo-secret"'),
     [(W, "settings.values"), (F, "service.lookup")]),
    ("a wrong key", put(LmMindbox_secretKey="other"), [(F, "service.lookup")]),
    ("a wrong endpoint", put(LmMindbox_endpoint="other"), [(F, "service.lookup")]),
    ("a wrong path", lambda place: place.talk_to(place.address, "/v3/operation/sync"),
     [(W, "settings.values"), (F, "service.lookup")]),
    ("a mask with an unknown field",
     put(LmMindbox_requestTransactionIdMask=ID_MASK + "%(document.nummer[07d])"),
     [(F, "masks.order")]),
    ("an order's mask with a product's field",
     put(LmMindbox_requestTransactionIdMask=ID_MASK + "%(document.num[07d])%(position.code[s])"),
     [(F, "masks.order")]),
    ("a mask without the receipt's number", put(LmMindbox_requestTransactionIdMask=ID_MASK),
     [(W, "masks.order")]),
    ("a mask whose numbers run together",
     put(LmMindbox_requestTransactionIdMask=ID_MASK + "%(document.shift[02d])%(document.num[02d])"),
     [(W, "masks.order")]),
    ("a product mask without the code", put(LmMindbox_productIdMask="product"),
     [(W, "masks.product")]),
    ("no plugin", put(Till_plugin="/nowhere/lmmindbox.so"), [(F, "plugin")]),
    ("another plugin", put(Till_plugin=TILL), [(F, "plugin")]),
    ("a plugin of something else", put(Till_plugin=next(
        pathlib.Path("/usr/lib").glob("*/qt6/plugins/sqldrivers/libqsqlite.so"))), [(F, "plugin")]),
    ("a data directory in \"~\"", put(Till_dataDir="~/till"), [(F, "settings.values")]),
    ("a data directory that cannot be written", put(Till_dataDir="/dev/null/till"),
     [(F, "place.directory"), (W, "place.log")]),
    ("a data directory open to others", lambda place: place.data.mkdir(0o755),
     [(W, "place.directory")]),
    ("a data directory of another user",
     lambda place: (place.data.mkdir(0o700), os.chown(place.data, 65534, -1)),
     [(W, "place.directory")]),
    ("a log that is a directory", lambda place: put(Till_log=place.root)(place), [(W, "place.log")]),
    ("a full disk", fill, [(F, "place.space")]),
    ("a damaged store", lambda place: (place.data.mkdir(0o700), (place.data / "till.db")
                                       .write_bytes(b"no database" * 99)), [(F, "store")]),
    ("a store of a newer version", in_store("PRAGMA user_version = 99"), [(F, "store")]),
    ("orders that wait too long", in_store("UPDATE messages SET queuedAt = 1"),
     [(W, "queue.waiting")]),
    ("parked messages", in_store("UPDATE messages SET parked = 1, receipt = NULL"),
     [(W, "queue.parked")]),
    ("a refused receipt", refuse, [(W, "receipts.refused")]),
    ("a proxy of the environment", lambda place: through(place, True),
     [(W, "proxy"), (F, "service.connection")]),
    ("a proxy that is not there", lambda place: through(place, False),
     [(F, "service.connection")]),
    ("a host that does not exist", no_way, [(F, "service.name")]),
    ("a port where nobody listens", lambda place: place.talk_to("http://127.0.0.1:1"),
     [(F, "service.connection")]),
    ("http to another machine", put(LmMindbox_url="http://loyalty.invalid/v3/operations/sync"),
     [(W, "settings.values"), (F, "service.name")]),
    ("https where the service speaks http",
     lambda place: (place.trust(), place.talk_to(place.address.replace("http:", "https:"))),
     [(F, "service.certificate")]),
    ("http where the service speaks https",
     lambda place: (place.secure("good"), place.talk_to(place.address.replace("https:", "http:"))),
     [(F, "service.answer")]),
    ("a certificate that has expired", lambda place: place.secure("expired"),
     [(F, "service.certificate")]),
    ("a certificate that ends in five days", lambda place: place.secure("short"),
     [(W, "service.certificate")]),
    ("a certificate for another host", lambda place: place.secure("strange"),
     [(F, "service.certificate")]),
    ("a certificate of another authority", lambda place: place.secure("good", "other"),
     [(F, "service.certificate")]),
    ("a file of authorities that holds none", lambda place: place.secure("good", "none"),
     [(F, "service.certificate")]),
    ("a service that hangs", lambda place: place.hang(), [(F, "service.answer")]),
    ("a service that hangs at the look-up",
     lambda place: place.order_fault(kind="delay", milliseconds=3000, count=1),
     [(F, "service.lookup")]),
    ("a login page of the network", lambda place: place.serve(), [(F, "service.lookup")]),
    ("a service that has too much to do",
     lambda place: place.order_fault(kind="busy", httpCode=503, retryAfter=1, count=1),
     [(F, "service.lookup")]),
    ("a clock that is a day late",
     lambda place: place.serve(body=b'{"status":"Success","customer":{"processingStatus":'
                               b'"NotFound"}}', at=datetime.timedelta(days=1)), [(F, "clock")]),
]


def provoke(wrong):
    with Wrong() as place:
        try:
            wrong(place)
        except PermissionError:  # what only root can do
            return None
        if place.around and place.around[0] == "unshare" and \
                subprocess.run([*place.around, "true"], check=False, capture_output=True).returncode:
            return None
        done = place.run("check", "--json")
        text = done.stdout.replace(str(place.root), "/PLACE")
        return done.returncode, json.loads(text)


def stable(finding):
    """What was found, where it is the same in each run and with each version of the libraries."""
    if finding["check"].startswith("service"):
        return re.sub(r"(^|.*; )(?=Http:proxy|https_proxy)|^.*$", "", finding["found"], count=1)
    found = finding["found"].replace(TILL, "/PLACE/till")
    for changing, instead in ((r"(?<=oldest for )\d+", "..."), (r"/usr/lib/.*(?=/libqsqlite)", "..."),
                              (r"(?<=be loaded: )(?!expected).*", "..."),
                              (r"(?<=1:)\d{4,}", "PORT"), (r"-86[34]\d\d", "-86400")):
        found = re.sub(changing, instead, found)
    return found


class Check(unittest.TestCase):
    maxDiff = None

    def test_finds_nothing_where_nothing_is_wrong(self):
        for secure in (False, True):
            with Wrong() as place:
                if secure:
                    place.secure("good")
                    place.settings["Till:log"] = "-"
                place.sell()
                done = place.run("check")
                self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
                self.assertEqual({line.split()[0] for line in done.stdout.splitlines()}, {"ok"})
                self.assertNotIn("demo-secret", done.stdout)
                self.assertEqual("(60 days)" in done.stdout, secure)
                self.assertRegex(done.stdout, r" none is selling here[^!]* none is at work")
                for file in (place.data / "till.lock", place.data):  # a deliverer holds the latter
                    lock = os.open(file, os.O_RDONLY)
                    place.callback(os.close, lock)
                    fcntl.flock(lock, fcntl.LOCK_EX)
                self.assertRegex(place.run("check").stdout,
                                 r" one is selling here[^!]* one is at work")

    def test_does_not_keep_a_till_from_starting_while_it_looks_at_its_lock(self):
        with Wrong() as place:
            place.sell()
            with (place.data / "till.lock").open() as lock:
                fcntl.flock(lock, fcntl.LOCK_SH)
                threading.Timer(0.1, fcntl.flock, (lock, fcntl.LOCK_UN)).start()
                self.assertEqual(place.sell().returncode, 0)

    def test_tells_each_wrong_setting_apart(self):
        rows, told, is_whole = [], {}, True
        for wrong, provocation, expected in CASES:
            with self.subTest(wrong):
                outcome = provoke(provocation)
                if outcome is None:
                    print(f"not provoked here: {wrong}")
                    is_whole = False
                    continue
                code, answer = outcome
                found = [finding for finding in answer["findings"] if finding["level"] != "ok"]
                self.assertEqual([(finding["level"], finding["check"]) for finding in found],
                                 expected, found)
                self.assertEqual(code, 2 if answer["level"] == "failed" else 1)
                self.assertTrue(all(finding["mend"] for finding in found), found)
                self.assertNotIn("demo-secret", json.dumps(answer))
                lines = tuple(" | ".join((f["level"], f"`{f['check']}`", stable(f), f["mend"]))
                              for f in found)
                self.assertEqual(told.setdefault(lines, wrong), wrong)
                rows += [f"| {wrong if line is lines[0] else ''} | {line} |" for line in lines]
        self.compare(rows, is_whole)

    def compare(self, rows, is_whole):
        head, rest = DOCUMENT.read_text().split(RULE)
        table, tail = re.match(r"((?:\|.*\n)*)(.*)", rest, re.S).groups()
        if WRITES and is_whole:
            DOCUMENT.write_text(head + RULE + "\n".join([*rows, ""]) + tail)
        else:  # what cannot be provoked on this machine is not held against it
            self.assertEqual([row for row in table.splitlines() if is_whole or row in rows], rows)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as directory:
        CERTIFICATE_DIRECTORY = pathlib.Path(directory)
        subprocess.run(["sh", "-ec", CERTIFICATES], cwd=directory, check=True, capture_output=True)
        unittest.main(verbosity=2)
