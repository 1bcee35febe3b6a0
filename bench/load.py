#!/usr/bin/env python3
"""Large data sets: time, memory and output of runs on them.

Usage: load.py [--kva PROGRAM] [--folder FOLDER] [--list] [name ...]

The data are made in FOLDER (default: a temporary one), a file of up to 160 MB at a time, and
removed with what a run wrote as soon as it is measured. The program is that of the preset `release`
unless it is given. Prints a row for each load: bytes of the data and of the output, wall time, the
largest resident memory, and that per genotype.
"""

import argparse
import dataclasses
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

RELEASE = pathlib.Path(__file__).resolve().parent.parent / "build/release/kva"
FILE = "data.txt"
FINE = 1  # status of a run that took place


@dataclasses.dataclass(frozen=True)
class Load:
    name: str
    populations: int
    individuals: int  # of each population
    loci: int
    options: str
    alleles: int = 12

    @property
    def shape(self):
        return self.populations, self.individuals, self.loci, self.alleles

    @property
    def genotypes(self):
        return self.populations * self.individuals * self.loci


LOADS = [
    Load("default sheets", 100, 1000, 200, ""),
    Load("population distances", 100, 1000, 200, "-dist population POSA CAS DMS"),
    Load("Fst of pairs", 100, 1000, 200, "-fst pairwise n=0"),
    Load("2000 populations", 2000, 10, 20, "-dist population POSA CAS DMS"),
    Load("20000 individuals", 20, 1000, 20, "-dist individual POSA"),
    Load("20000 individuals, bootstrap", 20, 1000, 20,
         "-dist individual POSA n=1000"),
    Load("5000 loci", 4, 50, 5000, ""),
]


def genotype_cells(draw, alleles):
    """Cells of some genotypes of a locus in one population, one in fifty of them missing."""
    known = [str(100 + 2 * draw.randrange(alleles)) for _ in range(6)]
    cells = ["%s\t%s" % (draw.choice(known), draw.choice(known)) for _ in range(49)]
    return cells + ["\t"]


def write_data(file, shape):
    """Streams a data file to the disk, population by population."""
    populations, individuals, loci, alleles = shape
    draw = random.Random(30)
    with open(file, "w", encoding="ascii") as out:
        for head in ("2\t\t" + "\t2\t" * loci, "\t\t" + "\t100\t" * loci,
                     "\t\t" + "".join("\tL%d\tL%d_2" % (i, i) for i in range(loci))):
            out.write(head + "\n")
        for population in range(populations):
            label = "P%04d\td\t%d" % (population, 1 + population // 10)
            columns = [draw.choices(genotype_cells(draw, alleles), k=individuals)
                       for _ in range(loci)]
            for row in zip(*columns):
                out.write(label + "\t" + "\t".join(row) + "\n")


def written(folder):
    files = pathlib.Path(folder).glob("*_KVAresult*/**/*")
    return sum(file.stat().st_size for file in files if file.is_file())


def measured(kva, folder, load):
    """Seconds, peak memory in bytes and what the console says of a refused pass."""
    command = [str(kva), "-i", FILE] + load.options.split()
    console = pathlib.Path(folder, "console")
    with open(console, "wb") as out:
        begin = time.perf_counter()
        process = subprocess.Popen(command, cwd=folder, stdout=out)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != FINE:
        sys.exit("%s: status %d" % (load.name, process.returncode))
    text = console.read_text(encoding="ascii", errors="replace")
    refused = [line for line in text.split("\n") if "are not computed" in line]
    return seconds, usage.ru_maxrss * 1024, refused


def megabytes(size):
    return "%.1f" % (size / 1e6)


def play(kva, folder, load, made):
    """Measures one load; `made` is the shape of the data that lie there."""
    data = pathlib.Path(folder, FILE)
    if made != load.shape:
        write_data(data, load.shape)
    seconds, peak, refused = measured(kva, folder, load)
    print("| %s | %d x %d | %d | %s | %s | %s | %.1f | %s | %.1f |" % (
        load.name, load.populations, load.individuals, load.loci, load.options or "none",
        megabytes(data.stat().st_size), megabytes(written(folder)), seconds, megabytes(peak),
        peak / load.genotypes), flush=True)
    print("\n".join(refused), end="\n" if refused else "", flush=True)
    for result in pathlib.Path(folder).glob("*_KVAresult*"):
        shutil.rmtree(result)
    return load.shape


def main():
    arguments = argparse.ArgumentParser(description="Runs on large data; see the file's head.")
    arguments.add_argument("--kva", type=pathlib.Path, default=RELEASE, help="the built program")
    arguments.add_argument("--folder", help="for the data and the results; default: a temporary one")
    arguments.add_argument("--list", action="store_true", help="the names of the loads")
    arguments.add_argument("name", nargs="*", help="loads, by the beginning of their names")
    given = arguments.parse_args()
    chosen = [load for load in LOADS
              if not given.name or load.name.startswith(tuple(given.name))]
    if given.list:
        print("\n".join(load.name for load in chosen))
        return
    kva = given.kva.resolve()
    print("| Load | Populations x individuals | Loci | Options | Data, MB | Output, MB | Seconds "
          "| Peak memory, MB | Bytes per genotype |\n|---|---|---:|---|---:|---:|---:|---:|---:|")
    with tempfile.TemporaryDirectory(dir=given.folder) as folder:
        made = None
        for load in chosen:
            made = play(kva, folder, load, made)


if __name__ == "__main__":
    main()
