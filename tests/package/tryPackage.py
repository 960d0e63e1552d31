"""Tries the Debian package in a root that holds nothing of the program: installs it, imports the
sample through the window, and purges it. The root is spoilt by that: see scripts/test-package.
Usage: tryPackage.py PACKAGE"""
import array
import collections
import os
import pathlib
import re
import sqlite3
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DOCUMENTS = pathlib.Path("/usr/share/doc/veltrona")
PROJECT = pathlib.Path.home() / ".local/share/Veltrona/Veltrona.vlt"
# What the icons of Import, Export and Print have, and nothing else on the screen.
ICON_COLOURS = {0x3F9D5A, 0x4A83C4, 0x8DA2B8}
# Of nobody's package, or told by dpkg itself.
NOT_COMPARED = ("/proc", "/sys", "/dev", "/run", "/tmp", "/root", "/var/cache", "/var/log",
                "/var/lib/apt", "/var/lib/dpkg/status", "/var/lib/dpkg/status-old", str(ROOT))


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True,
                          timeout=600).stdout


def await_that(what, holds, seconds=60):
    deadline = time.monotonic() + seconds
    while not holds():
        assert time.monotonic() < deadline, f"waited in vain for {what}"
        time.sleep(0.1)


def files():
    """Every path with what shows a change."""
    found = {}
    for folder, folders, names in os.walk("/"):
        folders[:] = [f for f in folders if not os.path.join(folder, f).startswith(NOT_COMPARED)]
        for path in (os.path.join(folder, name) for name in names + folders):
            if not path.startswith(NOT_COMPARED):
                told = os.lstat(path)
                found[path] = (told.st_mode, told.st_uid,
                               0 if os.path.isdir(path) else told.st_size)
    return found


def window_with(what, value):
    return run("xdotool", "search", "--sync", "--onlyvisible", f"--{what}", f"^{value}$").split()[0]


def colours(window):
    picture = subprocess.run(["xwd", "-silent", "-id", window], check=True,
                             capture_output=True).stdout
    header = array.array("I", picture[:100])
    header.byteswap()
    pixels = array.array("I", picture[header[0] + 12 * header[19]:])
    return {colour for colour, often in collections.Counter(p & 0xFFFFFF for p in pixels).items()
            if often > 5}


def records():
    with sqlite3.connect(f"file:{PROJECT}?mode=ro", uri=True) as project:
        return project.execute("SELECT count(*) FROM tblGoogleDays").fetchone()[0]


def try_window(program):
    sample = DOCUMENTS / "samples/report.xml"
    entry = pathlib.Path("/usr/share/applications/org.veltrona.Veltrona.desktop").read_text()
    window = window_with("class", re.search("StartupWMClass=(.+)", entry)[1])
    await_that("coloured icons", lambda: ICON_COLOURS <= colours(window))
    run("xdotool", "key", "alt+f", "i")
    window_with("name", "Import a Google Report XML file")
    run("xdotool", "type", str(sample))
    run("xdotool", "key", "Return")
    rows = sample.read_text().count("<row ")
    await_that(f"{rows} records", lambda: rows and records() == rows)
    # The import window may still be up, and takes no keys.
    await_that("the end", lambda: run("xdotool", "key", "alt+f", "x") or program.poll() == 0)


def try_package(package):
    apt = ("apt-get", "-qq", "--yes", "--no-install-recommends")
    run(*apt, "satisfy", run("dpkg-deb", "--field", package, "Depends"))
    before = files()
    run(*apt, "install", os.path.abspath(package))
    for document in ("copyright", "changelog.gz", "manual.md"):
        assert (DOCUMENTS / document).stat().st_size, document
    print(run(ROOT / "scripts/with-screen", sys.executable, __file__, "--window"))
    run(*apt, "purge", "veltrona")
    assert PROJECT.exists(), "the user's records are gone"
    after = files()
    rest = sorted(p for p in before.keys() | after.keys() if before.get(p) != after.get(p))
    assert not rest, f"the purge leaves a rest: {rest}"


if sys.argv[1] == "--window":
    with subprocess.Popen(["veltrona"]) as installed:
        try:
            try_window(installed)
        finally:
            installed.kill()
else:
    try_package(sys.argv[1])
    print("The package installs, runs and goes without a rest.")
