"""Checks that a till writes every metric that the dashboard queries.
usage: dashboard_test.py TILL DASHBOARD [PROMTOOL]   PROMTOOL: reads the queries as Prometheus does"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

TILL, DASHBOARD, *PROMTOOL = sys.argv[1:]
del sys.argv[1:]


def queries(dashboard):
    for variable in dashboard["templating"]["list"]:
        if variable["type"] == "query":
            yield variable["query"]["query"]
    for panel in dashboard["panels"]:
        for target in panel.get("targets", []):
            yield target["expr"]


class Dashboard(unittest.TestCase):
    def setUp(self):
        self.place = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        dashboard = json.loads(pathlib.Path(DASHBOARD).read_text(encoding="utf-8"))
        self.queries = list(queries(dashboard))
        self.assertEqual([panel["repeat"] for panel in dashboard["panels"]
                          if panel["type"] == "row"], ["shop"])

    def test_each_query_names_a_metric_that_a_till_writes(self):
        settings = self.place / "till.conf"
        settings.touch(0o600)
        settings.write_text("LmMindbox:endpoint=e\nLmMindbox:secretKey=k\n"
                            "LmMindbox:url=http://127.0.0.1:1/v3/operations/sync\n"
                            f"Till:dataDir={self.place / 'data'}\n", encoding="utf-8")
        text = subprocess.run([TILL, "metrics", "--config", settings], check=True, text=True,
                              capture_output=True).stdout
        written = set(re.findall(r"^# TYPE (\w+) ", text, re.MULTILINE))
        for query in self.queries:
            with self.subTest(query):
                names = re.findall(r"\bloyalty_till_\w+", query)
                self.assertTrue(names and set(names) <= written, set(names) - written)

    @unittest.skipUnless(PROMTOOL, "no promtool named")
    def test_each_query_can_be_read_by_prometheus(self):
        expressions = [query.replace("$shop", ".*").replace("$__rate_interval", "5m")
                       for query in self.queries if not query.startswith("label_values(")]
        rules = [{"record": f"query:{i}", "expr": text} for i, text in enumerate(expressions)]
        file = self.place / "rules.yml"  # JSON is YAML
        file.write_text(json.dumps({"groups": [{"name": "dashboard", "rules": rules}]}),
                        encoding="utf-8")
        checked = subprocess.run([*PROMTOOL, "check", "rules", file], check=False, text=True,
                                 capture_output=True)
        self.assertEqual(checked.returncode, 0, checked.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
