#!/usr/bin/env python3
"""The p-values of permutation tests of pairs, against other ways to them. Takes minutes.

Usage: pvalues.py null KVATOOL [SETS]     p of data without structure is uniform (Kolmogorov-Smirnov)
       pvalues.py compare KVATOOL KVA     p of kvatool, of kva while the clock goes on, of plain shuffles

The plain shuffles are written down here anew: all individuals of two populations are dealt out, and
theta of Weir and Cockerham (1984), summed over alleles and loci, is computed from their definitions.
"""

import glob
import json
import math
import os
import pathlib
import random
import subprocess
import sys
import tempfile

PERMUTATIONS = 100000
PLAIN = 20000
SIZES = (10, 14)  # individuals of the two populations
LOCI = 4


# --- Data ----------------------------------------------------------------------------------

def individuals(draw, count, apart):
    """Genotypes at all loci; `apart` moves the allele numbers of a share of the copies."""
    def allele():
        return 100 + 2 * (draw.randrange(5) + (2 if draw.random() < apart else 0))
    return [[(allele(), allele()) for _ in range(LOCI)] for _ in range(count)]


def data_text(populations):
    lines = ["2\t\t\t" + "\t".join("2\t" for _ in range(LOCI)),
             "\t\t\t" + "\t".join("0\t" for _ in range(LOCI)),
             "\t\t\t" + "\t".join(f"L{l}\tL{l}b" for l in range(LOCI))]
    for number, population in enumerate(populations):
        for genotypes in population:
            lines.append(f"P{number}\td\t0\t" + "\t".join(f"{a}\t{b}" for a, b in genotypes))
    return "\n".join(lines) + "\n"


# --- Plain shuffles ------------------------------------------------------------------------

def components(first, second, locus):
    """Sums over alleles of a and of a + b + c, formulas 2 to 4 of Weir and Cockerham (1984)."""
    samples = [[ind[locus] for ind in first], [ind[locus] for ind in second]]
    n = [len(sample) for sample in samples]
    r, total = 2, sum(n)
    mean_n = total / r
    nc = (total - sum(k * k for k in n) / total) / (r - 1)
    a_sum = all_sum = 0.0
    for allele in {x for sample in samples for genotype in sample for x in genotype}:
        p = [sum(g.count(allele) for g in sample) / (2 * len(sample)) for sample in samples]
        h = [sum(g.count(allele) == 1 for g in sample) / len(sample) for sample in samples]
        mean_p = sum(k * q for k, q in zip(n, p)) / total
        s2 = sum(k * (q - mean_p) ** 2 for k, q in zip(n, p)) / ((r - 1) * mean_n)
        mean_h = sum(k * q for k, q in zip(n, h)) / total
        spread = mean_p * (1 - mean_p) - (r - 1) / r * s2
        a = mean_n / nc * (s2 - (spread - mean_h / 4) / (mean_n - 1))
        b = mean_n / (mean_n - 1) * (spread - (2 * mean_n - 1) / (4 * mean_n) * mean_h)
        a_sum += a
        all_sum += a + b + mean_h / 2
    return a_sum, all_sum


def theta(first, second):
    parts = [components(first, second, locus) for locus in range(LOCI)]
    return sum(a for a, _ in parts) / sum(whole for _, whole in parts)


def plain_p(first, second, draw):
    observed = theta(first, second)
    pool, hits = first + second, 0
    for _ in range(PLAIN):
        draw.shuffle(pool)
        hits += theta(pool[:len(first)], pool[len(first):]) >= observed - 1e-12
    return hits / PLAIN


# --- The programs --------------------------------------------------------------------------

def tool_p(tool, folder, seed, permutations):
    subprocess.run([tool, "run", "d.txt", "-o", "r", "--force", "-q", "--seed", str(seed), "--fst",
                    "pairs", "--permutations", str(permutations)], cwd=folder, check=True)
    record = json.loads((folder / "r" / "run.json").read_text())
    return next(test for test in record["tests"] if test["statistic"] == "fst_pairwise")


def kva_p(kva, folder):
    """With a clock that goes on by a second each time it is asked."""
    library = next(file for pattern in ("/usr/lib/*/faketime", "/usr/lib*/faketime")
                   for file in glob.glob(pattern + "/libfaketime.so.1"))
    subprocess.run([kva, "-i", "d.txt", "-fst", "p", f"n={PERMUTATIONS}"], cwd=folder, check=False,
                   stdout=subprocess.DEVNULL,
                   env=dict(os.environ, LD_PRELOAD=library, FAKETIME="@2024-01-01 00:00:00 i1", TZ="UTC"))
    sheet = (folder / "d.txt_KVAresult00" / "F-Statistic" / "FST_WC84-pValue.xls").read_text()
    rows = [row.split("\t") for row in sheet.splitlines() if row.startswith("P0\t")]
    return float(rows[-1][2])


def compare(tool, kva):
    print("apart    kvatool   error       kva     plain   largest distance in errors")
    worst = 0.0
    for number, apart in enumerate((0.0, 0.1, 0.2, 0.3)):
        draw = random.Random(number + 20)
        first, second = individuals(draw, SIZES[0], 0.0), individuals(draw, SIZES[1], apart)
        with tempfile.TemporaryDirectory() as place:
            folder = pathlib.Path(place)
            (folder / "d.txt").write_text(data_text([first, second]))
            test = tool_p(tool, folder, 1, PERMUTATIONS)
            p, error = test["p"], test["p_error"]
            others = {kva_p(kva, folder): PERMUTATIONS, plain_p(first, second, draw): PLAIN}
        distance = max(abs(other - p) / math.sqrt(error ** 2 + p * (1 - p) / n)
                       for other, n in others.items())
        worst = max(worst, distance)
        print("%5.1f %10.5f %8.5f %9.5f %9.5f   %.2f" % (apart, p, error, *others, distance))
    return 0 if worst < 4 else 1


def null(tool, sets):
    p = []
    for number in range(sets):
        draw = random.Random(number)
        with tempfile.TemporaryDirectory() as place:
            folder = pathlib.Path(place)
            (folder / "d.txt").write_text(data_text([individuals(draw, size, 0.0) for size in SIZES]))
            p.append(tool_p(tool, folder, number, 999)["p"])
    p.sort()
    distance = max(max((k + 1) / sets - value, value - k / sets) for k, value in enumerate(p))
    # Kolmogorov's limit distribution.
    x = distance * (math.sqrt(sets) + 0.12 + 0.11 / math.sqrt(sets))
    chance = min(1.0, 2 * sum((-1) ** (k - 1) * math.exp(-2 * k * k * x * x) for k in range(1, 101)))
    print("%d sets: D = %.4f, chance of a larger one %.3f, share of p <= 0.05: %.4f"
          % (sets, distance, chance, sum(value <= 0.05 for value in p) / sets))
    return 0 if chance > 0.001 else 1


if __name__ == "__main__":
    if len(sys.argv) > 2 and sys.argv[1] == "null":
        sys.exit(null(pathlib.Path(sys.argv[2]).resolve(), int(sys.argv[3]) if len(sys.argv) > 3 else 1000))
    if len(sys.argv) == 4 and sys.argv[1] == "compare":
        sys.exit(compare(*(pathlib.Path(word).resolve() for word in sys.argv[2:4])))
    sys.exit(__doc__)
