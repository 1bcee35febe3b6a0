#!/usr/bin/env python3
"""The tables of docs/manual.md that no single command makes.

Usage: manual_test.py KVA KVATOOL

Each mistake of its table is made in a copy of examples/testdata.dat; what kvatool check says first, and what
kva says, must be what the table has. The numbers of permutations are worked out again.
"""

import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
KVA, TOOL = (pathlib.Path(program).resolve() for program in sys.argv[1:3])
DATA = (ROOT / "examples" / "testdata.dat").read_bytes()


def rows_of_table(head):
    """The rows of the table whose head row begins with this cell."""
    lines = (ROOT / "docs" / "manual.md").read_text().splitlines()
    begin = next(i for i, line in enumerate(lines) if line.startswith("| %s |" % head))
    rows = []
    for line in lines[begin + 2:]:
        if not line.startswith("|"):
            break
        rows.append([cell.strip() for cell in line.strip("|").split("|")])
    return rows


def in_row(row, old, new):
    """The data with a cell's text changed in a row, from 1; once."""
    lines = DATA.split(b"\n")
    assert old in lines[row - 1], lines[row - 1]
    lines[row - 1] = lines[row - 1].replace(old, new, 1)
    return b"\n".join(lines)


def moved_row():
    lines = DATA.split(b"\n")
    lines.insert(60, lines.pop(3))
    return b"\n".join(lines)


def empty_row():
    lines = DATA.split(b"\n")
    lines.insert(10, b"")
    return b"\n".join(lines)


def named_individuals():
    """A column more behind the third, whose header cells are empty."""
    lines = DATA.rstrip(b"\n").split(b"\n")
    named = []
    for number, line in enumerate(lines):
        cells = line.split(b"\t")
        cells.insert(3, b"N%03d" % number if number >= 3 else b"")
        named.append(b"\t".join(cells))
    return b"\n".join(named) + b"\n"


FIRST = DATA.split(b"\n")[3].split(b"\t")  # the first individual
MISTAKES = {
    "saved as a workbook (.xlsx, .ods)": b"PK\x03\x04\x14\0\x06\0" + DATA[:200],
    'saved as "Unicode Text"': b"\xff\xfe" + DATA.decode().encode("utf-16-le"),
    "saved as UTF-8 with a mark": b"\xef\xbb\xbf" + DATA,
    "saved as CSV": DATA.replace(b"\t", b";"),
    "rows not sorted by population": moved_row(),
    "an allele with decimals": in_row(4, FIRST[3], FIRST[3] + b".4"),
    "thousands separators, 1,136": in_row(4, FIRST[3], b"1,136"),
    "cells in quotes": in_row(4, FIRST[3], b'"' + FIRST[3] + b'"'),
    "a column of names of individuals": named_individuals(),
    "both alleles in one cell": in_row(4, FIRST[3], FIRST[3] + b"/" + FIRST[4]),
    "0 for a missing allele": in_row(4, b"\t".join(FIRST[2:5]), FIRST[2] + b"\t0\t0"),
    "no group": in_row(4, b"\t".join(FIRST[:3]), b"\t".join(FIRST[:2]) + b"\t"),
    "North and north": in_row(4, b"Alder", b"alder"),
    "an empty row in the middle": empty_row(),
}
PLAIN = {"half-missing", "off-grid"}  # what is told of the data without a mistake


class Mistakes(unittest.TestCase):
    def told_by_check(self, path):
        text = subprocess.run([TOOL, "check", path], capture_output=True, text=True,
                              check=False).stdout
        found = [line for line in text.splitlines() if line.startswith(("error: ", "warning: "))]
        found = [line for line in found if line.split(": ")[1].split(",")[0] not in PLAIN]
        return [line.split(" (")[0] for line in found]

    def told_by_kva(self, path):
        text = subprocess.run([KVA, "-i", path.name], cwd=path.parent, capture_output=True,
                              check=False).stdout.decode(errors="replace")
        begin = path.name + ", "
        found = [line[len(begin):] for line in text.splitlines() if line.startswith(begin)]
        return found[0] if found else "nothing"

    def test_each_row(self):
        rows = rows_of_table("Mistake")
        self.assertEqual({row[0] for row in rows}, set(MISTAKES))
        for mistake, check, kva in rows:
            with self.subTest(mistake), tempfile.TemporaryDirectory() as folder:
                path = pathlib.Path(folder) / "data.txt"
                path.write_bytes(MISTAKES[mistake])
                self.assertIn(check, self.told_by_check(path))
                self.assertEqual(kva, self.told_by_kva(path))


class Permutations(unittest.TestCase):
    def test_least_number(self):
        for populations, pairs, least in rows_of_table("Populations"):
            worked = math.comb(int(populations), 2)
            self.assertEqual(worked, int(pairs))
            # pairs/n is 0.05 at most from here on.
            self.assertEqual(worked * 20, int(least.split(",")[0]))

    def test_standard_errors(self):
        lines = (ROOT / "docs" / "manual.md").read_text().splitlines()
        cells = lambda begin: [line.strip("| ").split(" | ")[1:] for line in lines
                               if line.startswith("| %s | " % begin)][0]
        for n, error in zip(cells("n"), cells("standard error"), strict=True):
            self.assertEqual("%.4f" % math.sqrt(0.05 * 0.95 / int(n)), error)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
