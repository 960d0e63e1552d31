"""The guided tour on a screen of its own: what it leaves, at both scales, and that it can fail.
Usage: testTour.py PROGRAM"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(sys.argv.pop()).resolve()


def tour(report, folder, scale=1):
    environment = dict(os.environ, QT_SCALE_FACTOR=str(scale),
                       SCREEN=f"{1600 * scale}x{1000 * scale}")
    return subprocess.run([ROOT / "scripts/with-screen", PROGRAM, report, folder], check=False,
                          env=environment, capture_output=True, text=True, timeout=200)


def size_of_png(path):
    data = path.read_bytes()
    return int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")


class Tour(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def testBothScales(self):
        graphs = []
        for scale in (1, 2):
            folder = self.folder / str(scale)
            done = tour(ROOT / "samples/report.xml", folder, scale)
            self.assertEqual(done.returncode, 0, done.stderr)
            for file in folder.iterdir():
                self.assertIn(str(file), done.stdout)
            grid = (folder / "grid.txt").read_text()
            self.assertIn(grid, done.stdout)
            self.assertRegex(grid, r"(?m)^Café Corner +\d+ ")
            self.assertGreater(len(list(folder.glob("*.png"))), 10)
            # The pictures of the screen are as fine as the screen.
            self.assertGreater(size_of_png(folder / "04-all.png")[0], 1500 * scale)
            graphs.append((folder / "graph.jpg").read_bytes())
        self.assertTrue(graphs[0] == graphs[1], "the graph hangs on the scale")

    def testMessageThatNobodyExpectedFails(self):
        done = tour(self.folder / "missing.xml", self.folder)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("Your XML Document failed to load", done.stderr)


if __name__ == "__main__":
    unittest.main()
