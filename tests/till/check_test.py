"""Provokes each fault that "till check" tells apart, and compares docs/check.md's table
with them.
usage: check_test.py TILL SIMULATOR DOCUMENT [--write]    --write: puts the cases into the table"""
import datetime
import email.utils
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
    body, at, code = b"<html>Log in</html>", None, 200

    def do_POST(self):
        self.send_response(self.code)
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
    """A till with a fault."""

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

    def hang(self, scheme="http"):
        listener = self.enter_context(socket.create_server(("127.0.0.1", 0)))
        self.talk_to(f"{scheme}://127.0.0.1:{listener.getsockname()[1]}")


def old_tls(place):
    server = subprocess.Popen(
        ["openssl", "s_server", "-accept", "127.0.0.1:0", "-tls1_1", "-cipher", "ALL:@SECLEVEL=0",
         "-cert", CERTIFICATE_DIRECTORY / "good.pem", "-key", CERTIFICATE_DIRECTORY / "good.key"],
        text=True, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    place.callback(server.communicate)
    place.callback(server.kill)
    port = next(re.search(r":(\d+)$", line)[1] for line in server.stdout if "ACCEPT" in line)
    place.trust()
    place.talk_to(f"https://127.0.0.1:{port}")


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
    """Changes settings; the first "_" of a key stands for ":"."""
    return lambda place: place.settings.update(
        {key.replace("_", ":", 1): value for key, value in settings.items()})


def without(key):
    return lambda place: place.settings.pop(key)


def goods(content):
    return lambda place: ((place.root / "goods").write_bytes(content),
                          put(Till_goodsFile=place.root / "goods")(place))


def chain(place):
    directory = place.root / "till.conf.d"
    directory.mkdir()
    (directory / "10-chain.conf").write_text("# of all tills\nLmMindbox:timeout=5 s\n")


def cut_off(place):
    module = next(pathlib.Path(TILL).parent.parent.rglob("lmmindbox.so")).read_bytes()
    (place.root / "lmmindbox.so").write_bytes(module[:-5000])
    put(Till_plugin=place.root / "lmmindbox.so")(place)


def turn_away(place):
    place.serve(body=b"", code=407)
    proxy = place.settings["LmMindbox:url"].removesuffix("/v3/operations/sync")
    place.settings |= {"LmMindbox:url": "http://loyalty.example/v3/operations/sync",
                       "Http:proxy": proxy}


def in_store(statement):
    return lambda place: (place.sell(), place.query(statement))


F, W = "failed", "warning"
ID_MASK = "%(document.shopCode[04d])%(document.cashCode[02d])"
# Each fault, how it is provoked, and its finding, in order.
CASES = [
    ("a line without \"=\"", lambda place: setattr(place, "more", "LmMindbox:timeout\n"),
     [(F, "settings.file")]),
    ("settings readable by others", lambda place: setattr(place, "mode", 0o644),
     [(W, "settings.file")]),
    ("a misspelt key", put(LmMindbox_secretkey="x"), [(W, "settings.values")]),
    ("time-out 0", lambda place: (put(LmMindbox_timeout="0")(place),
                                  place.order_fault(kind="delay", milliseconds=200, count=1)),
     [(F, "settings.values")]),
    ("empty settings", put(LmMindbox_pointOfContact="", LmMindbox_requestTransactionIdMask="",
                           Till_dataDir="", Till_log=""), [(W, "settings.values")] * 2),
    ("a key without its prefix", lambda place: setattr(place, "more", "secretKey=x\n"),
     [(W, "settings.values")]),
    ("a redirect of an unknown operation",
     lambda place: setattr(place, "more", "LmMindbox.Redirect:Offline.GetCustomr=x\n"),
     [(W, "settings.values")]),
    ("a shop's number of five digits", put(Till_shopCode="12345"), [(W, "masks.order")]),
    ("a longest rest below the first", put(Http_retryMax="500"), [(F, "settings.values")]),
    ("a phone mask of letters", put(Till_phoneMask="xyz"), [(F, "settings.values")]),
    ("a phone mask too short", put(Till_phoneMask="+7(999"), [(F, "settings.values")]),
    ("a goods file in another encoding", goods("code;name;price\n1;Сыр;2\n".encode("cp1251")),
     [(F, "settings.values")]),
    ("a goods file without a head line", goods(b"1;Cheese;2\n"), [(F, "settings.values")]),
    ("an empty goods file", goods(b""), [(F, "settings.values")]),
    ("a goods file that is a pipe", lambda place: (os.mkfifo(place.root / "goods"),
                                                   put(Till_goodsFile=place.root / "goods")(place)),
     [(F, "settings.values")]),
    ("a setting of the chain", chain, [(F, "settings.values")]),
    ("no register number", without("Till:cashCode"), [(W, "settings.values")]),
    ("no key", without("LmMindbox:secretKey"), [(F, "settings.values")]),
    ("a key in quotation marks", put(LmMindbox_secretKey='"demo-secret"'),
     [(F, "settings.values")]),
    ("a wrong key", put(LmMindbox_secretKey="other"), [(F, "service.lookup")]),
    ("a wrong endpoint", put(LmMindbox_endpoint="other"), [(F, "service.lookup")]),
    ("a wrong path", lambda place: place.talk_to(place.address, "/v3/operation/sync"),
     [(F, "settings.values")]),
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
    ("no plugin", put(Till_plugin="/nowhere/lmmindbox.so"), [(F, "settings.values")]),
    ("another plugin", put(Till_plugin=TILL), [(F, "plugin")]),
    ("a plugin of something else", put(Till_plugin=next(
        pathlib.Path("/usr/lib").glob("*/qt6/plugins/platforms/libqminimal.so"))), [(F, "plugin")]),
    ("a truncated plugin", cut_off, [(F, "plugin")]),
    ("a data directory in \"~\"", put(Till_dataDir="~/till"), [(F, "settings.values")]),
    ("an unwritable data directory", put(Till_dataDir="/dev/null/till"),
     [(F, "place.directory")]),
    ("an open data directory", lambda place: place.data.mkdir(0o755),
     [(W, "place.directory")]),
    ("another user's data directory",
     lambda place: (place.data.mkdir(0o700), os.chown(place.data, 65534, -1)),
     [(W, "place.directory")]),
    ("a log that is a directory", lambda place: put(Till_log=place.root)(place), [(W, "place.log")]),
    ("a full disk", fill, [(F, "place.space")]),
    ("a damaged store", lambda place: (place.data.mkdir(0o700), (place.data / "till.db")
                                       .write_bytes(b"no database" * 99)), [(F, "store")]),
    ("a store of a newer version", in_store("PRAGMA user_version = 99"), [(F, "store")]),
    ("a store of another program", in_store("PRAGMA application_id = 7"), [(F, "store")]),
    ("a store without a table", in_store("DROP TABLE history"), [(F, "store")]),
    ("orders that wait too long", in_store("UPDATE messages SET queuedAt = 1"),
     [(W, "queue.waiting")]),
    ("parked messages", in_store("UPDATE messages SET parked = 1, receipt = NULL"),
     [(W, "queue.parked")]),
    ("a refused receipt", refuse, [(W, "receipts.refused")]),
    ("a proxy of the environment", lambda place: through(place, True),
     [(W, "proxy"), (F, "service.connection")]),
    ("a missing proxy", lambda place: through(place, False),
     [(F, "service.connection")]),
    ("a proxy without its password", turn_away,
     [(W, "settings.values"), (F, "service.connection")]),
    ("an unknown host", no_way, [(F, "service.name")]),
    ("a closed port", lambda place: place.talk_to("http://127.0.0.1:1"),
     [(F, "service.connection")]),
    ("http to another machine", put(LmMindbox_url="http://loyalty.invalid/v3/operations/sync"),
     [(W, "settings.values"), (F, "service.name")]),
    ("https where the service speaks http",
     lambda place: (place.trust(), place.talk_to(place.address.replace("http:", "https:"))),
     [(F, "service.certificate")]),
    ("http where the service speaks https",
     lambda place: (place.secure("good"), place.talk_to(place.address.replace("https:", "http:"))),
     [(F, "service.answer")]),
    ("an expired certificate", lambda place: place.secure("expired"),
     [(F, "service.certificate")]),
    ("a certificate that ends soon", lambda place: place.secure("short"),
     [(W, "service.certificate")]),
    ("a certificate for another host", lambda place: place.secure("strange"),
     [(F, "service.certificate")]),
    ("a certificate of another authority", lambda place: place.secure("good", "other"),
     [(F, "service.certificate")]),
    ("an authority file without certificates", lambda place: place.secure("good", "none"),
     [(F, "service.certificate")]),
    ("a service with old TLS only", old_tls, [(F, "service.certificate")]),
    ("a hung TLS handshake", lambda place: place.hang("https"),
     [(F, "service.certificate")]),
    ("a hung service", lambda place: place.hang(), [(F, "service.answer")]),
    ("a hung look-up",
     lambda place: place.order_fault(kind="delay", milliseconds=3000, count=1),
     [(F, "service.lookup")]),
    ("a login page of the network", lambda place: place.serve(), [(F, "service.lookup")]),
    ("an overloaded service",
     lambda place: place.order_fault(kind="busy", httpCode=503, retryAfter=1, count=1),
     [(F, "service.lookup")]),
    ("a clock a day late",
     lambda place: place.serve(body=b'{"status":"Success","customer":{"processingStatus":'
                               b'"NotFound"}}', at=datetime.timedelta(days=1)), [(F, "clock")]),
]


def provoke(wrong):
    with Wrong() as place:
        try:
            wrong(place)
        except PermissionError:  # only root can do it
            return None
        if place.around and place.around[0] == "unshare" and \
                subprocess.run([*place.around, "true"], check=False, capture_output=True).returncode:
            return None
        done = place.run("check", "--json")
        text = done.stdout.replace(str(place.root), "/PLACE")
        return done.returncode, json.loads(text)


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
                host = socket.gethostname()
                for name, program in (("till.lock", "till"), ("deliver.lock", "till")):
                    (place.data / name).write_text(f"{os.getpid()}\n{program}\n{host}\n")
                self.assertRegex(place.run("check").stdout,
                                 r" one is selling here[^!]* one is at work")

    def test_tells_each_wrong_setting_apart(self):
        told = {}
        for wrong, provocation, expected in CASES:
            with self.subTest(wrong):
                outcome = provoke(provocation)
                if outcome is None:
                    print(f"not provoked here: {wrong}")
                    continue
                code, answer = outcome
                found = [finding for finding in answer["findings"] if finding["level"] != "ok"]
                self.assertEqual([(finding["level"], finding["check"]) for finding in found],
                                 expected, found)
                self.assertEqual(code, 2 if answer["level"] == "failed" else 1)
                self.assertTrue(all(finding["mend"] for finding in found), found)
                self.assertNotIn("demo-secret", json.dumps(answer))
                # The transport's words about the service differ in each run.
                lines = tuple((f["check"], f["mend"],
                               "" if f["check"].startswith("service") else f["found"])
                              for f in found)
                self.assertEqual(told.setdefault(lines, wrong), wrong)

    def test_the_page_names_each_case_at_its_check(self):
        page = DOCUMENT.read_text()

        def cases(check, level):
            return "; ".join(re.sub("^an? ", "", wrong) for wrong, _, found in CASES
                             if (level, check) in found)

        expected = re.sub(r"^\| `([\w.]+)` \|.*", lambda row: (
            f"| `{row[1]}` | {cases(row[1], F)} | {cases(row[1], W)} |"), page, flags=re.M)
        if WRITES:
            DOCUMENT.write_text(expected)
        else:
            self.assertEqual(page.splitlines(), expected.splitlines())
        checks = set(re.findall(r"^\| `([\w.]+)` \|", page, re.M))
        self.assertLessEqual({check for *_, found in CASES for _, check in found}, checks)


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as directory:
        CERTIFICATE_DIRECTORY = pathlib.Path(directory)
        subprocess.run(["sh", "-ec", CERTIFICATES], cwd=directory, check=True, capture_output=True)
        unittest.main(verbosity=2)
