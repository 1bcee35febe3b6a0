#!/usr/bin/env python3
"""adegenet's example files: kvatool imports the genotypes that adegenet itself imports.

Usage: adegenet_test.py KVATOOL

Exit status 77 if R or adegenet is not installed.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
TOOL = pathlib.Path(sys.argv[1]).resolve()
SKIPPED = 77

OPTIONS = {".str": ["--rows", "2", "--pop-column", "2", "--locus-column", "4", "--missing", "-9"]}


def genotype(first, second):
    """Two alleles in one order; None for missing ones."""
    return tuple(sorted((first, second))) if first is not None else None


def by_adegenet():
    """File to its individuals, each a population and a tuple of genotypes."""
    if shutil.which("Rscript") is None:
        sys.exit(SKIPPED)
    told = subprocess.run(["Rscript", "--vanilla", HERE / "adegenet_genotypes.R"],
                          capture_output=True, text=True, check=False,
                          env={**os.environ, "LC_ALL": "C"})
    if told.returncode == SKIPPED:
        sys.exit(SKIPPED)
    if told.returncode != 0:
        sys.exit(told.stderr)
    files = {}
    for line in told.stdout.splitlines():
        cells = line.rstrip("\t").split("\t")
        if cells[0] == "file":
            individuals = files.setdefault(pathlib.Path(cells[1]), [])
            continue
        pairs = [cell.split("/") for cell in cells[1:]]
        individuals.append((cells[0], tuple(
            None if pair[0] == "NA" else genotype(int(pair[0]), int(pair[1])) for pair in pairs)))
    return files


def by_kvatool(file):
    with tempfile.TemporaryDirectory() as folder:
        output = pathlib.Path(folder, "data.txt")
        told = subprocess.run([TOOL, "import", file, "-o", output, "--repeat", "unknown",
                               *OPTIONS.get(file.suffix, [])],
                              capture_output=True, text=True, check=False)
        if told.returncode != 0:
            sys.exit(told.stderr)
        individuals = []
        for line in output.read_text().splitlines()[3:]:
            cells = line.split("\t")
            alleles = [int(cell) if cell else None for cell in cells[3:]]
            individuals.append((cells[0], tuple(
                genotype(*alleles[i:i + 2]) for i in range(0, len(alleles), 2))))
        return individuals


def main():
    files = by_adegenet()
    if len(files) != 4:
        sys.exit("adegenet told of %d files" % len(files))
    failures = 0
    for file, wanted in files.items():
        # adegenet's Genepop names populations after their last individual, which are the labels of
        # all here; others of its readers write numbers with zeros in front.
        plain = [(name.lstrip("0"), genotypes) for name, genotypes in wanted]
        found = by_kvatool(file)
        # Missing genotypes sort as no alleles.
        order = lambda row: (row[0], [pair or () for pair in row[1]])
        same = sorted(found, key=order) == sorted(plain, key=order)
        failures += not same
        print("%s: %d individuals, %s" % (file.name, len(found),
                                          "the same" if same else "NOT the same"))
        if not same:
            for row in zip(sorted(found, key=order), sorted(plain, key=order)):
                if row[0] != row[1]:
                    print(row)
                    break
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
