#!/usr/bin/env python3
"""Makes the pictures of docs/report.md, and with --check compares those that are SVG with docs/pictures.

Usage: report_pictures.py [--check] [--kvatool PROGRAM] [--screens]

They are the pictures of two reports: of examples/testdata.dat and of nancycats, the cats of Nancy from
the R package adegenet, as the tests hold them. --screens also makes those of the page itself at the width
of a phone and of a desk; that takes Chromium.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
PICTURES = ROOT / "docs" / "pictures"
sys.path.insert(0, str(ROOT / "bench"))
import datasets  # noqa: E402

# Picture of a report, by the name of its figure, to the file that it goes to.
SHOWN = {
    "example": {"diversity-picture": "diversity", "alleles-picture": "alleles",
                "fst-picture": "fst", "f-picture": "global", "tree-picture": "tree",
                "populations-picture": "populations", "range-picture": "range"},
    "cats": {"fst-picture": "fst", "tree-picture": "tree", "individuals-picture": "individuals"},
}
RUN = ["--fst", "pairs,global", "--permutations", "4999", "--het-range", "200", "--distances",
       "population:CAS", "--distances", "individual:CAS"]
BOOTSTRAP = ["--distances", "population:CAS", "--bootstrap", "1000"]


def report(tool, folder, name, data):
    """The text of the report of a data file."""
    for result, words in ((name, RUN), (name + "_boot", BOOTSTRAP)):
        subprocess.run([tool, "run", data, "-o", result, "--seed", "1", "-q", *words], cwd=folder,
                       check=True)
    page = "%s.html" % name
    subprocess.run([tool, "report", name, "--bootstrap", name + "_boot", "--measure", "CAS", "-o",
                    page], cwd=folder, check=True)
    return (folder / page).read_text(encoding="utf-8")


def picture_of(page, figure):
    return re.search('<figure id="%s">.*?(<svg .*?</svg>)' % figure, page, re.DOTALL)[1] + "\n"


def made(tool, folder):
    """File name to the text of each SVG."""
    cats = folder / "nancycats.txt"
    cats.write_text(datasets.cats().text)
    found = {}
    for name, data in (("example", ROOT / "examples" / "testdata.dat"), ("cats", cats)):
        page = report(tool, folder, name, data)
        for figure, short in SHOWN[name].items():
            found["%s_%s.svg" % (name, short)] = picture_of(page, figure)
    return found


def check(found):
    bad = [name for name, text in found.items()
           if not (PICTURES / name).is_file() or (PICTURES / name).read_text(encoding="utf-8") != text]
    for name in bad:
        print("docs/pictures/%s is not what scripts/report_pictures.py makes" % name)
    return 1 if bad else 0


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--check", action="store_true")
    arguments.add_argument("--screens", action="store_true")
    arguments.add_argument("--kvatool", type=pathlib.Path, default=ROOT / "build/release/kvatool")
    words = arguments.parse_args()
    tool = words.kvatool.resolve()
    with tempfile.TemporaryDirectory() as folder:
        found = made(tool, pathlib.Path(folder))
    if words.check:
        return check(found)
    PICTURES.mkdir(exist_ok=True)
    for name, text in found.items():
        (PICTURES / name).write_text(text, encoding="utf-8")
    if words.screens:
        browser = ROOT / "tests" / "tool" / "report_browser_test.py"
        return subprocess.run([sys.executable, browser, tool, "--pictures", PICTURES],
                              check=False).returncode
    return 0


if __name__ == "__main__":
    sys.exit(main())
