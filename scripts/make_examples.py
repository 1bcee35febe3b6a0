#!/usr/bin/env python3
"""Makes the two data sets of examples/.

Usage: make_examples.py [folder]     (default: examples/ of this project)

Each locus is a coalescent of gene copies on a tree of populations: the copies of a population
find common ancestors among themselves, populations of one group split from one ancestor, groups
from one root. Mutations fall on the branches and add or take one repeat each (stepwise
mutation). Only random() of a generator with a fixed seed is drawn on, so the files come out the
same, byte for byte, wherever this runs.
"""

import math
import pathlib
import random
import sys

MUTATION_RATE = 2e-3  # per gene copy and generation
GROUP_SPLIT = 150  # generations ago: the populations of a group were one
ROOT_SPLIT = 600  # generations ago: the groups were one
ROOT_SIZE = 3000  # gene copies in the root population
ROOT_REPEATS = 20


class Draws:
    """Random numbers, all made from random() alone."""

    def __init__(self, seed):
        self.random = random.Random(seed).random

    def chance(self, probability):
        return self.random() < probability

    def index(self, count):
        return int(self.random() * count)

    def exponential(self, mean):
        return -mean * math.log(1.0 - self.random())

    def step(self):
        return 1 if self.chance(0.5) else -1

    def poisson(self, mean):
        count, passed = 0, self.exponential(1.0)
        while passed < mean:
            count, passed = count + 1, passed + self.exponential(1.0)
        return count


class Copy:
    """A gene copy of the tree: when it lived, its ancestor, its repeats once they are known."""

    def __init__(self, time):
        self.time = time
        self.ancestor = None
        self.repeats = None


def coalesce(draws, copies, size, start, end):
    """Joins copies, in a population of `size` gene copies, from time `start` back to `end`."""
    time = start
    while len(copies) > 1:
        pairs = len(copies) * (len(copies) - 1) / 2
        time += draws.exponential(size / pairs)
        if time > end:
            break
        ancestor = Copy(time)
        for _ in range(2):
            copies.pop(draws.index(len(copies))).ancestor = ancestor
        copies.append(ancestor)
    return copies


def repeats_of(draws, copy):
    if copy.repeats is None:
        if copy.ancestor is None:
            copy.repeats = ROOT_REPEATS
        else:
            repeats = repeats_of(draws, copy.ancestor)
            branch = copy.ancestor.time - copy.time
            for _ in range(draws.poisson(branch * MUTATION_RATE)):
                repeats = max(repeats + draws.step(), 2)
            copy.repeats = repeats
    return copy.repeats


def simulate_locus(draws, populations):
    """The repeat numbers of a locus: a list for each population, a number for each gene copy."""
    samples = [[Copy(0.0) for _ in range(2 * p["individuals"])] for p in populations]
    groups = {}
    for population, sample in zip(populations, samples):
        left = coalesce(draws, list(sample), population["size"], 0.0, GROUP_SPLIT)
        groups.setdefault(population["group"], []).extend(left)
    roots = []
    for copies in groups.values():
        roots += coalesce(draws, copies, ROOT_SIZE / 2, GROUP_SPLIT, ROOT_SPLIT)
    coalesce(draws, roots, ROOT_SIZE, ROOT_SPLIT, math.inf)
    return [[repeats_of(draws, copy) for copy in sample] for sample in samples]


def genotypes(draws, populations, locus, missing):
    """Allele lengths of a locus: for each population its individuals' pairs, None for missing."""
    result = []
    for population, sample in zip(populations, simulate_locus(draws, populations)):
        pairs = []
        for first, second in zip(sample[::2], sample[1::2]):
            if draws.chance(population["inbreeding"]):
                second = first
            pair = [locus["rest"] + locus["repeat"] * r for r in sorted((first, second))]
            if draws.chance(missing):
                pair = [pair[0], None] if draws.chance(0.1) else [None, None]
            pairs.append(pair)
        result.append(pairs)
    return result


def cell(allele):
    return "" if allele is None else str(allele)


def header(columns, loci):
    """The three header rows: format and repeat lengths, rest lengths, names."""
    behind = [""] * (columns - 1)
    repeats, rests, names = [str(columns), "", ""], ["", "", ""], ["", "", ""]
    for locus in loci:
        repeats += [str(locus["repeat"])] + behind
        rests += [str(locus["rest"])] + behind
        names += [locus["name"], locus["name"] + "_2"][:columns]
    return [repeats, rests, names]


def rows(columns, populations, table):
    """One row an individual with two columns a locus, two rows with one. table: by locus."""
    for p, population in enumerate(populations):
        kind = "h" if population["inbred"] else "d"
        head = [population["name"], kind, str(population["group"])]
        for i in range(population["individuals"]):
            pairs = [locus[p][i] for locus in table]
            if columns == 2:
                yield head + [cell(allele) for pair in pairs for allele in pair]
            else:
                for side in range(2):
                    yield head + [cell(pair[side]) for pair in pairs]


def write(file, columns, loci, populations, table):
    lines = header(columns, loci) + list(rows(columns, populations, table))
    text = "".join("\t".join(cells) + "\n" for cells in lines)
    file.write_bytes(text.encode("ascii"))


def population(name, group, individuals, size, inbreeding=0.0):
    return {
        "name": name,
        "group": group,
        "individuals": individuals,
        "size": size,
        "inbred": inbreeding > 0,
        "inbreeding": inbreeding,
    }


def locus(name, repeat, rest):
    return {"name": name, "repeat": repeat, "rest": rest}


def make_two_columns(file):
    draws = Draws(20240102)
    populations = [
        population("Alder", 1, 26, 800),
        population("Birch", 1, 24, 500),
        population("Cedar", 1, 22, 200, inbreeding=0.7),
        population("Dogwood", 2, 28, 1000),
        population("Elm", 2, 25, 600),
        population("Fir", 2, 25, 300),
        population("Gorse", 3, 27, 900),
        population("Hazel", 3, 23, 150, inbreeding=0.8),
    ]
    loci = [
        locus(name, 2 if name.startswith("Di") else 4, rest)
        for name, rest in [
            ("Di01", 61), ("Di02", 88), ("Di03", 104), ("Di04", 73), ("Di05", 142), ("Di06", 95),
            ("Tet01", 120), ("Tet02", 84), ("Tet03", 110), ("Tet04", 67),
        ]
    ]
    table = [genotypes(draws, populations, l, missing=0.03) for l in loci]
    # What a report of suspicious data has to find: a misread length and a far outlier.
    table[4][3][6] = [table[4][3][6][0], table[4][3][6][0] + 1]
    table[7][6][11] = [84 + 4 * 20, 84 + 4 * 45]
    write(file, 2, loci, populations, table)


def make_one_column(file):
    draws = Draws(20240103)
    populations = [
        population("North", 1, 15, 500),
        population("East", 1, 12, 300),
        population("South", 2, 16, 700),
        population("West", 0, 10, 200),
    ]
    loci = [
        locus("Ms%d" % (i + 1), repeat, rest)
        for i, (repeat, rest) in enumerate(
            [(2, 70), (2, 96), (3, 105), (4, 81), (4, 132), (2, 118)]
        )
    ]
    table = [genotypes(draws, populations, l, missing=0.03) for l in loci]
    write(file, 1, loci, populations, table)


def main():
    default = pathlib.Path(__file__).resolve().parent.parent / "examples"
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    folder.mkdir(parents=True, exist_ok=True)
    make_two_columns(folder / "testdata.dat")
    make_one_column(folder / "onecolumn.txt")


if __name__ == "__main__":
    main()
