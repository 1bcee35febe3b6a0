"""The data sets of the benchmarks: random ones from fixed seeds, and the cats of Nancy.

A data set knows its text and the counts from which the units of a measurement follow. Only
random() of a seeded generator is drawn on, so that the files are the same wherever this runs.
"""

import functools
import math
import pathlib
import random
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
CATS = ROOT / "tests/fstat/nancycats_loci.h"
MISSING = 0.01  # share of the genotypes


class DataSet:
    """A data file: `rows` of (population, group, genotypes), a genotype being two alleles or None."""

    def __init__(self, rows, loci):
        self.loci = loci
        self.text = text_of(rows, loci)
        self.sizes = {}
        for name, _, _ in rows:
            self.sizes[name] = self.sizes.get(name, 0) + 1
        self.populations = len(self.sizes)
        self.individuals = len(rows)
        self.pairs = pairs(self.populations)
        self.individual_pairs = pairs(self.individuals)
        self.slots = 2 * self.individuals * loci
        self.pair_slots = self.slots * (self.populations - 1)  # each population meets all others
        self.pool_alleles = sum(len(alleles_at(rows, locus)) for locus in range(loci))
        self.genotype_pairs = sum(genotypes_at(rows, locus) ** 2 for locus in range(loci))


def pairs(n):
    return n * (n - 1) // 2


def alleles_at(rows, locus):
    genotypes = [genotypes[locus] for _, _, genotypes in rows]
    return {allele for genotype in genotypes if genotype for allele in genotype}


def genotypes_at(rows, locus):
    """How many different genotypes there are, a missing one among them."""
    return len({tuple(sorted(genotypes[locus] or ())) for _, _, genotypes in rows})


def text_of(rows, loci):
    heads = [
        ["2", "", ""] + ["2", ""] * loci,
        ["", "", ""] + ["100", ""] * loci,
        ["", "", ""] + [name for i in range(loci) for name in ("L%d" % i, "L%d_2" % i)],
    ]
    cells = [[name, "d", group] + [str(allele) for genotype in genotypes
                                   for allele in genotype or ("", "")]
             for name, group, genotypes in rows]
    return "".join("\t".join(line) + "\n" for line in heads + cells)


# Random data


def chosen(draw, sums):
    """An index with the chances whose running sums are given."""
    value = draw() * sums[-1]
    return next(i for i, top in enumerate(sums) if value < top)


def running_sums(weights):
    return [math.fsum(weights[:i + 1]) for i in range(len(weights))]


def exponentials(draw, n):
    return [-math.log(1.0 - draw()) for _ in range(n)]


def population_sums(draw, populations, pool):
    """Running sums of the allele frequencies of each population, drawn about those of the pool."""
    return [running_sums([p * (0.2 + e) for p, e in zip(pool, exponentials(draw, len(pool)))])
            for _ in range(populations)]


@functools.lru_cache(maxsize=None)
def made(populations, individuals, loci, least=8, most=12):
    """Populations of equal size, two to a group, with `least` to `most` alleles at a locus."""
    draw = random.Random(20).random
    frequencies = []
    for _ in range(loci):
        alleles = least + int(draw() * (most - least + 1))
        pool = [0.1 + e for e in exponentials(draw, alleles)]
        frequencies.append(population_sums(draw, populations, pool))
    rows = []
    for population in range(populations):
        for _ in range(individuals):
            genotypes = [genotype(draw, locus[population]) for locus in frequencies]
            rows.append(("P%03d" % population, str(1 + population // 2), genotypes))
    return DataSet(rows, loci)


def genotype(draw, sums):
    if draw() < MISSING:
        return None
    return [100 + 2 * chosen(draw, sums) for _ in range(2)]


# Real data


@functools.lru_cache(maxsize=None)
def cats():
    """The nine loci of the 237 cats of Nancy, as the tests hold them."""
    held = CATS.read_text(encoding="ascii")
    table = "".join(re.findall('"([^"]*)"', held[held.index("kNancyNine ="):]))
    rows = []
    for line in table.replace("\\n", "\n").split("\n"):
        name, *words = line.split() or [""]
        for word in words:
            alleles = [int(word[i:i + 3]) for i in range(0, len(word), 3)]
            genotypes = [pair if pair[0] else None
                         for pair in zip(alleles[::2], alleles[1::2])]
            rows.append((name, "0", genotypes))
    return DataSet(rows, len(rows[0][2]))
