#!/usr/bin/env python3
"""Follows every link of a built site from page to page: check_links.py FOLDER. Nothing is fetched."""

import pathlib
import sys
import urllib.parse
from html.parser import HTMLParser


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.targets = set()
        self.links = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id" or (tag == "a" and name == "name"):
                self.targets.add(value)
            elif name in ("href", "src") and value:
                self.links.append(value)


def main(folder):
    pages = {path.resolve(): Page(path) for path in pathlib.Path(folder).rglob("*.html")}
    links = broken = 0
    for path, page in pages.items():
        for link in page.links:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            links += 1
            file = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
            target = pages.get(file)
            fragment = urllib.parse.unquote(parts.fragment)
            # Doxygen links to headings that it leaves out.
            by_doxygen = "api" in path.parts
            if not file.exists() or (fragment and target and not by_doxygen and fragment not in target.targets):
                broken += 1
                print(f"{path}: {link} leads nowhere", file=sys.stderr)
    print(f"{len(pages)} pages, {links} links, {broken} broken")
    return broken != 0 or links == 0


sys.exit(main(sys.argv[1]))
