"""Tests of the project's own tools: layer check, report generator, the benchmarks' ratios."""
import json
import pathlib
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
KEYS = ("adgroup", "campaign", "creativeid", "date", "keyword", "kwtype")


def run(*command):
    return subprocess.run(command, capture_output=True, check=False)


def report_of(*options):
    made = run(ROOT / "samples/make-report", *options)
    assert made.returncode == 0, made.stderr
    return made.stdout


class LayerCheck(unittest.TestCase):
    """Each breach in a small tree of its own."""

    def check(self, path, text, library="veltrona_core"):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / "src"
            files = {path: text, "shell/modMain.h": "", "platform/controls/gridView.h": ""}
            for name, content in files.items():
                file = source / name
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(content)
                owner = "veltrona_ui" if "View" in name else library
                lists = file.parent / "CMakeLists.txt"
                with lists.open("a") as out:
                    out.write(f"target_sources({owner} PRIVATE {file.name})\n")
            done = run(ROOT / "scripts/check-layers", folder)
            return done.returncode, done.stdout.decode()

    def testBreaches(self):
        for path, include in (
            ("platform/xml/reader.h", '"database/projectFile.h"'),
            ("analysis/summary.cpp", '"import/reportColumns.h"'),
            ("picture/cJPEG.h", '"analysis/summary.h"'),
            ("import/loader.cpp", "<libxml/xmlreader.h>"),
            ("report/doExport.cpp", '"shell/modMain.h"'),
            ("analysis/summary.h", "<QtWidgets/QWidget>"),
            ("analysis/summary.h", '"platform/controls/gridView.h"'),
            ("analysis/summary.cpp", '"summary.h"'),
        ):
            with self.subTest(path=path, include=include):
                code, told = self.check(path, f"#include {include}\n")
                self.assertEqual(code, 1, told)
                self.assertIn(path, told)

    def testFileThatNoFolderNames(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "src/analysis/lost.cpp"
            file.parent.mkdir(parents=True)
            file.write_text("")
            self.assertEqual(run(ROOT / "scripts/check-layers", folder).returncode, 1)


class MakeReport(unittest.TestCase):
    def testSampleIsWhatTheToolMakes(self):
        self.assertEqual(report_of(), (ROOT / "samples/report.xml").read_bytes())

    def testEveryRowIsARecordOfItsOwn(self):
        root = ElementTree.fromstring(report_of(
            "--days", "3", "--campaigns", "6", "--ad-groups", "3", "--keywords", "14",
            "--density", "1"))
        rows = [row.attrib for row in root.iter("row")]
        self.assertEqual(len(rows), 3 * 6 * 3 * 14)
        self.assertEqual(len({tuple(row[key] for key in KEYS) for row in rows}), len(rows))
        self.assertEqual(len(root.findall(".//column")), 34)
        for row in rows:
            self.assertEqual(len(row), 34)
            self.assertEqual(int(row["cost"]), int(row["cpc"]) * int(row["clicks"]))


class Ratios(unittest.TestCase):
    """The tree may take twice as long as its baseline."""

    def ratio(self, ours, baseline):
        runs = [
            {"name": f"{name}_{kind}", "run_name": name, "aggregate_name": kind,
             "cpu_time": time, "real_time": 1, "time_unit": unit}
            for name, time, unit in (("tree/ours", ours, "us"), ("tree/baseline", baseline, "ms"))
            for kind, time in (("mean", 1), ("median", time))
        ]
        with tempfile.TemporaryDirectory() as folder:
            results = pathlib.Path(folder) / "results.json"
            results.write_text(json.dumps({"benchmarks": runs}))
            return run(ROOT / "bench/ratios.py", results)

    def testLimit(self):
        self.assertEqual(self.ratio(1990, 1).returncode, 0)
        above = self.ratio(2010, 1)
        self.assertEqual(above.returncode, 1)
        self.assertIn(b"2.01 **above** | 2 |", above.stdout)


if __name__ == "__main__":
    unittest.main()
