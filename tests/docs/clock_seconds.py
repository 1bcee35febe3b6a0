#!/usr/bin/env python3
"""What seeding from the clock does to p-values: runs of kva in the same second of a stopped clock.

Usage: clock_seconds.py DATA

Prints the p-values that kva gives a pair of populations in each of sixty seconds, and those of the test of
all populations. The clock is stopped by libfaketime, so that the numbers are the same every time. The
programs are those of the path.
"""

import glob
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SECONDS = 60
SHOWN = 12  # seconds whose p-values are printed


def stopped_clock(second):
    """The environment of a clock that stands still."""
    libraries = glob.glob("/usr/lib/*/faketime/libfaketime.so.1")
    if not libraries:
        sys.exit("libfaketime is not installed (Debian package: faketime)")
    return dict(os.environ, LD_PRELOAD=libraries[0], FAKETIME="2024-01-01 12:00:%02d" % second,
                FAKETIME_DISABLE_SHM="1", TZ="UTC",
                ASAN_OPTIONS="verify_asan_link_order=0:" + os.environ.get("ASAN_OPTIONS", ""))


def run(data, second, fst):
    """The sheet with the p-values of a run that ends in the second in which it began."""
    with tempfile.TemporaryDirectory() as folder:
        copy = shutil.copy(data, folder)
        subprocess.run(["kva", "-i", copy, "-fst", fst, "n=10000"], env=stopped_clock(second),
                       stdout=subprocess.DEVNULL, check=False)
        sheets = pathlib.Path(copy + "_KVAresult00") / "F-Statistic"
        name = "FST_WC84-pValue.xls" if fst == "pairwise" else "GlobFst.xls"
        return (sheets / name).read_text()


def p_of_pair(sheet):
    rows = sheet.split("P-values:\n")[1].splitlines()
    return float(rows[0].split("\t")[2])


def p_of_all(sheet):
    row = [line for line in sheet.splitlines() if line.startswith("global Fst over all loci")][0]
    return float(row.split("\t")[2])


def main():
    data = sys.argv[1]
    pairs = [p_of_pair(run(data, second, "pairwise")) for second in range(SECONDS)]
    both = [p_of_all(run(data, second, "global")) for second in range(SHOWN)]
    for what, values in (("pair", pairs), ("all", both)):
        print("%s, %d seconds: %s" % (what, SHOWN,
                                      " ".join("%g" % p for p in sorted(values[:SHOWN]))))
    print("pair, mean of %d seconds: %.3f" % (SECONDS, sum(pairs) / SECONDS))


if __name__ == "__main__":
    main()
