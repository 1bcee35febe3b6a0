#!/usr/bin/env python3
"""Dependencies point down: holds the includes of src/ to the tables of docs/architecture.md.

The page has a table of floors (| Floor | Folder | Holds |) and a table of exceptions
(| From | To | Why |), whose "To" is a folder or a header. A source may include headers of its own
folder, of a lower floor, and what the exceptions list. An exception that nothing uses is a fault.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "architecture.md"
INCLUDE = re.compile(r'^#include "([a-z]+)/([^"]+)"', re.MULTILINE)


def table(text, head):
    """The rows of the table that begins with these heads, as lists of cells."""
    start = "| " + " | ".join(head) + " |"
    lines = iter(text.splitlines())
    if start not in lines:
        sys.exit("docs/architecture.md has no table %s" % start)
    next(lines)  # the line of dashes
    rows = []
    for line in lines:
        if not line.startswith("|"):
            break
        rows.append([cell.strip() for cell in line.strip("|").split("|")])
    return rows


def words_in_code(cell):
    return re.findall(r"`([^`]+)`", cell)


def floors(text):
    """Folder to floor."""
    return {
        folder.removeprefix("src/"): int(floor)
        for floor, folders, _ in table(text, ("Floor", "Folder", "Holds"))
        for folder in words_in_code(folders)
    }


def exceptions(text):
    """Pairs of a folder and what it may include besides."""
    return {
        (source.removeprefix("src/"), target.removeprefix("src/"))
        for sources, targets, _ in table(text, ("From", "To", "Why"))
        for source in words_in_code(sources)
        for target in words_in_code(targets)
    }


def faults(sources, floor, allowed):
    """A line for each include that points where it must not. sources: path to text."""
    result, used = [], set()
    for path, text in sorted(sources.items()):
        folder = path.split("/")[0]
        for target, header in INCLUDE.findall(text):
            if target == folder or floor.get(target, 99) < floor.get(folder, 0):
                continue
            listed = {(folder, target), (folder, "%s/%s" % (target, header))} & allowed
            used |= listed
            if not listed:
                result.append("src/%s includes %s/%s, which is not below it" % (path, target, header))
    return result + ["%s -> %s is listed and not used" % pair for pair in sorted(allowed - used)]


def main():
    text = PAGE.read_text(encoding="utf-8")
    floor = floors(text)
    sources = {
        path.relative_to(ROOT / "src").as_posix(): path.read_text(encoding="utf-8")
        for path in (ROOT / "src").rglob("*") if path.suffix in (".h", ".cpp")
    }
    found = faults(sources, floor, exceptions(text))
    folders = {path.split("/")[0] for path in sources}
    found += ["src/%s stands on no floor" % name for name in sorted(folders - floor.keys())]
    print("\n".join(found) if found else "%d sources, all includes point down" % len(sources))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
