#!/usr/bin/env python3
"""Instructions of the pairwise permutation test per slot visit, counted by valgrind.

A slot visit is one slot of one pair of populations at one locus in one permutation. Two runs
with different numbers of permutations are counted; their difference, divided by the visits
between them, leaves out all that is done once. Linked genotypes take 7 in large samples (15
populations of 47 individuals at 30 loci), and more the smaller a sample is.

    slot_visits.py build/release/kva FILE ["options of -fst"]
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PERMUTATIONS = (50, 150)


def visits(file):
    """Slot visits of one permutation: each population meets every other one."""
    rows = [line.split("\t") for line in file.read_text().splitlines() if line.strip()]
    columns = int(rows[0][0])
    loci = (len(rows[0]) - 3) // columns
    sizes = {}
    for row in rows[3:]:
        sizes[row[0]] = sizes.get(row[0], 0) + columns
    return sum(sizes.values()) * (len(sizes) - 1) * loci


def instructions(kva, file, options, permutations):
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(file, folder)
        command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", str(kva)]
        command += ["-i", file.name, "-fst", options, "n=%d" % permutations]
        told = subprocess.run(command, cwd=folder, capture_output=True, text=True).stderr
    return int(re.search(r"Collected : (\d+)", told)[1])


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    kva = pathlib.Path(sys.argv[1]).resolve()
    file = pathlib.Path(sys.argv[2])
    options = sys.argv[3] if len(sys.argv) > 3 else "p"
    few, many = (instructions(kva, file, options, n) for n in PERMUTATIONS)
    each = (many - few) / (PERMUTATIONS[1] - PERMUTATIONS[0]) / visits(file)
    print("%.1f instructions per slot visit" % each)


if __name__ == "__main__":
    main()
