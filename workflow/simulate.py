#!/usr/bin/env python3
"""Simulates data files of populations of an island model.

At each locus the allele frequencies of the ancestors are drawn from a flat Dirichlet distribution over
a ladder of alleles, those of a population from a Dirichlet distribution around them with the parameters
p (1 - F) / F, so that F is the expected Fst (Balding and Nichols 1995; in an island model of many demes
and N m migrants a generation F = 1 / (1 + 4 N m)). Genotypes are drawn at random from the frequencies.
File k depends on the seed and on k alone.

    simulate.py FOLDER --files 10000 --seed 1
    FOLDER/000/000000.txt ... FOLDER/009/009999.txt: a thousand files a folder
"""

import argparse
import pathlib
import random

FIRST_ALLELE = 100  # base pairs
REPEAT = 2
FILES_OF_A_FOLDER = 1000


def dirichlet(draw, parameters):
    """A draw from a Dirichlet distribution; a parameter of 0 gives 0."""
    drawn = [draw.gammavariate(a, 1.0) if a > 0 else 0.0 for a in parameters]
    total = sum(drawn)
    # Tiny parameters may give nothing but zeros: then one allele has it all.
    return [x / total for x in drawn] if total > 0 else [
        float(k == parameters.index(max(parameters))) for k in range(len(drawn))]


def sample(draw, words):
    """The genotypes of a data set: [population][individual][locus][copy], alleles in base pairs."""
    alleles = [FIRST_ALLELE + REPEAT * k for k in range(words.alleles)]
    data = [[[] for _ in range(words.individuals)] for _ in range(words.populations)]
    for _ in range(words.loci):
        ancestors = dirichlet(draw, [1.0] * words.alleles)
        for population in data:
            around = [p * (1 - words.fst) / words.fst for p in ancestors]
            copies = draw.choices(alleles, dirichlet(draw, around), k=2 * words.individuals)
            for k, individual in enumerate(population):
                individual.append(copies[2 * k:2 * k + 2])
    return data


def data_text(data, loci):
    """The data file: two columns a locus, three header rows."""
    names = [f"Loc{k + 1}\tLoc{k + 1}_2" for k in range(loci)]
    lines = ["2\t\t\t" + "\t".join([f"{REPEAT}\t"] * loci), "\t\t\t" + "\t".join(["0\t"] * loci),
             "\t\t\t" + "\t".join(names)]
    for p, population in enumerate(data):
        for individual in population:
            cells = [str(allele) for copies in individual for allele in copies]
            lines.append(f"Pop{p + 1}\td\t1\t" + "\t".join(cells))
    return "\n".join(lines) + "\n"


def simulate(words):
    for number in range(words.first, words.first + words.files):
        draw = random.Random(f"{words.seed} {number}")
        folder = pathlib.Path(words.folder, f"{number // FILES_OF_A_FOLDER:03d}")
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{number:06d}.txt").write_text(data_text(sample(draw, words), words.loci))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("folder")
    parser.add_argument("--files", type=int, default=100)
    parser.add_argument("--first", type=int, default=0, help="number of the first file")
    parser.add_argument("--populations", type=int, default=4)
    parser.add_argument("--individuals", type=int, default=10, help="of each population")
    parser.add_argument("--loci", type=int, default=5)
    parser.add_argument("--alleles", type=int, default=10, help="of each locus, at most")
    parser.add_argument("--fst", type=float, default=0.1, help="above 0, below 1")
    parser.add_argument("--seed", type=int, default=1)
    words = parser.parse_args()
    if not 0 < words.fst < 1:
        parser.error("--fst lies above 0 and below 1")
    simulate(words)


if __name__ == "__main__":
    main()
