#!/usr/bin/env python3
"""Kills the program at random moments of an import, a clean, a new project in an older one's place
and an export, and looks at what is left: all records of committed batches and none twice, the older
file or the new one but no piece, and no left-over that the next run of the same command keeps.

Usage: kills.py PROGRAM [KILLS [SEED]]    PROGRAM is killedProgram; 200 kills if no number is given
"""
import datetime
import os
import pathlib
import random
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

BASE, MORE = 500, 3000  # records of the project and of the report that is imported


def write_report(path, numbers):
    """In last week, which a new project and an export show."""
    today = datetime.date.today()
    sunday = today - datetime.timedelta(days=(today.weekday() + 1) % 7 + 7)
    days = [sunday + datetime.timedelta(days=day) for day in range(7)]
    rows = "".join(f'<row campaign="c{n % 9}" adgroup="g" keyword="k&amp;{n}" date="{days[n % 7]}" '
                   f'imps="{n}" clicks="1" cost="{n}"/>\n' for n in numbers)
    columns = "".join(f'<column name="{name}"/>'
                      for name in "campaign adgroup keyword date imps clicks cost".split())
    path.write_text(f"<report><table><columns>{columns}</columns><rows>\n{rows}</rows></table>"
                    "</report>\n")


def keywords(project):
    """The keywords of all records, read from a copy as another program would after the kill."""
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / "copy.vlt"
        for suffix in ("", "-journal"):
            if pathlib.Path(f"{project}{suffix}").exists():
                shutil.copy(f"{project}{suffix}", f"{copy}{suffix}")
        connection = sqlite3.connect(copy)
        found = [name for name, in connection.execute("SELECT KeyWord FROM tblGoogleDays")]
        check = connection.execute("PRAGMA integrity_check").fetchone()[0]
        connection.close()
    require(check == "ok", f"integrity: {check}")
    require(len(found) == len(set(found)), "a record is there twice")
    return set(found)


def require(condition, what):
    if not condition:
        raise AssertionError(what)


class Attack:
    def __init__(self, program, home):
        self.program, self.home = program, home
        self.work = home / "work"
        self.base, self.more = home / "base.xml", home / "more.xml"
        write_report(self.base, range(BASE))
        write_report(self.more, range(BASE, BASE + MORE))
        self.first = {f"k&{n}" for n in range(BASE)}
        self.all = {f"k&{n}" for n in range(BASE + MORE)}
        self.project = home / "data/Veltrona/Veltrona.vlt"
        self.environment = dict(os.environ, HOME=str(home), XDG_DATA_HOME=str(home / "data"),
                                XDG_CONFIG_HOME=str(home / "config"), QT_QPA_PLATFORM="offscreen")
        self.filled = {}
        for name, reports in (("first", [self.base]), ("all", [self.base, self.more])):
            for report in reports:
                self.run("import", report)
            self.filled[name] = self.project.read_bytes()
        self.prepare("export")
        self.run("export", self.work / "page.html")
        self.older = self.pages()
        self.prepare("export", "all")
        self.run("export", self.work / "page.html")
        self.newer = self.pages()
        self.lasts = {}

    def pages(self):
        """The page and its picture, but for the second in which they were made."""
        page = (self.work / "page.html").read_bytes()
        return {"page.html": re.sub(rb"Created on: [^<]*", b"", page),
                "graph.jpg": (self.work / "graph.jpg").read_bytes()}

    def prepare(self, command, filled="first"):
        """The same state before each kill: the folders hold what belongs there and nothing else."""
        for folder in (self.work, self.home / "config", self.project.parent):
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir(parents=True)
        self.project.write_bytes(self.filled["all" if command == "clean" else filled])
        (self.work / "p.vlt").write_bytes(self.filled["first"])

    def start(self, command, target, **environment):
        process = subprocess.Popen(["prlimit", "--cpu=30", self.program, command, str(target)],
                                   text=True, env=self.environment | environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        if process.stdout.readline() != "ready\n":
            raise AssertionError(f"no start: {process.communicate()[1]}")
        return process

    def run(self, command, target):
        """To its end; gives the seconds that the command took and its steps in the file system."""
        process = self.start(command, target)
        began = time.monotonic()
        steps = process.stdout.readline()
        seconds = time.monotonic() - began
        _, errors = process.communicate(timeout=60)
        require(process.returncode == 0, f"{command} ends with {process.returncode}: {errors}")
        return seconds, int(steps)

    def kill(self, command, target, share):
        """After a share of the time that it takes, or before one of its steps in the file system."""
        seconds, steps = self.lasts[command]
        if share < 0:
            step = 1 + int(-share * steps)
            process = self.start(command, target, KILL_BEFORE=str(step))
        else:
            process = self.start(command, target)
            time.sleep(share * seconds)
            process.send_signal(signal.SIGKILL)
        process.communicate(timeout=60)

    def attack(self, command, share):
        target = {"import": self.more, "clean": "", "new": self.work / "p.vlt",
                  "export": self.work / "page.html"}[command]
        self.prepare(command, "all" if command == "export" else "first")
        if command == "export":
            for name, content in self.older.items():
                (self.work / name).write_bytes(content)
        if command not in self.lasts:
            self.lasts[command] = self.run(command, target)
            return
        self.kill(command, target, share)
        getattr(self, "check_" + command)()
        # The setting may name the new project by now, which the kill left as the older one.
        shutil.rmtree(self.home / "config")
        self.run(command, target)
        self.check_end(command)
        require(not self.others(), f"left over: {self.others()}")

    def others(self):
        """What stands in the folders and is no file of the user's: drafts and journals."""
        return [name for folder in (self.work, self.project.parent) for name in os.listdir(folder)
                if name not in ("p.vlt", "page.html", "graph.jpg", "Veltrona.vlt")]

    def check_import(self):
        now = keywords(self.project)
        require(self.first <= now <= self.all, f"{len(now)} records after a kill in an import")

    def check_clean(self):
        require(keywords(self.project) in (set(), self.all), "a piece is left of a clean")

    def check_new(self):
        require(keywords(self.work / "p.vlt") in (set(), self.first), "a piece of a project")

    def check_export(self):
        for name, content in self.pages().items():
            require(content in (self.older[name], self.newer[name]), f"a piece of {name}")

    def check_end(self, command):
        wanted = {"import": self.all, "clean": set()}
        if command in wanted:
            require(keywords(self.project) == wanted[command], f"after a whole {command}")
        elif command == "new":
            require(keywords(self.work / "p.vlt") == set(), "after a whole new project")
        else:
            require(self.pages() == self.newer, "after a whole export")


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    kills = int(sys.argv[2]) if len(sys.argv) > 2 else 200
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 30)
    chance = random.Random(seed)
    commands = ("import", "clean", "new", "export")
    with tempfile.TemporaryDirectory() as home:
        attack = Attack(program, pathlib.Path(home))
        for number in range(kills + len(commands)):
            command, share = commands[number % len(commands)], chance.uniform(-1, 1)
            try:
                attack.attack(command, share)
            except AssertionError as finding:
                print(f"kill {number}, {command} at {share:.3f}, seed {seed}: {finding}")
                return 1
    print(f"{kills} kills, seed {seed}: no finding")
    return 0


if __name__ == "__main__":
    sys.exit(main())
