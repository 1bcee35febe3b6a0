#!/usr/bin/env python3
"""The formulas of docs/results.md, worked here as the page has them, give the numbers of the sheets.

Usage: formulas_test.py KVA KVATOOL

The data are those of examples/. Everything is counted and computed from the raw rows, in the symbols of the
page; the sheets are read as the long table. Values with random discard are drawn, so that they are looked at
in samples without inbred individuals alone, where they are the plain ones.
"""

import collections
import csv
import io
import itertools
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOL = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else None
HALF_LAST = {6: 0.5000001e-6, 5: 0.5000001e-5}  # rounding of a cell with so many decimals


class Sample:
    """A population, or the pool, at one locus."""

    def __init__(self, individuals):  # (inbred, allele, allele), None for a missing allele
        self.copies = collections.Counter()
        self.C = self.typed = self.hets = 0
        self.inbred = False
        for inbred, one, other in individuals:
            kept = [a for a in (one, other) if a is not None]
            self.typed += bool(kept)
            self.hets += len(set(kept)) == 2
            self.copies.update(kept)
            self.C += len(kept) * (1 if inbred else 2)
            self.inbred |= inbred and bool(kept)
        self.n = sum(self.copies.values())
        self.m = self.C // 2
        self.p = {a: c / self.n for a, c in sorted(self.copies.items())}

    def uncorrected(self):
        return 1 - sum(p * p for p in self.p.values())

    def hexp(self):
        return min(1, self.C / (self.C - 2) * self.uncorrected())

    def hobs(self):
        return self.hets / self.typed

    def hs(self):
        return min(1, self.C / (self.C - 2) * (self.uncorrected() - self.hobs() / self.C))

    def mean(self):
        return sum(a * c for a, c in self.copies.items()) / self.n

    def variance(self):
        return self.C / (self.C - 2) * sum(
            c * (a - self.mean()) ** 2 for a, c in self.copies.items()) / self.n

    def j(self):
        return (self.n * sum(p * p for p in self.p.values()) - 1) / (self.n - 1)


class Data:
    def __init__(self, path):
        rows = [line.split("\t") for line in path.read_text().splitlines()]
        self.columns = int(rows[0][0])
        self.loci = rows[2][3::self.columns]
        self.repeats = [int(cell) for cell in rows[0][3::self.columns]]
        self.rests = [int(cell) for cell in rows[1][3::self.columns]]
        genotypes, self.groups = collections.OrderedDict(), {}
        for i in range(3, len(rows), 3 - self.columns):
            pair = rows[i:i + 3 - self.columns]
            self.groups.setdefault(pair[0][0], int(pair[0][2]))
            cells = [row[3:] + [""] * 2 * len(self.loci) for row in pair]
            two = (lambda l: cells[0][2 * l:2 * l + 2]) if self.columns == 2 else (
                lambda l: [cells[0][l], cells[1][l]])
            genotypes.setdefault(pair[0][0], []).append([
                (pair[0][1].startswith("h"), *(int(a) if a.strip() else None for a in two(l)))
                for l in range(len(self.loci))])
        self.populations = list(genotypes)
        at = lambda l, ones: Sample([one[l] for one in ones])
        every = [one for ones in genotypes.values() for one in ones]
        self.samples = {name: [at(l, ones) for l in range(len(self.loci))]
                        for name, ones in [("Total", every), *genotypes.items()]}


def theta(h, m):
    if h == 0:
        h = 2 / (m + 1)
    elif h > 0.999999:
        h = 1 - 2 / (m * (m + 1))
    return (1 / (1 - h) ** 2 - 1) / 2


def expected_smm(h, m):
    if h == 0 or h >= 0.99999:
        return 1 if h == 0 else m
    q = 1 - h
    t = (1 / q ** 2 - 1) / 2
    b = (q * t + q - 1) / h
    product = math.prod((x + t) / (x + t + b) for x in range(m))
    return (t + b) / b * (1 - product)


def expected_iam(h, m):
    if h == 0 or h >= 0.99999:
        return 1 if h == 0 else m
    t = h / (1 - h)
    return 1 + sum(t / (t + x) for x in range(1, m))


def richness(sample, k):
    """The alleles expected in k copies, and their variance, in whole numbers to the last step."""
    n, counts = sample.n, list(sample.copies.values())
    all_ways = math.comb(n, k)
    q = [math.comb(n - c, k) / all_ways for c in counts]
    both = sum(math.comb(n - counts[i] - counts[j], k) / all_ways - q[i] * q[j]
               for i, j in itertools.combinations(range(len(counts)), 2))
    return sum(1 - x for x in q), sum((1 - x) * x for x in q) + 2 * both


def components(samples, pbar):
    """Weir and Cockerham's a, b and c of a locus."""
    s, sizes = len(samples), [x.n / 2 for x in samples]
    total = sum(sizes)
    nbar = total / s
    nc = (total - sum(n * n for n in sizes) / total) / (s - 1)
    h = sum(n * x.hobs() for n, x in zip(sizes, samples)) / total
    a = nbar * h / (2 * nc * (nbar - 1))
    b = -(total / (total - s) + 1) * h / 2
    for allele, mean in pbar.items():
        s2 = sum(n * (x.p.get(allele, 0) - mean) ** 2 for n, x in zip(sizes, samples))
        s2 /= (s - 1) * nbar
        x = mean * (1 - mean) - (s - 1) * s2 / s
        a += nbar * (s2 - x / (nbar - 1)) / nc
        b += nbar * x / (nbar - 1)
    return a, b, h


def f_values(parts):
    a, b, c = (sum(part[i] for part in parts) for i in range(3))
    return a / (a + b + c), 1 - c / (a + b + c), 1 - c / (b + c)


def weighted_frequencies(samples):
    copies = sum((x.copies for x in samples), collections.Counter())
    return {a: c / sum(copies.values()) for a, c in copies.items()}


class Formulas:
    """Tests of one data file; its name is in the class that is made of it."""

    @classmethod
    def setUpClass(cls):
        cls.data = Data(ROOT / "examples" / cls.file)
        with tempfile.TemporaryDirectory() as folder:
            for extra, name in ((), "plain"), (("--minus-log",), "ln"):
                subprocess.run(
                    [TOOL, "run", ROOT / "examples" / cls.file, "-o", pathlib.Path(folder) / name,
                     "--distances", "all", "--fst", "pairs,global,beta", "--permutations", "0",
                     "--fst-loci", "--seed", "1", "--quiet", *extra], check=True)
            read = lambda name: subprocess.run([TOOL, "tidy", pathlib.Path(folder) / name],
                                               check=True, capture_output=True, text=True).stdout
            cls.table, cls.ln_table = cls.read(read("plain")), cls.read(read("ln"))

    @staticmethod
    def read(text):
        found = {}
        for row in csv.DictReader(io.StringIO(text), delimiter="\t"):
            key = tuple(row[c] for c in ("statistic", "population1", "population2", "locus"))
            found[key] = row["value"]
        return found

    def same(self, value, statistic, one="", other="", locus="", table=None):
        cell = (table or self.table)[(statistic, one, other, locus)]
        decimals = len(cell.partition(".")[2])
        told = "%s %s %s %s: %s, worked out %r" % (statistic, one, other, locus, cell, value)
        self.assertNotEqual(cell, "", told)
        self.assertLessEqual(abs(float(cell) - value), HALF_LAST.get(decimals, 0.5) +
                             1e-9 * abs(value), told)

    def each(self):
        for name, samples in self.data.samples.items():
            for l, sample in enumerate(samples):
                yield name, self.data.loci[l], l, sample

    def pairs(self):
        for one, other in itertools.combinations(self.data.populations, 2):
            yield one, other, list(zip(self.data.samples[one], self.data.samples[other]))

    def test_sheets_of_samples(self):
        for name, locus, l, x in self.each():
            r, told = self.data.repeats[l], (name, "", locus)
            h = x.hexp()
            self.same(h, "heterozygosity_expected", *told)
            self.same(theta(h, x.m), "theta", *told)
            self.same(-sum(p * math.log(p) for p in x.p.values()), "shannon", *told)
            self.same(x.variance(), "allele_variance", *told)
            self.same(x.variance() / r ** 2, "repeat_variance", *told)
            corrected = x.variance() / r ** 2
            self.same(corrected if corrected > 0 else 1 / (x.m + 1), "repeat_variance_corrected",
                      *told)
            self.same(min(x.p), "allele_min", *told)
            self.same(max(x.p), "allele_max", *told)
            self.same(x.n, "gene_copies", *told)
            self.same(x.m, "gene_copies_effective", *told)
            if not x.inbred:
                self.same(h, "heterozygosity_expected_rd", *told)
                self.same(x.mean(), "allele_mean_rd", *told)
                self.same(len(x.p), "allele_number_rd", *told)
                self.same(expected_smm(h, x.m), "allele_number_expected_smm", *told)
                self.same(expected_iam(h, x.m), "allele_number_expected_iam", *told)

    def test_richness(self):
        for l, locus in enumerate(self.data.loci):
            samples = {name: x[l] for name, x in self.data.samples.items()}
            k = min(x.n for x in samples.values() if x.n > 1)
            self.same(k / 2, "allelic_richness_reference", locus=locus)
            for name, x in samples.items():
                value, variance = richness(x, k)
                self.same(value, "allelic_richness", name, "", locus)
                self.same(variance, "allelic_richness_variance", name, "", locus)

    def test_summary(self):
        for name, locus, l, x in self.each():
            if name == "Total":
                continue
            told = (name, "", locus)
            self.same(x.hobs(), "heterozygosity_observed", *told)
            self.same(len(x.p), "allele_number_observed", *told)
            for statistic, value in (("repeat_min", min(x.p)), ("repeat_mean", x.mean()),
                                     ("repeat_max", max(x.p))):
                self.same((value - self.data.rests[l]) / self.data.repeats[l], statistic, *told)
            if x.inbred or len(x.p) < 2:
                self.assertEqual(self.table[("fis_population", *told)], "")
            else:
                self.same(x.hs(), "heterozygosity_nei", *told)
                self.same(1 - x.hobs() / x.hs(), "fis_population", *told)

    def test_groups(self):
        for group in sorted(set(self.data.groups.values()) - {0}):
            members = [p for p in self.data.populations if self.data.groups[p] == group]
            for l, locus in enumerate(self.data.loci):
                mean = sum(self.data.samples[p][l].hexp() for p in members) / len(members)
                self.same(mean, "group_heterozygosity_expected", "Grp %02d" % group, "", locus)

    def diversities(self):
        rows = []
        for l in range(len(self.data.loci)):
            hs = [self.data.samples[p][l].uncorrected() for p in self.data.populations]
            mean = sum(hs) / len(hs)
            rows.append((mean, self.data.samples["Total"][l].uncorrected(),
                         (len(hs) - 1 + mean) / len(hs)))
        return rows

    def test_gst(self):
        rows = self.diversities()
        for locus, (hs, ht, most) in zip(self.data.loci, rows):
            gst = 1 - hs / ht
            for statistic, value in (("gst_hs", hs), ("gst_ht", ht), ("gst_ht_max", most),
                                     ("gst", gst), ("gst_max", 1 - hs / most),
                                     ("gst_prime", gst / (1 - hs / most))):
                self.same(value, statistic, locus=locus)
            self.same(gst, "gst_global_locus", locus=locus)
        ratio = 1 - sum(hs / ht for hs, ht, _ in rows) / len(rows)
        self.same(ratio, "gst_mean_of_ratios")
        self.same(ratio / (1 - sum(hs / most for hs, _, most in rows) / len(rows)),
                  "gst_prime_mean_of_ratios")
        hs, ht, most = (sum(row[i] for row in rows) for i in range(3))
        for statistic in "gst_ratio_of_means", "gst_global":
            self.same(1 - hs / ht, statistic)
        self.same((1 - hs / ht) / (1 - hs / most), "gst_prime_global")

    def test_distances(self):
        for one, other, loci in self.pairs():
            count = len(loci)
            alleles = [x.p.keys() | y.p.keys() for x, y in loci]
            both = lambda f: [sum(f(x.p.get(a, 0), y.p.get(a, 0)) for a in names)
                              for names, (x, y) in zip(alleles, loci)]
            similar = {
                "posa": sum(both(min)) / count,
                "ksc": sum(both(lambda p, q: p * q)) / count,
                "fss": sum(len(x.p.keys() & y.p.keys()) for x, y in loci) / sum(map(len, alleles)),
                "dsg": sum(both(lambda p, q: p * q)) / math.sqrt(
                    sum(x.j() for x, _ in loci) * sum(y.j() for _, y in loci))}
            for stem, value in similar.items():
                self.same(1 - value, "distance_" + stem, one, other)
                self.same(-math.log(value), "distance_" + stem, one, other, table=self.ln_table)
            roots = both(lambda p, q: math.sqrt(p * q))
            self.same(1 - sum(roots) / count, "distance_dan", one, other)
            self.same(sum(2 * math.sqrt(2 * max(0, 1 - b)) for b in roots) / (count * math.pi),
                      "distance_cas", one, other)
            gaps = [((x.mean() - y.mean()) / r, r) for (x, y), r in zip(loci, self.data.repeats)]
            self.same(sum(abs(d) for d, _ in gaps) / count, "distance_ada", one, other)
            self.same(sum(d * d for d, _ in gaps) / count, "distance_dms", one, other)
            if not any(x.inbred or y.inbred for x, y in loci):
                self.same(sum(d * d + (x.variance() + y.variance()) / r ** 2
                              for (d, r), (x, y) in zip(gaps, loci)) / count,
                          "distance_asd", one, other)

    def test_fst_of_pairs(self):
        for one, other, loci in self.pairs():
            parts = [components(pair, weighted_frequencies(pair)) for pair in loci]
            for statistic, value in zip(("fst", "fit", "fis"), f_values(parts)):
                self.same(value, statistic + "_pairwise", one, other)
            for locus, part in zip(self.data.loci, parts):
                if sum(part) != 0:
                    self.same(part[0] / sum(part), "fst_pairwise_locus", one, other, locus)

    def test_fst_of_all(self):
        parts = []
        for l in range(len(self.data.loci)):
            samples = [self.data.samples[p][l] for p in self.data.populations]
            parts.append(components(samples, self.data.samples["Total"][l].p))
        for names, values, told in [("", f_values(parts), "")] + [
                ("_locus", f_values([part]), locus) for part, locus in zip(parts, self.data.loci)]:
            for statistic, value in zip(("fst", "fit", "fis"), values):
                self.same(value, statistic + "_global" + names, locus=told)

    def test_beta(self):
        weights, likeness = [], []
        for l in range(len(self.data.loci)):
            pool = self.data.samples["Total"][l]
            samples = [self.data.samples[p][l] for p in self.data.populations]
            total = sum(x.n for x in samples)
            w = [x.n - x.n ** 2 / total for x in samples]
            weights.append(sum(w))
            likeness.append(sum(x.n * (x.p.get(a, 0) - p) ** 2 +
                                v * x.p.get(a, 0) * (1 - x.p.get(a, 0))
                                for x, v in zip(samples, w) for a, p in pool.p.items()))
        for name in self.data.populations:
            top = sum(w * x.n / (x.n - 1) * x.uncorrected()
                      for w, x in zip(weights, self.data.samples[name]))
            self.same(1 - top / sum(likeness), "beta_population", name)
        for one, other, loci in self.pairs():
            top = 0
            for w, (x, y) in zip(weights, loci):
                top += w * sum(x.p.get(a, 0) * (1 - y.p.get(a, 0)) +
                               y.p.get(a, 0) * (1 - x.p.get(a, 0)) for a in x.p.keys() | y.p.keys())
            self.same(1 - top / (2 * sum(likeness)), "beta_pairwise", one, other)


class TwoColumns(Formulas, unittest.TestCase):
    file = "testdata.dat"


class OneColumn(Formulas, unittest.TestCase):
    file = "onecolumn.txt"


class WorkedOnThePage(unittest.TestCase):
    """The numbers that stand in the text of the page."""

    def test_hs_and_fis_beside_those_of_nei(self):
        page = " ".join((ROOT / "docs" / "results.md").read_text().split())
        alder = Data(ROOT / "examples" / "testdata.dat").samples["Alder"][0]
        for plain, hobs, size, form in ((0.5, 0.5, 10, "%.4f"),
                                        (alder.uncorrected(), alder.hobs(), 26, "%.6f")):
            here = 2 * size / (2 * size - 1) * (plain - hobs / (4 * size))
            nei = size / (size - 1) * (plain - hobs / (2 * size))
            below = size * (2 * plain - hobs) / (2 * (size - 1) * (2 * size - 1))
            self.assertAlmostEqual(nei - here, below, 12)
            for value in (here, nei, 1 - hobs / here, 1 - hobs / nei):
                self.assertIn(form % value, page)
            # Weir and Cockerham's f of one sample: b and c of their formulas without the part
            # between populations, summed over the alleles.
            b = size / (size - 1) * (plain - (2 * size - 1) / (2 * size) * hobs)
            self.assertAlmostEqual(1 - hobs / (b + hobs), 1 - hobs / nei, 12)

    def test_largest_chord_distance(self):
        self.assertAlmostEqual(2 * math.sqrt(2) / math.pi, 0.9003, 4)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
