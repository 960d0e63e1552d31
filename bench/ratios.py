#!/usr/bin/env python3
"""Turns the JSON of a benchmark run into the table of ratios and marks what breaks its limit.

Usage: bench/ratios.py RESULTS.json [docs/performance.md]    the table goes between the file's marks
Exit status 1 if a ratio is above its limit.
"""
import json
import pathlib
import sys

ONE_SCAN = "one plain scan by SQLite with the twelve sums"
WEEK = "SQLite's indexed query of that week"
GROUPED = "one `GROUP BY GoogleDate` of the root, sum and count"
FIFTH = "the same over 1,022,000 records"

# What, its baseline, the two benchmarks, the limit of their ratio.
ROWS = [
    ("import of 32,767 rows with 34 columns into an empty project, views rebuilt",
     "one prepared insert of the same rows in one transaction", "import/ours", "import/baseline",
     2.2),
    ("the same report again", "its first import", "import/again", "import/ours", 0.7),
    ("the thirtieth report of a year, into the others' 950,243 records, views rebuilt",
     "the first one, into none", "importOfYear/thirtieth", "importOfYear/first", 2),
    ("first wide click in the window, painted, two and a half plain scans after the start",
     ONE_SCAN, "firstWideClick/large", "plainScan/large", 0.15),
    ("the same at once after the start", ONE_SCAN, "wideClickAtOnce/large", "plainScan/large", 2),
    ("grid of the root over a year, after that", ONE_SCAN, "refreshRoot/large", "plainScan/large",
     0.1),
    ("grid of a campaign over a year", ONE_SCAN, "refreshCampaign/large", "plainScan/large", 0.03),
    ("grid of the root over a week, before the records are in memory", WEEK, "refreshWeek/index",
     "refreshWeek/baseline", 1.5),
    ("grid of the root over a week, after that", WEEK, "refreshWeek/memory",
     "refreshWeek/baseline", 0.5),
    ("90 bars, root, a sum", GROUPED, "chartRootSum/ours", "chart/baseline", 0.06),
    ("90 bars, root, a mean", GROUPED, "chartRootMean/ours", "chart/baseline", 0.06),
    ("90 bars, a campaign, a sum", GROUPED, "chartCampaignSum/ours", "chart/baseline", 0.06),
    ("90 bars, a campaign, a mean", GROUPED, "chartCampaignMean/ours", "chart/baseline", 0.06),
    ("click on the root in the window, painted", ONE_SCAN, "clickRoot/large", "plainScan/large",
     0.2),
    ("click on a campaign in the window, painted", ONE_SCAN, "clickCampaign/large",
     "plainScan/large", 0.08),
    ("another metric in the window, painted", ONE_SCAN, "metric/large", "plainScan/large", 0.06),
    ("click on an ad group of 30,000 keywords with 210,000 records in the window, painted",
     ONE_SCAN, "clickWideGrid/ours", "plainScan/large", 0.4),
    ("first wide click at 5,110,000 records, two and a half plain scans after the start",
     "one plain scan of these records", "firstWideClick/huge", "plainScan/huge", 0.15),
    ("the same at once after the start", "one plain scan of these records",
     "wideClickAtOnce/huge", "plainScan/huge", 2),
    ("click on the root at 5,110,000 records", FIFTH, "clickRoot/huge", "clickRoot/large", 5.5),
    ("another metric at 5,110,000 records", FIFTH, "metric/huge", "metric/large", 5.5),
    ("the tree", "one `SELECT DISTINCT` of its four columns", "tree/ours", "tree/baseline", 2),
    ("tree at 1,022,000 records", "the same over a tenth of the records", "tree/ours",
     "tree/small", 12),
    ("a tree of 206,021 nodes", "one `SELECT DISTINCT` of its four columns", "wideTree/ours",
     "wideTree/baseline", 2),
    ("a tree of 2,060,201 nodes", "one `SELECT DISTINCT` of its four columns",
     "millionsOfNodes/ours", "millionsOfNodes/baseline", 2),
    ("HTML report of 32,767 grid rows, no picture", "the same bytes written line by line",
     "report/ours", "report/baseline", 2),
    ("opening the preview of 32,767 rows, to the first page on the screen",
     "that of 2,000 rows", "preview/long", "preview/short", 16),
    ("the same with names of 1,000 characters", "that of 2,000 rows", "preview/longNames",
     "preview/short", 70),
    ("JPEG of 1,600 by 800 pixels", "libjpeg-turbo alone on the same pixels", "jpeg/ours",
     "jpeg/baseline", 1.1),
]
# Without a baseline: the benchmark and its limit.
ALONE = [
    ("a record in memory, bytes", "memory/record", 56),
    ("longest pause of the event loop while the records are read ahead, ms",
     "pauseOfReading/large", 16),
    ("the same at 5,110,000 records, ms", "pauseOfReading/huge", 16),
    ("in the tree of 206,021 nodes: opening all that a key opens, ms", "widePause/openAll", 50),
    ("there, a line down, ms", "widePause/down", 50),
    ("there, a page down, ms", "widePause/page", 50),
    ("there, to the end, ms", "widePause/end", 50),
]
BEGIN, END = "<!-- ratios: made by scripts/bench -->\n", "<!-- end of ratios -->\n"


def medians(results):
    """Benchmark -> median in milliseconds: processor time, which other programs don't disturb, or
    real time where a benchmark asks for it since it waits for the disk; what is counted where one
    counts something else."""
    factor = {"ns": 1e-6, "us": 1e-3, "ms": 1, "s": 1e3}
    times = {}
    for run in results["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run.get("aggregate_name") == "median":
            time = "real_time" if run["run_name"].endswith("/real_time") else "cpu_time"
            times[run["run_name"]] = run.get("count", run[time] * factor[run["time_unit"]])
    # The benchmark library appends to names: "/iterations:1", "/real_time".
    return {"/".join(name.split("/")[:2]): time for name, time in times.items()}


def table(times):
    lines = ["| what | ms | beside it | ms | ratio | at most |", "|---|--:|---|--:|--:|--:|"]
    broken = []
    for what, beside, name, other, limit in ROWS:
        if name not in times or other not in times:
            continue
        ratio = times[name] / times[other]
        mark = ""
        if ratio > limit:
            mark = " **above**"
            broken.append(f"{what}: {ratio:.2f}, at most {limit}")
        lines.append(f"| {what} | {times[name]:.1f} | {beside} | {times[other]:.1f} "
                     f"| {ratio:.2f}{mark} | {limit} |")
    for what, name, limit in ALONE:
        if name not in times:
            continue
        lines.append(f"| {what} | {times[name]:.1f} | | | | {limit} |")
        if times[name] > limit:
            broken.append(f"{what}: {times[name]:.1f}, at most {limit}")
    return "\n".join(lines) + "\n", broken


def main():
    results = json.loads(pathlib.Path(sys.argv[1]).read_text())
    text, broken = table(medians(results))
    print(text)
    if len(sys.argv) > 2:
        page = pathlib.Path(sys.argv[2])
        before, _, rest = page.read_text().partition(BEGIN)
        _, _, after = rest.partition(END)
        page.write_text(before + BEGIN + text + END + after)
    if broken:
        print("Above the limit:", *broken, sep="\n  ", file=sys.stderr)
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
