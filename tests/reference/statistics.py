#!/usr/bin/env python3
"""The statistics grid of a node, worked out a second time and with nothing but texts.

A slow and literal reference for the tests: every running sum is kept as a cell text, and each
record is added to the texts of its row.

    statistics.py PROJECT FIRST-DATE LAST-DATE GROUPING-COLUMN [COLUMN=VALUE ...]

prints a JSON object: "rows" is a list of rows of 15 texts without the heading and the spacer, the
summary last; "red" the indexes of the rows that didn't earn back their cost; "notes" the lines that
explain each figure, for each row a list by column.
"""

import datetime

import json
import re
import sqlite3
import sys
import unicodedata

LEADING_NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", re.ASCII)
DECIMALS = {3: 2, 4: 2, 5: 2, 7: 2, 8: 2, 9: 1, 10: 2, 11: 2}
PERCENT = (3, 7, 11)


def number(text):
    match = LEADING_NUMBER.match(text)
    return float(match.group()) if match else 0.0


def percent(text):
    return number(text.replace("%", ""))


def text_of(value):
    """A number with up to 15 digits and no zero in front of the point."""
    if isinstance(value, str):
        return value
    text = "%.15G" % value if value != 0 else "0"
    return re.sub(r"^(-?)0\.", r"\1.", text)


def read(row, column):
    return percent(row[column]) if column in PERCENT else number(row[column])


def write(row, column, value):
    row[column] = text_of(value) + ("%" if column in PERCENT else "")


def return_on_investment(row):
    cost, value = number(row[5]), number(row[10])
    if cost == 0:
        return "0.00%"
    if value < cost:
        return "-" + text_of(100 - (value / cost) * 100) + "%"
    return text_of((value / cost) * 100 - 100) + "%"


def add_record(row, record):
    def field(name):
        return text_of(record[name])

    def add(column, value):
        write(row, column, value + read(row, column))

    add(1, number(field("clicks")))
    add(2, number(field("impressions")))
    add(3, percent(field("ctr")))
    add(4, number(field("cpc")))
    if number(field("cpc")) != 0:
        add(14, 1)
    add(5, number(field("cost")) / 1000000)
    add(6, number(field("conv")))
    add(7, percent(field("conv")))
    if number(field("conv")) != 0:
        add(8, number(text_of(float(record["cost"]) / float(record["conv"]))))
    add(9, number(field("pos")))
    if number(field("pos")) != 0:
        add(13, 1)
    add(10, number(field("convvalue")))
    row[11] = return_on_investment(row)
    add(12, number(field("transactions")))


def finish(row):
    """The form that is shown."""
    for column, decimals in DECIMALS.items():
        scale = 10**decimals
        write(row, column, float(round(read(row, column) * scale)) / scale)
        if column != 8 and row[column].startswith("."):
            row[column] = "0" + row[column]


def summarise(rows):
    summary = ["Summary"] + [""] * 14
    for row in rows:
        if number(row[13]) > 0:
            write(row, 9, number(row[9]) / number(row[13]))
        if number(row[14]) > 0:
            write(row, 4, number(row[4]) / (number(row[14]) * 1000000))
        for column in (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12):
            write(summary, column, read(summary, column) + read(row, column))
        summary[11] = return_on_investment(summary)
        finish(row)
    for column in (4, 9):
        write(summary, column, number(summary[column]) / len(rows))
    finish(summary)
    return summary


def true_figure(records, column):
    """The figure's value, its text and the sentence in front of it; None without a divisor."""
    def total(name, condition=lambda record: True):
        return sum(number(text_of(r[name])) for r in records if condition(r))

    clicks, impressions, conversions = total("clicks"), total("impressions"), total("conv")
    cost, value = total("cost") / 1e6, total("convvalue")
    placed = [r for r in records if number(text_of(r["pos"])) != 0]
    seen = sum(number(text_of(r["impressions"])) for r in placed)
    weighted = sum(number(text_of(r["pos"])) * number(text_of(r["impressions"])) for r in placed)

    def counted(amount, noun):
        return f"{plain(amount)} {noun}" + ("" if plain(amount) == "1" else "s")

    sums = {1: clicks, 2: impressions, 6: conversions, 12: total("transactions")}
    if column in sums:
        return sums[column], plain(sums[column]), ""
    if column in (5, 10):
        amount = cost if column == 5 else value
        return amount, money(amount), ""
    above, below, factor, sentence = {
        3: (clicks, impressions, 100,
            f"{counted(clicks, 'click')} of {counted(impressions, 'impression')}"),
        4: (cost, clicks, 1, f"{money(cost)} for {counted(clicks, 'click')}"),
        7: (conversions, clicks, 100,
            f"{counted(conversions, 'conversion')} of {counted(clicks, 'click')}"),
        8: (cost, conversions, 1, f"{money(cost)} for {counted(conversions, 'conversion')}"),
        9: (weighted, seen, 1, f"Weighted by {counted(seen, 'impression')}"),
        11: (value - cost, cost, 100, f"A value of {money(value)} for a cost of {money(cost)}"),
    }[column]
    if below == 0:
        return None
    ratio = above / below * factor
    text = plain(ratio) + "%" if factor == 100 else money(ratio)
    return ratio, text, f"{sentence}: {text}"


def plain(amount):
    text = text_of(float(round(amount * 100) / 100))
    return re.sub(r"^(-?)\.", r"\g<1>0.", text).replace("-", "\u2212")


def money(amount):
    return ("%.2f" % (round(amount * 100) / 100)).replace("-", "\u2212")


def share(part, whole):
    percent = round(part / whole * 100)
    if percent == 0 and part > 0:
        return "less than 1%"
    return "more than 99%" if percent == 100 and part < whole else f"{percent}%"


def share_lines(records, table, column):
    noun = {1: "clicks", 2: "impressions", 5: "cost", 6: "conversions", 10: "conversion value",
            12: "transactions"}.get(column)
    if not noun or table is None:
        return []
    whole = true_figure(table, column)[0]
    part = true_figure(records, column)[0]
    return [f"{share(part, whole)} of the {noun} of this table."] if whole > 0 else []


def waste_lines(records):
    leaves = {}
    for record in records:
        key = tuple(record[name] for name in ("campaign", "adgroup", "adwordstyp", "keyword",
                                              "kwtype"))
        leaves.setdefault(key, []).append(record)
    wasting = [leaf for leaf in leaves.values()
               if true_figure(leaf, 5)[0] > 0 and true_figure(leaf, 6)[0] == 0]
    if not wasting:
        return []
    wasted = sum(true_figure(leaf, 5)[0] for leaf in wasting)
    keywords = f"{len(wasting)} keyword" + ("s" if len(wasting) > 1 else "")
    return [f"{money(wasted)} of it ({share(wasted, true_figure(records, 5)[0])}) went to "
            f"{keywords} without a conversion."]


def notes(shown, before, dates, table):
    """Of a row, or of the summary if `table` is None; the first column's are of a loss."""
    columns = [[f"Loss: cost {money(true_figure(shown, 5)[0])}, "
                f"brought {money(true_figure(shown, 10)[0])}."] + waste_lines(shown)]
    for column in range(1, 13):
        now, earlier = true_figure(shown, column), true_figure(before, column)
        lines = [now[2]] if now and now[2] else []
        if column == 5:
            lines += waste_lines(shown)
        lines += share_lines(shown, table, column)
        if earlier and earlier[0] != 0:
            change = ""
            if now:
                percent = round((now[0] - earlier[0]) / abs(earlier[0]) * 1000) / 10
                change = f", {'up' if percent > 0 else 'down'} {plain(abs(percent))}%" \
                    if percent else ", no change"
            lines.append(f"{dates}: {earlier[1]}{change}")
        columns.append(lines)
    return columns


def reading_key(row):
    folded = row[0].casefold()
    base = "".join(c for c in unicodedata.normalize("NFD", folded) if not unicodedata.combining(c))
    return base, folded, row[0]


def main():
    project, first, last, grouping, *conditions = sys.argv[1:]
    sql = "SELECT * FROM tblGoogleDays WHERE googleDate >= ? AND googleDate <= ?"
    narrowing = [condition.split("=", 1) for condition in conditions]
    for column, _ in narrowing:
        sql += f" AND {column} = ?"
    connection = sqlite3.connect(project)
    connection.row_factory = sqlite3.Row

    def records(start, end):
        return connection.execute(sql, [start, end + " 23:59:59", *(v for _, v in narrowing)])

    rows = {}
    shown = list(records(first, last))
    for record in shown:
        name = record[grouping].strip(" ")
        add_record(rows.setdefault(name, [name] + [""] * 14), record)

    ordered = sorted(rows.values(), key=reading_key)
    ordered.append(summarise(ordered))
    red = [i for i, row in enumerate(ordered) if number(row[10]) < number(row[5])]

    start = datetime.date.fromisoformat(first)
    days = datetime.date.fromisoformat(last) - start + datetime.timedelta(1)
    earlier_end = start - datetime.timedelta(1)
    before = list(records((start - days).isoformat(), earlier_end.isoformat()))
    dates = f"{start - days:%-d} to {earlier_end:%-d %b}"  # days of one month

    def explained(name):
        return notes(*([r for r in some if name is None or r[grouping].strip(" ") == name]
                       for some in (shown, before)), dates, None if name is None else shown)

    all_notes = [explained(row[0]) for row in ordered[:-1]] + [explained(None)]
    json.dump({"rows": ordered, "red": red, "notes": all_notes}, sys.stdout)


if __name__ == "__main__":
    main()
