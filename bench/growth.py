"""How the passes grow: one extent of the data or of the run is doubled at a time.

A pass is what a run with its options costs more than one without. It must not grow faster than
its output, or than the work that its method asks for, whichever is more.
"""

import dataclasses
import math
from typing import Callable

import counting
import datasets
from datasets import DataSet

ALLOWED = 1.1  # growth of instructions over that of output or work


@dataclasses.dataclass(frozen=True)
class Pass:
    name: str
    options: str  # {n}: permutations, replicates or draws
    work: Callable[[DataSet, int], float]
    repeats: bool = False  # n can be doubled
    n: int = 10


def cells(data, _n):
    return data.slots


def pair_sums(data, n):
    """Sums over the alleles of each pair at each locus."""
    return data.pairs * data.pool_alleles * n


def pair_deals(data, n):
    """Gene copies dealt out, and sums over what is dealt."""
    return (data.pair_slots + data.pairs * data.pool_alleles) * n


def deals(data, n):
    return (data.slots + data.populations * data.pool_alleles) * n


def places(copies):
    """Halvings that find the place of each copy among those that are left, their order kept."""
    return copies * math.log2(copies)


def pair_allele_deals(data, n):
    """Every pair has its own pool of gene copies at each locus; populations are of one size."""
    of_pair = 2 * data.slots / data.populations / data.loci
    return data.pairs * (data.loci * places(of_pair) + data.pool_alleles) * n


def allele_deals(data, n):
    """All populations share one pool at each locus."""
    return (data.loci * places(data.slots / data.loci) + data.populations * data.pool_alleles) * n


def look_ups(data, n):
    """What two genotypes of a locus add is computed once, and looked up for each pair."""
    return data.genotype_pairs + data.individual_pairs * data.loci * n


PASSES = [
    Pass("reading and default sheets", "", cells),
    Pass("exports", "-format msvar arlequin migrate", cells),
    Pass("population distances", "-dist p POSA CAS DMS n={n}", pair_sums, True),
    Pass("individual distances", "-dist i POSA CAS DMS n={n}",
         look_ups, True, 3),
    Pass("global Fst", "-fst g n=0", lambda d, _: d.populations * d.pool_alleles),
    Pass("Fst of pairs", "-fst p n=0", pair_sums),
    Pass("tests of pairs, genotypes", "-fst p n={n}", pair_deals, True),
    Pass("tests of pairs, alleles", "-fst p HW n={n}", pair_allele_deals, True),
    Pass("global test, genotypes", "-fst g n={n}", deals, True, 50),
    Pass("global test, alleles", "-fst g HW n={n}", allele_deals, True, 50),
    Pass("heterozygosity range", "-hetrange n={n}", lambda d, n: d.slots * n, True),
]

# What is doubled: populations, individuals of each, loci, alleles. Each is wide where it is
# doubled, so that what grows too fast is not lost among the rest.
EXTENTS = [
    ("populations", (80, 2, 3, 4), (160, 2, 3, 4), PASSES),
    ("populations, many", (500, 2, 3, 4), (1000, 2, 3, 4), PASSES[:2]),
    ("individuals", (3, 40, 3, 4), (3, 80, 3, 4), PASSES),
    ("loci", (3, 6, 60, 4), (3, 6, 120, 4), PASSES),
    ("alleles", (3, 100, 3, 30), (3, 100, 3, 60), PASSES),
]
PLAIN = (4, 10, 5, 6)  # where permutations, replicates or draws are doubled


def shaped(populations, individuals, loci, alleles):
    return datasets.made(populations, individuals, loci, alleles, alleles)


@dataclasses.dataclass(frozen=True)
class Growth:
    doubled: str
    name: str
    instructions: float  # factor of what the pass costs
    output: float  # factor of the bytes it writes
    work: float  # factor of what the method asks for

    @property
    def too_fast(self):
        return self.instructions > ALLOWED * max(self.output, self.work)


class Counter:
    """Counts runs, each once."""

    def __init__(self, kva):
        self.kva = kva
        self.known = {}

    def run(self, shape, options):
        key = (shape, options)
        if key not in self.known:
            self.known[key] = counting.counted(self.kva, shaped(*shape), options)
        return self.known[key]

    def cost(self, shape, step, n):
        """Instructions and bytes of a pass alone."""
        whole = self.run(shape, step.options.format(n=n))
        rest = self.run(shape, "") if step.options else (0, 0)
        return whole[0] - rest[0], whole[1] - rest[1]


def grown(counter, step, doubled, small, large):
    """small, large: shape of the data and n."""
    before, after = counter.cost(small[0], step, small[1]), counter.cost(large[0], step, large[1])
    work = step.work(shaped(*large[0]), large[1]) / step.work(shaped(*small[0]), small[1])
    output = after[1] / before[1] if before[1] > 0 else 1.0
    return Growth(doubled, step.name, after[0] / before[0], output, work)


def all_growths(kva):
    counter = Counter(kva)
    for doubled, small, large, steps in EXTENTS:
        for step in steps:
            yield grown(counter, step, doubled, (small, step.n), (large, step.n))
    for step in PASSES:
        if step.repeats:
            yield grown(counter, step, "repeats", (PLAIN, step.n), (PLAIN, 2 * step.n))
