"""Tests of the project's own tools: layer check, page check and report generator."""
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def run(*command):
    return subprocess.run(command, capture_output=True, check=False)


def report_of(*options):
    made = run(ROOT / "samples/make-report", *options)
    assert made.returncode == 0, made.stderr
    return made.stdout


class LayerCheck(unittest.TestCase):
    """Each breach in a small tree of its own."""

    def check(self, path, text):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / path
            file.parent.mkdir(parents=True)
            file.write_text(text)
            done = run(ROOT / "scripts/check-layers", folder)
            return done.returncode, done.stdout.decode()

    def testBreaches(self):
        for path, include in (
            ("src/core/platform/xml/reader.h", '"core/database/projectFile.h"'),
            ("src/core/analysis/grid/summary.cpp", '"core/import/reportColumns.h"'),
            ("src/core/analysis/records/cellText.h", '"core/analysis/grid/summary.h"'),
            ("src/ui/views/controls/gridView.h", '"ui/views/dialogs/forms.h"'),
            ("src/core/picture/cJPEG.h", '"core/analysis/grid/summary.h"'),
            ("src/core/import/loader.cpp", "<libxml/xmlreader.h>"),
            ("src/core/platform/sqlite/access.cpp", "<fcntl.h>"),
            ("src/core/analysis/grid/summary.h", "<QtWidgets/QWidget>"),
            ("src/core/analysis/grid/summary.h", '"ui/views/controls/gridView.h"'),
            ("src/core/analysis/grid/summary.cpp", '"summary.h"'),
            ("src/ui/report/frmOutput.cpp", '"core/shell/modMain.h"'),
            ("src/ui/lost/window.h", "<memory>"),
            ("tests/roads/roadTest.cpp", "<sqlite3.h>"),
        ):
            with self.subTest(path=path, include=include):
                code, told = self.check(path, f"#include {include}\n")
                self.assertEqual(code, 1, told)
                self.assertIn(path, told)

    def testWhatIsAllowed(self):
        code, told = self.check("src/ui/shell/frmMain.cpp",
                                '#include "core/shell/modMain.h"\n#include <QtWidgets/QWidget>\n')
        self.assertEqual(code, 0, told)


class PageCheck(unittest.TestCase):
    def testThePagesAreTrue(self):
        done = run(ROOT / "scripts/check-pages")
        self.assertEqual(done.returncode, 0, done.stdout.decode())

    def testFindsEachFault(self):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            run("git", "init", "-q", folder)
            for said in ("[a page](none.md)", "`src/none.h`", "`noneTest`", "`none.py`"):
                with self.subTest(said=said):
                    (root / "README.md").write_text(said)
                    done = run(ROOT / "scripts/check-pages", folder)
                    self.assertEqual(done.returncode, 1, done.stderr)
                    self.assertIn("README.md: ", done.stdout.decode())
            (root / "README.md").write_text("[this page](README.md)")
            (root / "docs").mkdir()
            (root / "docs/manual.md").write_text("at most 32,768 rows; at most 90 bars")
            for path, text in (("src/core/import/columnCheck.h", "mostReportRows = 32767;"),
                               ("src/core/analysis/chart/chartPeriods.cpp", "mostBars = 90;")):
                (root / path).parent.mkdir(parents=True)
                (root / path).write_text(text)
            told = run(ROOT / "scripts/check-pages", folder).stdout.decode()
            self.assertIn("is ['32768'], in", told)
            self.assertEqual(told.count("\n"), 1)


class MakeReport(unittest.TestCase):
    def testSampleIsWhatTheToolMakes(self):
        self.assertEqual(report_of(), (ROOT / "samples/report.xml").read_bytes())


if __name__ == "__main__":
    unittest.main()
