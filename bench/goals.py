"""The rows of the report: what is measured on which data, and the goal of each.

A row's figure is what the second size costs more than the first, over the units between them, so
that all that is done once in a run falls out. A row with words to add counts what a run with them
costs more than one without. A row of neither counts whole runs in millions of instructions.
"""

import dataclasses
from typing import Callable, Optional

import datasets
from datasets import DataSet

NINE = "POSA FSS ADA KSC DMS ASD CAS DAN DSG"


@dataclasses.dataclass(frozen=True)
class Row:
    name: str
    data: Callable[[], DataSet]
    options: str  # of the run; {n} is the size
    sizes: tuple  # two values of n, or none: the whole run
    unit: str
    units: Callable[[DataSet], float]  # units per n
    goal: Optional[float] = None  # no goal: the figure is only held to the stored one
    added: str = ""  # words of the second run's options, where there are no sizes
    wall: bool = False  # nanoseconds of wall time instead of instructions


def of(*shape):
    """A random data set, made when it is needed: populations, individuals of each, loci."""
    return lambda: datasets.made(*shape)


BREEDS = of(15, 47, 30)  # the shape of the cattle breeds of microbov
LARGE = of(100, 100, 100)
SMALL = of(10, 3, 4)

PAIR_SLOT = "slot of a pair"  # one gene copy's place at a locus, in a pair, in a permutation
SLOT = "slot"  # one gene copy's place at a locus, in a permutation
POP_TERM = "pair x locus x allele x measure"
IND_TERM = "pair x drawn locus"
CELL = "cell, with its value"  # a pair's sum over the loci is shared by two cells
ENTRY = "drawn entry"
RUN = "million in a run"


def pair_slots(data):
    return data.pair_slots


def slots(data):
    return data.slots


def population_terms(data):
    return 9 * data.pairs * data.pool_alleles


def individual_terms(data):
    return data.individual_pairs * data.loci


def matrix_cells(data):
    return 2 * data.individuals**2  # of two replicates


def million(_):
    return 1e6


GOALS = [
    Row("pairs, genotypes", BREEDS, "-fst p n={n}", (50, 100), PAIR_SLOT, pair_slots, 8),
    Row("pairs, genotypes, cats", datasets.cats, "-fst p n={n}", (50, 150), PAIR_SLOT,
        pair_slots, 12),
    Row("pairs, alleles", BREEDS, "-fst p HW n={n}", (5, 20), PAIR_SLOT, pair_slots, 80),
    Row("global, genotypes", BREEDS, "-fst g n={n}", (50, 200), SLOT, slots, 16),
    Row("global, genotypes, large", LARGE, "-fst g n={n}", (5, 15), SLOT, slots, 10),
    Row("global, genotypes, cats", datasets.cats, "-fst g n={n}", (500, 1500), SLOT, slots, 20),
    Row("global, alleles", BREEDS, "-fst g HW n={n}", (20, 100), SLOT, slots, 150),
    Row("global, alleles, large", LARGE, "-fst g HW n={n}", (5, 25), SLOT, slots, 20, wall=True),
    Row("pairs, genotypes, small", SMALL, "-fst p n={n}", (50, 150), PAIR_SLOT, pair_slots, 35),
    Row("pairs, alleles, small", SMALL, "-fst p HW n={n}", (50, 150), PAIR_SLOT, pair_slots, 100),
    Row("global, genotypes, small", SMALL, "-fst g n={n}", (1000, 3000), SLOT, slots, 50),
    Row("population distances", BREEDS, "-dist p %s n={n}" % NINE, (5, 25), POP_TERM,
        population_terms, 2.5),
    Row("individual distances", BREEDS, "-dist i %s n={n}" % NINE, (2, 3), IND_TERM,
        individual_terms, 40),
    Row("matrix cell", BREEDS, "-dist i n=2 CAS", (), CELL, matrix_cells, 60, added=" POSA"),
    Row("heterozygosity range", BREEDS, "-hetrange n={n}", (10, 30), ENTRY, slots, 45),
    Row("heterozygosity range, small samples", of(15, 9, 30), "-hetrange n={n}", (10, 50), ENTRY,
        slots, 60),
    Row("all-pairs Fst, whole run", BREEDS, "-fst p n=0", (), RUN, million, 40),
]

# Small enough for every change: held to the stored figures.
FEW = of(6, 20, 10)

SHORT = [
    Row("pairs, genotypes", FEW, "-fst p n={n}", (50, 100), PAIR_SLOT, pair_slots),
    Row("pairs, alleles", FEW, "-fst p HW n={n}", (20, 60), PAIR_SLOT, pair_slots),
    Row("global, genotypes", FEW, "-fst g n={n}", (100, 300), SLOT, slots),
    Row("global, alleles", FEW, "-fst g HW n={n}", (100, 300), SLOT, slots),
    Row("pairs, genotypes, small", SMALL, "-fst p n={n}", (50, 150), PAIR_SLOT, pair_slots),
    Row("pairs, alleles, small", SMALL, "-fst p HW n={n}", (50, 150), PAIR_SLOT, pair_slots),
    Row("global, genotypes, small", SMALL, "-fst g n={n}", (1000, 2000), SLOT, slots),
    Row("population distances", FEW, "-dist p %s n={n}" % NINE, (10, 50), POP_TERM,
        population_terms),
    Row("individual distances", of(5, 8, 10), "-dist i %s n={n}" % NINE, (2, 10), IND_TERM,
        individual_terms),
    Row("heterozygosity range", FEW, "-hetrange n={n}", (10, 50), ENTRY, slots),
    Row("all-pairs Fst, whole run", FEW, "-fst p n=0", (), RUN, million),
    Row("exports, whole run", FEW, "-format msvar arlequin migrate", (), RUN, million),
]
