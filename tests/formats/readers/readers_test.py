#!/usr/bin/env python3
"""Opens exports of the program with the programs they are made for.

Usage: readers_test.py --kva PROGRAM --reader adegenet|lamarc FILE...

For each data file (three header rows) the program writes its exports; the reader opens them, and
what it finds is compared with the data file: the numbers of individuals, populations, loci and
alleles (adegenet), or every genotype (the converter of LAMARC). Exit status 77 if the reader is not
installed.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent
SKIPPED = 77


class Data:
    """A data file, read independently of the program."""

    def __init__(self, path):
        rows = [line.split("\t") for line in path.read_text().splitlines()]
        columns = int(rows[0][0])
        self.loci = rows[2][3::columns]
        self.repeats = [int(cell) for cell in rows[0][3::columns]]
        self.populations = []  # names, one for each run of rows
        self.individuals = []  # (number of the population, flagged "h", pairs of alleles)
        rows = rows[3:]
        for i in range(0, len(rows), 3 - columns):
            name = rows[i][0]
            if not self.populations or self.populations[-1] != name:
                self.populations.append(name)
            cells = [rows[i + k][3:] + [""] * len(self.loci) * 2 for k in range(3 - columns)]
            if columns == 2:
                pairs = [(cells[0][2 * l], cells[0][2 * l + 1]) for l in range(len(self.loci))]
            else:
                pairs = [(cells[0][l], cells[1][l]) for l in range(len(self.loci))]
            self.individuals.append((len(self.populations) - 1, rows[i][1] == "h", pairs))

    def alleles(self, wanted=lambda h, pair: True):
        """The number of alleles of each locus, in the genotypes that `wanted` says yes to."""
        return [
            len({a for _, h, pairs in self.individuals if wanted(h, pairs[l])
                 for a in pairs[l]} - {""})
            for l in range(len(self.loci))
        ]

    def half_missing(self):
        """Of each locus, whether there is a genotype with one allele missing."""
        return [
            any(pairs[l].count("") == 1 for _, _, pairs in self.individuals)
            for l in range(len(self.loci))
        ]


def export(kva, path, folder):
    """Runs the program on a copy of the file; the folder of the exports."""
    shutil.copy(path, folder)
    subprocess.run([kva, "-i", path.name, "-format", "migrate"], cwd=folder,
                   stdout=subprocess.DEVNULL, check=False)
    return folder / (path.name + "_KVAresult00") / "Formats&Data"


def compare(what, found, expected):
    print("%s: %s, expected %s" % (what, found, expected))
    return found == expected


# adegenet


def with_adegenet(data, path, exports):
    files = [exports / name for name in ("Genepop.gen", "GenepopRD.gen", path.name + ".struct")]
    run = subprocess.run(
        ["Rscript", "--vanilla", HERE / "adegenet.R", *files,
         str(len(data.individuals)), str(len(data.loci))],
        stdout=subprocess.PIPE, text=True, check=False)
    if run.returncode == SKIPPED:
        skip("adegenet (r-cran-adegenet) is not installed")
    found = {line.split()[0]: [int(word) for word in line.split()[1:]]
             for line in run.stdout.splitlines()}
    size = [len(data.individuals), len(data.populations), len(data.loci)]
    # The 00 of a half-missing genotype is an allele to adegenet.
    full = size + [n + half for n, half in zip(data.alleles(), data.half_missing())]
    # Which alleles of inbred individuals are kept is drawn: their number is open.
    kept = size if any(h for _, h, _ in data.individuals) else full
    # Rows of -9 make a genotype missing to adegenet, and it leaves out individuals without any
    # genotype: all that are inbred.
    diploid = [population for population, h, _ in data.individuals if not h]
    pairs_of_rows = [len(diploid), len(set(diploid)), len(data.loci)]
    pairs_of_rows += data.alleles(lambda h, pair: not h and "" not in pair)
    good = compare("Genepop.gen", found.get("Genepop.gen"), full)
    good &= compare("GenepopRD.gen", found.get("GenepopRD.gen", [])[:len(kept)], kept)
    return compare(files[2].name, found.get(files[2].name), pairs_of_rows) and good


# LAMARC


COMMANDS = """<lamarc-converter-cmd>
<outfile>lamarc.xml</outfile>
<regions><region><name>region</name><segments><segment datatype="microsat">
<name>segment</name><markers>%d</markers><map-position>1</map-position>
<first-position-scanned>1</first-position-scanned></segment></segments></region></regions>
<populations>%s</populations>
<infiles><infile format="migrate" datatype="microsat" sequence-alignment="sequential">
<name>%s</name><population-matching type="byName"/>
<segments-matching type="single">segment</segments-matching></infile></infiles>
</lamarc-converter-cmd>
"""


def fits(found, pairs, repeat):
    """Whether the steps of a locus are its lengths divided by one width, at most the repeat."""
    return any(
        found == [tuple("?" if a == "" else str(int(a) // width) for a in pair) for pair in pairs]
        for width in range(1, repeat + 1)
    )


def with_lamarc(data, path, exports):
    if not shutil.which("lam_conv") or not shutil.which("xvfb-run"):
        skip("the converter of LAMARC (lamarc) or a screen for it (xvfb, xauth) is not installed")
    names = "".join("<population>%s</population>" % name for name in data.populations)
    (exports / "commands.xml").write_text(COMMANDS % (len(data.loci), names, path.name + ".migrate"))
    subprocess.run(["xvfb-run", "-a", "lam_conv", "-b", "-c", "commands.xml"], cwd=exports,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120, check=False)
    if not (exports / "lamarc.xml").exists():
        return compare(path.name + ".migrate", "not opened", "opened")
    # The converter makes a region of each locus, and lists the populations in each.
    regions = xml.etree.ElementTree.parse(exports / "lamarc.xml").findall("./data/region")
    good = compare("loci", len(regions), len(data.loci))
    for l, region in enumerate(regions):
        found = [
            (p, tuple(block.text.strip() for block in individual.iter("datablock")))
            for p, population in enumerate(region.findall("population"))
            for individual in population.findall("individual")
        ]
        same = [p for p, _ in found] == [p for p, _, _ in data.individuals] and fits(
            [pair for _, pair in found], [pairs[l] for _, _, pairs in data.individuals],
            data.repeats[l])
        good &= compare("%s, genotypes of %d individuals" % (data.loci[l], len(found)),
                        "as in the data" if same else "others", "as in the data")
    return good


READERS = {"adegenet": ("Rscript", with_adegenet), "lamarc": ("lam_conv", with_lamarc)}


def skip(why):
    print("skipped: " + why)
    sys.exit(SKIPPED)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--kva", required=True, type=os.path.abspath)
    parser.add_argument("--reader", required=True, choices=READERS)
    parser.add_argument("files", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()
    program, read = READERS[arguments.reader]
    if not shutil.which(program):
        skip(program + " is not installed")
    good = True
    for file in arguments.files:
        print("== " + file.name)
        with tempfile.TemporaryDirectory() as folder:
            exports = export(arguments.kva, file, pathlib.Path(folder).resolve())
            good &= read(Data(file), file, exports)
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
