#!/usr/bin/env python3
"""Makes an HTML page of one of docs/*.md for installation. Headings get the anchors that the links
in the pages use, and links to files elsewhere in the sources lead to the page's own folder, where
these files are installed.

Usage: makePage.py PAGE.md PAGE.html
"""
import html
import pathlib
import posixpath
import re
import sys

from markdown_it import MarkdownIt

HEAD = """<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Veltrona: {title}</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ font: 1rem/1.5 sans-serif; max-width: 52rem; margin: 2rem auto; padding: 0 1rem; }}
h2, h3 {{ margin-top: 2em; }}
img {{ max-width: 100%; }}
table {{ border-collapse: collapse; }}
th, td {{ border: 1px solid #888; padding: .3em .6em; text-align: left; vertical-align: top; }}
</style>
"""


def installed(link):
    path, mark, anchor = link.partition("#")
    if path.startswith("../"):
        path = posixpath.basename(path)
    return re.sub(r"\.md$", ".html", path) + mark + anchor


def page(source):
    reader = MarkdownIt("commonmark").enable("table")
    tokens = reader.parse(source)
    titles = []
    for token, after in zip(tokens, tokens[1:]):
        if token.type == "heading_open":
            titles.append("".join(part.content for part in after.children))
            name = re.sub(r"[^\w -]", "", titles[-1].lower())
            token.attrSet("id", name.replace(" ", "-"))
    for token in tokens:
        for part in token.children or ():
            if part.type == "link_open" and "://" not in part.attrs["href"]:
                part.attrSet("href", installed(part.attrs["href"]))
    body = reader.renderer.render(tokens, reader.options, {})
    return HEAD.format(title=html.escape(titles[0])) + body


if __name__ == "__main__":
    text = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
    pathlib.Path(sys.argv[2]).write_text(page(text), encoding="utf-8")
