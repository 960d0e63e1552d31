"""Presses keys in the program and reads in Orca's own log what Orca would say.
Usage: listen.py FOLDER, the folder of the program; needs a display and a session bus of its own."""
import os
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import time

LONGEST_WAIT = 20  # seconds for what is to be heard
SILENCE = 0.5      # seconds without a line in the log: Orca has said all

DATE = r"\d+ \w+ \d{4}"
LOSS = r"<b>Sale</b> O'Neil, loss: did not earn back its cost\."

# The keys of a step and all that is to be heard then, each a pattern of a whole utterance; in a
# step whose first pattern is "...", other things may be heard in between.
STEPS = [
    ("", ["...", r"Veltrona frame\.", "Account tree", r"project expanded\."]),
    ("Tab", ["...", rf"Start Date: {DATE} spin button\."]),
    ("Up", ["...", rf"notification There are no records from {DATE}.*", DATE]),
    ("alt+Down", ["...", rf"notification {DATE}\.", "table with 7 rows 7 columns"]),
    ("Right", [r"\d column header \d+\."]),
    ("Next", ["...", rf"notification {DATE}\."]),  # another month
    ("Prior", ["...", rf"notification {DATE}\."]),
    ("Escape", ["...", rf"Start Date: {DATE} spin button\."]),
    ("Up", ["...", rf"notification There are no records from {DATE}.*", DATE]),
    ("F4", ["...", "table with 7 rows 7 columns"]),
    ("Escape", ["...", rf"Start Date: {DATE} spin button\."]),
    ("Tab", ["...", rf"End Date: {DATE} spin button\."]),
    ("Right", ["...", r"\w+", "selected"]),  # the next part of the date
    ("Tab", ["...", r"Date Range: combo box\.", r"Custom\."]),
    ("Up", [r"List with 6 items\.", r"All\."]),
    ("Tab", [r"Statistics\.", r"table with 4 rows 13 columns\.?", LOSS,
             rf"Loss: cost 54\.00, brought 6\.00\. 54\.00 of it \(100%\) went to 1 keyword without a "
             r"conversion\. The parts of .*"]),
    ("Right", [r"Clicks column header 36\.", r"32% of the clicks of this table\. Clicks of all .*"]),
    ("Down", [r"Brand\.", r"78\.", r"68% of the clicks of this table\."]),
    ("Right", [r"Impr\. column header 3900\.", r"68% of the impressions of this table\."]),
    ("Up", [LOSS, r"1800\.", r"32% of the impressions of this table\. Impressions of all .*"]),
    ("Tab", [r"Average Cost Per Click chart\.",
             r"7 bars, 18 Nov 2024 to 24 Nov 2024\. Highest: 1\.75, 18 Nov 2024\. "
             r"Each bar counts one day of 2024\."]),
    ("Right", [r"18 Nov 2024: 1\.75\."]),
    ("Right", [r"19 Nov 2024: 1\.35\."]),
    ("Right Right", ["...", r"21 Nov 2024: 0, no records\."]),
    ("Left Left Return", ["...", r"notification 1 bar, 19 Nov 2024\. Highest: 1\.35, .*"]),
    # Other days: the mark has left the cell.
    ("shift+Tab", ["...", LOSS, r"Loss: cost 9\.00, brought 1\.00\. .*"]),
    ("Right Right Right", ["...", r"CTR column header 0%",
               r"4 clicks of 200 impressions: 2%\. 18 Nov: 2%, no change\. Click-through .*"]),
    ("Right", [r"Avg\.CPC column header 2\.25\.",
               r"9\.00 for 4 clicks: 2\.25\. 18 Nov: 3\.00, down 25%\. Mean of .*"]),
    ("shift+F1", ["...", r"notification <b>Sale</b> O'Neil\. Avg\.CPC: 2\.25\. 9\.00 for 4 clicks: .*"]),
    ("ctrl+c", ["...", r"notification Copied\."]),
    ("Tab alt+Left", ["...", r"notification 7 bars, 18 Nov 2024 to 24 Nov 2024\. .*"]),
    ("Tab", [r"Shown Values \(bar\): combo box\.", r"Average Cost Per Click\."]),
    ("Down", ["List with 12 items.", r"Budget\."]),
    ("Tab", ["Group by: combo box.", r"Days\."]),
    ("Down", ["List with 3 items.", r"Weeks\."]),
    ("Tab", ["...", "Account tree", "project expanded\\.", r".* 12 records, 18 to 24 Nov 2024; no records "
             r"on 21 Nov\."]),
    ("F8", [r"Broad\.", r"Loss: cost 54\.00, brought 6\.00\. .*"]),
    ("alt+f i", ["...", "File name: text\\."]),
    ("type report.xml", ["..."]),
    ("Return", ["...", r"notification Please wait while the XML file is importing\.\.\.",
                r"notification Campaign Summary\. 1 bar, .*", ".* 13 records, .*"]),
]

REPORT = """<report><table><columns><column name="campaign"/><column name="date"/></columns><rows>
<row campaign="New" date="2024-11-20"/></rows></table></report>"""


def make_project(template, path):
    """Seven days, the fourth without a record; one campaign earns its cost, one doesn't."""
    path.write_bytes(template.read_bytes())
    table = sqlite3.connect(path)
    for day in (0, 1, 2, 4, 5, 6):
        for name, clicks, cost, value in (("Brand", 10 + day, 5, 20),
                                          ("<b>Sale</b> O'Neil", 3 + day, 9, 1)):
            table.execute(
                "INSERT INTO tblGoogleDays (Campaign, Adgroup, KeyWord, kwType, AdwordsTyp, "
                "GoogleDate, Clicks, Impressions, cost, cpc, ConvValue) "
                "VALUES (?, 'Group', 'shoes', 'Broad', 'Search Only', ?, ?, ?, ?, ?, ?)",
                (name, f"2024-11-{18 + day}", clicks, clicks * 50, cost * 1e6,
                 cost * 1e6 / clicks, value))
    table.commit()
    table.close()


class Listener:
    """Orca, with a log that is read as it grows."""

    def __init__(self, home, environment):
        self.log = home / "orca.log"
        self.read = 0
        folder = home / "data/orca"
        folder.mkdir(parents=True)
        (folder / "orca-customizations.py").write_text(
            "import orca.debug\nimport orca.settings\n"
            "orca.debug.debugFile.reconfigure(line_buffering=True)\n"
            "orca.settings.enableKeyEcho = False\n")
        self.process = subprocess.Popen(["orca", "--replace", "--debug-file", self.log],
                                        env=environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)

    def spoken(self):
        text = self.log.read_bytes()[self.read:].decode(errors="replace") \
            if self.log.exists() else ""
        return re.findall(r"SPEECH OUTPUT: '(.*?)' *\{", text, re.DOTALL)

    def hear(self, is_enough):
        """All that is said from the last call on, once it is enough and Orca is silent."""
        start = last = time.monotonic()
        size = -1
        while time.monotonic() - start < LONGEST_WAIT:
            now = self.log.stat().st_size if self.log.exists() else 0
            if now != size:
                size, last = now, time.monotonic()
            elif time.monotonic() - last > SILENCE and is_enough(self.spoken()):
                break
            time.sleep(0.05)
        result = self.spoken()
        self.read = self.log.stat().st_size if self.log.exists() else 0
        return result


def matches(patterns, spoken):
    if patterns[0] != "...":
        return len(spoken) == len(patterns) and all(map(re.fullmatch, patterns, spoken))
    rest = iter(spoken)
    return all(any(re.fullmatch(pattern, each) for each in rest) for pattern in patterns[1:])


def main(folder):
    begin = time.monotonic()
    home = pathlib.Path(tempfile.mkdtemp(prefix="veltrona-orca-"))
    environment = dict(os.environ, HOME=str(home), LC_ALL="C.UTF-8", GSETTINGS_BACKEND="memory",
                       XDG_CONFIG_HOME=str(home / "config"), XDG_DATA_HOME=str(home / "data"),
                       XDG_RUNTIME_DIR=str(home), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    project = home / "project.vlt"
    make_project(folder / "data.dat", project)
    (home / "report.xml").write_text(REPORT)
    settings = home / "config/Veltrona/Veltrona.ini"
    settings.parent.mkdir(parents=True)
    settings.write_text(f"[Software]\nMorvane\\dbfname={project}\nMorvane\\grdcolor=1\n")

    orca = Listener(home, environment)
    program = None
    failed = 0
    try:
        orca.hear(lambda spoken: "Screen reader on." in spoken)
        program = subprocess.Popen([folder / "veltrona"], env=environment,
                                   stderr=subprocess.DEVNULL)
        for keys, patterns in STEPS:
            if keys.startswith("type "):
                subprocess.run(["xdotool", "type", str(home / keys[5:])], check=True)
            elif keys:
                subprocess.run(["xdotool", "key", "--delay", "150", *keys.split()], check=True)
            spoken = orca.hear(lambda heard, wanted=patterns: matches(wanted, heard))
            right = matches(patterns, spoken)
            failed += not right
            print(f"{'ok  ' if right else 'FAIL'} {keys or 'start'}: {' | '.join(spoken)}",
                  flush=True)
            if not right:
                print(f"     wanted: {' | '.join(patterns)}", flush=True)
    finally:
        for process in (program, orca.process):
            if process:
                process.terminate()
                process.wait(timeout=10)
    print(f"{len(STEPS)} steps, {failed} failed, {time.monotonic() - begin:.0f} s")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
