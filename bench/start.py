#!/usr/bin/env python3
"""Starts the program on the large project several times and measures the time until its window is
on the screen and the peak memory by then. Then clicks on everything in one window and measures the
peak memory of that. Needs a display (scripts/with-screen).

Usage: bench/start.py BUILD-FOLDER
Exit status 1 above one of the limits below.
"""
import os
import pathlib
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time

STARTS = 5
MOST_SECONDS = 0.15
MOST_MEBIBYTES = 170  # of the window with all records in memory


def has_window(process):
    found = subprocess.run(
        ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name",
         "^Veltrona$"], capture_output=True, check=False)
    return bool(found.stdout.strip())


def peak_mebibytes(process):
    status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(r"VmHWM:\s+(\d+) kB", status)[1]) / 1024


def start(program, environment):
    """Seconds to the window, and the peak of memory a second later."""
    begin = time.monotonic()
    process = subprocess.Popen([program], env=environment)
    try:
        while not has_window(process):
            if process.poll() is not None or time.monotonic() - begin > 30:
                sys.exit("The program showed no window.")
            time.sleep(0.005)
        seconds = time.monotonic() - begin
        time.sleep(1)
        return seconds, peak_mebibytes(process)
    finally:
        process.kill()
        process.wait()


def clicked_mebibytes(build):
    """The peak of a window whose records are read, root, campaign and metrics clicked in turn."""
    subprocess.run([build / "bin/veltrona_bench", "--benchmark_min_time=0.1",
                    "--benchmark_filter=^(clickRoot|clickCampaign|metric)/large"],
                   stdout=subprocess.DEVNULL, check=True)
    return resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    project = max((build / "bench").glob("mixed-1022000-*.vlt"))
    with tempfile.TemporaryDirectory(dir=build) as home:
        folder = pathlib.Path(home) / "data/Veltrona"
        folder.mkdir(parents=True)
        os.link(project, folder / "Veltrona.vlt")
        environment = {**os.environ, "HOME": home, "XDG_DATA_HOME": f"{home}/data",
                       "XDG_CONFIG_HOME": f"{home}/config", "QT_QPA_PLATFORM": "xcb"}
        runs = [start(build / "bin/veltrona", environment) for _ in range(STARTS)]
    seconds = statistics.median(run[0] for run in runs)
    mebibytes = max(run[1] for run in runs)
    clicked = clicked_mebibytes(build)
    print(f"Start to window with 1,022,000 records: {seconds:.2f} s, at most {MOST_SECONDS:g}; "
          f"peak memory {mebibytes:.0f} MiB, after clicks on everything {clicked:.0f} MiB, "
          f"at most {MOST_MEBIBYTES}.")
    return 1 if seconds > MOST_SECONDS or max(mebibytes, clicked) > MOST_MEBIBYTES else 0


if __name__ == "__main__":
    sys.exit(main())
