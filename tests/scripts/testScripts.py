"""Tests of the project's own tools: layer check and report generator."""
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


if __name__ == "__main__":
    unittest.main()
