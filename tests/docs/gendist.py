#!/usr/bin/env python3
"""PHYLIP's gendist beside the formulas that docs/results.md gives for it, and beside our distances.

Usage: gendist.py DATA FOLDER

DATA has two columns per locus, FOLDER is a result folder of it with the distance DSG as -ln. Prints
the largest difference of each pair of tables.
"""

import itertools
import math
import pathlib
import subprocess
import sys
import tempfile

from formulas_test import Data


def gendist(data, keys):
    """The matrix of gendist, from the frequencies of the alleles."""
    names = data.populations
    alleles = [list(pool.p) for pool in data.samples["Total"]]
    with tempfile.TemporaryDirectory() as folder:
        lines = ["%5d %5d" % (len(names), len(alleles)), " ".join(str(len(a)) for a in alleles)]
        for name in names:
            lines.append("%-10.10s" % name)
            lines += [" ".join("%.9f" % sample.p.get(a, 0) for a in listed)
                      for sample, listed in zip(data.samples[name], alleles)]
        (pathlib.Path(folder) / "infile").write_text("\n".join(lines) + "\n")
        subprocess.run(["phylip", "gendist"], cwd=folder, input=keys, text=True, check=True,
                       stdout=subprocess.DEVNULL)
        words = (pathlib.Path(folder) / "outfile").read_text().split()[1:]
    step = len(names) + 1
    return [[float(word) for word in words[i * step + 1:(i + 1) * step]]
            for i in range(len(names))]


def ours(folder, name):
    lines = (pathlib.Path(folder) / "Distance_data" / name).read_text().splitlines()[1:]
    return [[float(word) for word in line[10:].split()] for line in lines if line]


def pair_sums(data, one, other):
    """Sums over the loci: of B, of x y, x^2 and y^2."""
    sums = [0.0] * 4
    for x, y in zip(data.samples[one], data.samples[other]):
        for allele in x.p.keys() | y.p.keys():
            p, q = x.p.get(allele, 0), y.p.get(allele, 0)
            for i, term in enumerate((math.sqrt(p * q), p * q, p * p, q * q)):
                sums[i] += term
    return sums


def main():
    data = Data(pathlib.Path(sys.argv[1]))
    nei, chord = gendist(data, "A\nY\n"), gendist(data, "C\nA\nY\n")
    loci = len(data.loci)
    degrees = sum(len(pool.p) - 1 for pool in data.samples["Total"])
    worst = dict.fromkeys(("Nei 1972", "option C", "DSG -ln beside Nei 1972"), 0.0)
    standard = ours(sys.argv[2], "DSG_Pop.txt")
    for i, j in itertools.combinations(range(len(data.populations)), 2):
        roots, both, one, other = pair_sums(data, data.populations[i], data.populations[j])
        for what, difference in (
                ("Nei 1972", nei[i][j] + math.log(both / math.sqrt(one * other))),
                ("option C", chord[i][j] - 4 * (loci - roots) / degrees),
                ("DSG -ln beside Nei 1972", nei[i][j] - standard[i][j])):
            worst[what] = max(worst[what], abs(difference))
    for what, difference in worst.items():
        print("%-24s %.4f" % (what, difference))


if __name__ == "__main__":
    main()
