#!/usr/bin/env python3
"""Exports of kva, imported again, give the allele counts of the data that they were made of.

Usage: roundtrip_test.py KVA KVATOOL DATAFILE...
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

KVA, TOOL = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
FILES = [pathlib.Path(word).resolve() for word in sys.argv[3:]]


def counts(sheet):
    """The table of a count sheet: for each sample and locus its pairs of allele and copies."""
    rows = [line.split("\t") for line in sheet.read_text().splitlines()[1:]]
    samples = []
    for row in rows:
        if row[0]:
            samples.append((row[0], {}))
        for cell in range(1, len(row) - 1, 2):
            if row[cell]:
                samples[-1][1].setdefault(cell, []).append((int(row[cell]), row[cell + 1]))
    return samples


def ranks(samples):
    """The same with each allele by its place among all of its locus, from 1."""
    places = {cell: {allele: i + 1 for i, (allele, _) in enumerate(pairs)}
              for cell, pairs in samples[0][1].items()}  # "Total" comes first
    return [(name, {cell: [(places[cell][allele], copies) for allele, copies in pairs]
                    for cell, pairs in loci.items()}) for name, loci in samples]


class RoundTrip(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)

    def run_kva(self, name):
        subprocess.run([KVA, "-i", name], cwd=self.folder, stdout=subprocess.DEVNULL, check=False)
        return self.folder / (name + "_KVAresult00")

    def imported(self, file, name, *options):
        told = subprocess.run([TOOL, "import", file, "-o", name, "--repeat", "unknown", *options],
                              cwd=self.folder, capture_output=True, text=True, check=False)
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        return counts(self.run_kva(name) / "Allelecount" / "Allelecount.xls")

    def test_genepop(self):
        for data in FILES:
            with self.subTest(data=data.name):
                shutil.copy(data, self.folder)
                results = self.run_kva(data.name)
                read = self.imported(results / "Formats&Data" / "Genepop.gen", "gen_" + data.name)
                self.assertGreater(len(read), 2)  # the pool and populations
                # The export holds places of alleles; a flag of inbreeding has no place in it and
                # does not change numbers of copies.
                self.assertEqual(
                    read, ranks(counts(results / "Allelecount" / "Allelecount.xls")))

    def test_structure(self):
        for data in FILES:
            with self.subTest(data=data.name):
                shutil.copy(data, self.folder)
                folder = self.run_kva(data.name) / "Formats&Data"
                read = self.imported(folder / (data.name + ".struct"), "str_" + data.name,
                                     "--rows", "2", "--pop-digits", "3", "--locus-column", "2",
                                     "--missing", "-9", "--half-missing", "inbred")
                # The new data file has the same random choices of inbred individuals.
                shutil.copy(folder / (data.name + "_2C_RD"), self.folder)
                again = self.run_kva(data.name + "_2C_RD") / "Allelecount" / "Allelecount.xls"
                self.assertEqual(read, counts(again))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
