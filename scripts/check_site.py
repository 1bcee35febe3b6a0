#!/usr/bin/env python3
"""Follows every link within a site of HTML pages: the file has to be there, and the anchor in it.

Usage: check_site.py FOLDER
"""

import html.parser
import pathlib
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.anchors = [], {""}
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src") and value:
                self.links.append(value)
            elif name in ("id", "name") and value:
                self.anchors.add(value)


def broken(folder):
    pages = {path: Page(path.read_text()) for path in sorted(folder.rglob("*.html"))}
    count, wrong = 0, []
    for path, page in pages.items():
        for link in page.links:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc or path.name == "404.html":
                continue
            count += 1
            target = path
            if parts.path:
                target = (path.parent / urllib.parse.unquote(parts.path)).resolve()
            if target.is_dir():
                target = target / "index.html"
            anchor = urllib.parse.unquote(parts.fragment)
            if not target.exists():
                wrong.append("%s: no file %s" % (path.relative_to(folder), link))
            elif target in pages and anchor not in pages[target].anchors:
                wrong.append("%s: no anchor %s" % (path.relative_to(folder), link))
    print("%d pages, %d links within them, %d broken" % (len(pages), count, len(wrong)))
    return wrong


def main():
    wrong = broken(pathlib.Path(sys.argv[1]).resolve())
    for line in wrong:
        print(line)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
