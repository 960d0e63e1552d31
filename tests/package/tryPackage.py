"""Tries the Debian package in a root that holds nothing of the program: installs it, follows the
links of its pages, imports the sample through the window, and purges it. That spoils the root: see
scripts/test-package.
Usage: tryPackage.py PACKAGE, or tryPackage.py --installed where it is installed already"""
import array
import collections
import gzip
import html.parser
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


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(path.read_text())

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == "id":
                self.anchors.add(value)
            elif name in ("href", "src"):
                self.links.append(value.partition("#"))


def try_pages():
    pages = {path.name: Page(path) for path in DOCUMENTS.glob("*.html")}
    links = [(name, *link) for name, page in pages.items() for link in page.links]
    lost = [link for link in links if "://" not in link[1] and (
        not (DOCUMENTS / link[1]).exists()
        or link[3] and link[3] not in pages[link[1] or link[0]].anchors)]
    assert len(links) > 20 and not lost, lost
    with gzip.open("/usr/share/man/man1/veltrona.1.gz", "rt") as manual:
        named = re.findall(r"/usr/share/\S+", manual.read())
    assert str(DOCUMENTS / "manual.html") in named and all(map(os.path.exists, named)), named


def try_installed():
    try_pages()
    print(run(ROOT / "scripts/with-screen", sys.executable, __file__, "--window"))


def try_package(package):
    apt = ("apt-get", "-qq", "--yes", "--no-install-recommends")
    run(*apt, "satisfy", run("dpkg-deb", "--field", package, "Depends"))
    before = files()
    run(*apt, "install", os.path.abspath(package))
    for document in ("copyright", "changelog.gz"):
        assert (DOCUMENTS / document).stat().st_size, document
    try_installed()
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
elif sys.argv[1] == "--installed":
    try_installed()
else:
    try_package(sys.argv[1])
    print("The package installs, runs and goes without a rest.")
