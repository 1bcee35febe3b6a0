#!/usr/bin/env python3
"""R's read.delim and Python's csv read every name and value of the long table back.

Usage: readers_test.py --kva PROGRAM --tidy PROGRAM --reader R|csv

The names of populations and loci are made of what a reader could stumble over. Exit status 77 if R
is not installed.
"""

import argparse
import csv
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
SKIPPED = 77

POPULATIONS = [
    b'He said "north"', b'"', b'""', b'"quoted"', b'a"b', b"#hash", b"a#b", b" in front", b"behind ",
    b"it's", b"'", b"a,b;c", b"\\", b"a\\nb", b"\\\"", b"%s%d", b"NA", b"NaN", b"1", b"007", b"1e5",
    b"TRUE", b"-", b"=1+1", b"\xc3\xa4\xe2\x82\xac", b"\xe4\xff", b"\x01\x0b\x0c\x7f",
]
LOCI = [b"Loc A", b'L"1"']
COLUMNS = ["statistic", "population1", "population2", "locus", "replicate", "value"]


def data_file():
    """A row for each population, heterozygous at both loci."""
    lines = [b"2\t\t\t2\t\t2\t", b"\t\t\t50\t\t60\t",
             b"\t\t\t" + b"\t".join(name + end for name in LOCI for end in (b"", b"_2"))]
    lines += [name + b"\td\t1\t100\t104\t200\t206" for name in POPULATIONS]
    return b"\n".join(lines) + b"\n"


def tables(kva, tidy, folder):
    """The long table of a run over the data file."""
    (folder / "data.txt").write_bytes(data_file())
    subprocess.run([kva, "-i", "data.txt", "-dist", "p", "DSG", "locus"], cwd=folder,
                   stdout=subprocess.DEVNULL, check=False)
    with open(folder / "table.txt", "wb") as out:
        subprocess.run([tidy, folder / "data.txt_KVAresult00"], stdout=out, check=True)
    return folder / "table.txt"


def expected_names():
    """Some rows that must be there: statistic and names, in the order of the sheets."""
    populations = [b"Total", *POPULATIONS]
    for name in populations:
        for locus in LOCI:
            yield (b"heterozygosity_expected", name, b"", locus, b"")
    for i, second in enumerate(POPULATIONS):
        for first in POPULATIONS[:i]:
            yield (b"distance_dsg", first, second, b"", b"1")
    for locus in LOCI:
        for i, first in enumerate(POPULATIONS):
            for second in POPULATIONS[i + 1:]:
                yield (b"distance_dsg_locus", first, second, locus, b"1")


def rows_in_csv(table):
    with open(table, newline="", encoding="latin-1") as file:
        rows = list(csv.DictReader(file, delimiter="\t"))
    return [tuple(row[name].encode("latin-1") for name in COLUMNS) for row in rows]


def rows_in_r(table, how, locale):
    run = subprocess.run(["Rscript", "--vanilla", HERE / "readback.R", table, how],
                         stdout=subprocess.PIPE, check=True, text=True,
                         env={**os.environ, "LC_ALL": locale})
    for line in run.stdout.splitlines():
        *names, value = line.split("\t")
        yield tuple(b"NA" if name == "NA" else bytes.fromhex(name) for name in names) + (value,)


def check_names(rows, what):
    wanted = list(expected_names())
    statistics = {names[0] for names in wanted}
    found = [row[:5] for row in rows if row[0] in statistics]
    if found == wanted:
        print("%s: %d rows, all names as written" % (what, len(rows)))
        return True
    for row, names in zip(found, wanted):
        if row != names:
            print("%s: %s, expected %s" % (what, row, names))
            break
    print("%s: %d rows, expected %d" % (what, len(found), len(wanted)))
    return False


def same_values(texts, numbers):
    """Whether R's numbers are those of the table; what is empty is NA there."""
    def same(text, number):
        if text == b"":
            return number == "NA"
        return float(text) == float(number) or (math.isnan(float(text)) and number == "NaN")
    return len(texts) == len(numbers) and all(map(same, texts, numbers))


def with_r(table):
    plain = rows_in_csv(table)
    good = True
    for how in ("plain", "told"):
        for locale in ("C.UTF-8", "C"):
            rows = list(rows_in_r(table, how, locale))
            # An empty name is NA where the empty text is named so, and where all of a column are.
            emptied = [tuple(b"" if t == b"NA" and p[i] == b"" else t for i, t in enumerate(row))
                       for row, p in zip(rows, plain)]
            what = "R, %s, %s" % (how, locale)
            good &= check_names(emptied, what) and len(rows) == len(plain)
            if not same_values([row[5] for row in plain], [row[5] for row in rows]):
                print("%s: other values" % what)
                good = False
    return good


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--kva", required=True, type=os.path.abspath)
    parser.add_argument("--tidy", required=True, type=os.path.abspath)
    parser.add_argument("--reader", required=True, choices=["R", "csv"])
    given = parser.parse_args()
    if given.reader == "R" and not shutil.which("Rscript"):
        print("skipped: R (r-base-core) is not installed")
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        table = tables(given.kva, given.tidy, pathlib.Path(folder))
        good = with_r(table) if given.reader == "R" else check_names(rows_in_csv(table), "csv")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
