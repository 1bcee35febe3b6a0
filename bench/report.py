#!/usr/bin/env python3
"""What the program costs: instructions per unit beside the goals, and how each pass grows.

Usage: report.py [--kva PROGRAM] [name ...]     the table of goals (all rows: about 3 minutes)
       report.py [--kva PROGRAM] --growth       the table of growth
       report.py [--kva PROGRAM] --all          both
       report.py [--kva PROGRAM] --short        small data, held to figures.ini; under a minute
       report.py [--kva PROGRAM] --short --renew     writes figures.ini anew

The program is the one of the preset `release` unless it is given. Instructions are valgrind's
(callgrind), the clock is libfaketime's: scripts/setup.sh test installs both. --short fails with
status 1 where a figure is more than 5 % above the stored one, and asks for --renew where one is as
much below; the figures belong to one compiler (--compiler), and where that is another or a tool is
missing the status is 77.
"""

import argparse
import configparser
import pathlib
import sys

import counting
import goals
import growth

HERE = pathlib.Path(__file__).resolve().parent
FIGURES = HERE / "figures.ini"
RELEASE = HERE.parent / "build/release/kva"
COMPILER = "GNU 12"
TOLERANCE = 0.05
SKIPPED = 77

FIGURES_HEAD = """; Instructions per unit on small data, by the rows SHORT of goals.py.
; Renewed by: bench/report.py --short --renew
"""


# Measuring


def figure(kva, row):
    data = row.data()
    cost = counting.nanoseconds if row.wall else lambda *run: counting.counted(*run)[0]
    if row.added:
        few, many = (cost(kva, data, row.options + words) for words in ("", row.added))
        return (many - few) / row.units(data)
    if not row.sizes:
        return cost(kva, data, row.options) / row.units(data)
    few, many = (cost(kva, data, row.options.format(n=n)) for n in row.sizes)
    return (many - few) / (row.sizes[1] - row.sizes[0]) / row.units(data)


# Tables


def print_line(cells, widths):
    line = (cell.ljust(w) if w > 0 else cell.rjust(-w) for cell, w in zip(cells, widths))
    print("| " + " | ".join(line) + " |", flush=True)


def print_head(cells, widths):
    print_line(cells, widths)
    print("|" + "|".join("-" * (abs(w) + 1) + ("-" if w > 0 else ":") for w in widths) + "|")


GOAL_WIDTHS = (35, 31, -8, -5, 4)


def print_goals(kva, rows):
    print_head(("Work", "Unit", "Now", "Goal", ""), GOAL_WIDTHS)
    for row in rows:
        now = figure(kva, row)
        unit = row.unit + (" (ns, wall time)" if row.wall else "")
        print_line((row.name, unit, "%.1f" % now, "%g" % row.goal,
                    "slip" if now > row.goal else ""), GOAL_WIDTHS)


GROWTH_WIDTHS = (17, 27, -12, -6, -5, 8)


def print_growth(kva):
    print_head(("Doubled", "Pass", "Instructions", "Output", "Work", ""), GROWTH_WIDTHS)
    for g in growth.all_growths(kva):
        print_line((g.doubled, g.name, "%.2f" % g.instructions, "%.2f" % g.output,
                    "%.2f" % g.work, "too fast" if g.too_fast else ""), GROWTH_WIDTHS)


# The short form


def stored_figures(file):
    stored = configparser.ConfigParser(delimiters="=")
    stored.optionxform = str
    stored.read(file, encoding="ascii")
    return stored


def verdict(now, stored):
    """What to say of a figure: nothing, or how it differs from the stored one."""
    if stored is None:
        return "new"
    if now > stored * (1 + TOLERANCE):
        return "slip"
    return "gain" if now < stored * (1 - TOLERANCE) else ""


def hold(kva, compiler):
    """Holds the short rows to the stored figures; the status."""
    stored = stored_figures(FIGURES)
    if compiler and stored["made by"]["compiler"] != compiler:
        print("skipped: the figures are of %s" % stored["made by"]["compiler"])
        return SKIPPED
    widths = (26, -8, -8, 4)
    print_head(("Work", "Stored", "Now", ""), widths)
    said = set()
    for row in goals.SHORT:
        before = stored["figures"].getfloat(row.name)
        now = figure(kva, row)
        said.add(verdict(now, before))
        print_line((row.name, "-" if before is None else "%.2f" % before, "%.2f" % now,
                    verdict(now, before)), widths)
    if said & {"gain", "new"}:
        print("please renew: bench/report.py --short --renew")
    return 1 if said & {"slip", "new"} else 0


def renew(kva, compiler):
    lines = ["%s = %.2f" % (row.name, figure(kva, row)) for row in goals.SHORT]
    made_by = "\n[made by]\ncompiler = %s\n\n[figures]\n" % (compiler or COMPILER)
    FIGURES.write_text(FIGURES_HEAD + made_by + "\n".join(lines) + "\n", encoding="ascii")
    print("written: %s" % FIGURES)
    return 0


def main():
    arguments = argparse.ArgumentParser(description="What the program costs; see the file's head.")
    arguments.add_argument("--kva", type=pathlib.Path, default=RELEASE, help="the built program")
    arguments.add_argument("--growth", action="store_true", help="how the passes grow")
    arguments.add_argument("--all", action="store_true", help="goals and growth")
    arguments.add_argument("--short", action="store_true", help="held to the stored figures")
    arguments.add_argument("--renew", action="store_true", help="with --short: store the figures")
    arguments.add_argument("--compiler", help="that built the program, for --short")
    arguments.add_argument("name", nargs="*", help="rows of the table of goals, by their beginning")
    given = arguments.parse_args()

    kva = given.kva.resolve()
    if not kva.is_file():
        arguments.error("no program at %s" % kva)
    if given.short:
        return (renew if given.renew else hold)(kva, given.compiler)
    if given.all or not given.growth:
        print_goals(kva, [row for row in goals.GOALS
                          if not given.name or row.name.startswith(tuple(given.name))])
    if given.all or given.growth:
        print("", flush=True)
        print_growth(kva)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except counting.Missing as missing:
        print("skipped: %s" % missing)
        sys.exit(SKIPPED)
