#!/usr/bin/env python3
"""Runs the built program on small cases and compares all that it leaves behind.

Usage: run.py --kva PROGRAM --work FOLDER [--renew] [case ...]
       run.py --list          names of all cases, one a line
       run.py --check         the table, the input files and the store of expectations are sound

A case is a section of cases.ini (cases.py). The program runs in an empty folder under a frozen
clock (outcome.py), and what `compare` names of its outcome is held against expected/<case>.txt
(store.py). Where they differ the first differing line of each section is shown, and both stay in
FOLDER/<case>. --renew rewrites the expectations that differ. README.md tells more.
"""

import argparse
import pathlib
import shutil
import sys

import cases
import outcome
import sections
import store

EXPECTED = cases.HERE / "expected"
SHOWN = 20  # sections of which a failure shows the first difference


# Comparison


def first_difference(name, old, new):
    if old is None:
        return "%s: not expected at all" % name
    if new is None:
        return "%s: expected, but not there" % name
    old_lines, new_lines = store.lines_of(old), store.lines_of(new)
    for number, pair in enumerate(zip(old_lines, new_lines), 1):
        if pair[0] != pair[1]:
            return "%s, line %d\n  expected: %s\n  now:      %s" % (name, number, *pair)
    shared = min(len(old_lines), len(new_lines))
    return "%s: the same up to line %d, then %d lines expected, now %d" % (
        name, shared, len(old_lines), len(new_lines))


def compare(expected, found):
    names = [*found, *(name for name in expected if name not in found)]
    return [first_difference(name, expected.get(name), found.get(name))
            for name in names if expected.get(name) != found.get(name)]


def expectations(name, renewed):
    """What is expected of a case, and what is wrong if that cannot be read."""
    try:
        return renewed.get(name) or store.load(EXPECTED, name), []
    except store.Malformed as fault:
        return {}, [str(fault)]


def play(name, table, kva, work, renewed):
    """Runs a case and compares, or puts its sections into `renewed`; whether all is well.

    Without renewing that is None.
    """
    case = table[name]
    holder = case.get("expect", name)
    folder = work / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    left, faults = outcome.run(case, kva, folder)
    found = cases.compared(table[holder], left)

    if renewed is not None and holder == name and not faults and "standard error" not in found:
        shutil.rmtree(folder)
        renewed[name] = found
        return True
    expected, unread = expectations(holder, renewed or {})
    faults += unread or compare(expected, found)
    if not faults:
        shutil.rmtree(folder)
        print("%s: as expected" % name)
        return True
    print("%s: %s" % (name, case["why"]))
    print("\n".join(faults[:SHOWN]))
    if len(faults) > SHOWN:
        print("... and %d more differences" % (len(faults) - SHOWN))
    for file, shown in (("expected.txt", expected), ("outcome.txt", found)):
        (folder / file).write_text(store.layout(shown), encoding="ascii")
    print("Compare: diff -u %s %s" % (folder / "expected.txt", folder / "outcome.txt"))
    return False


# The store as a whole


def all_texts(table, renewed):
    """The texts of all expectations: those in the store, with the renewed ones in their place."""
    outcomes = {}
    stored = store.cases_in(EXPECTED)
    for name in cases.with_expectations(table):
        if name in renewed or name in stored:
            expected = renewed.get(name) or store.load(EXPECTED, name)
            outcomes[name] = cases.compared(table[name], expected)
    return store.layout_all(outcomes)


def check(table):
    """Whether the table is sound and the store holds what it compares, and nothing else."""
    faults = cases.faults(table)
    try:
        for name in cases.with_expectations(table):
            faults += unexplained(name, table[name], store.load(EXPECTED, name))
        if not faults:
            faults += ["expected/%s.txt: not as --renew lays it out" % name
                       for name, text in all_texts(table, {}).items()
                       if (EXPECTED / (name + ".txt")).read_text(encoding="ascii") != text]
    except store.Malformed as fault:
        faults.append("expected/%s" % fault)
    wanted = {name + ".txt" for name in cases.with_expectations(table)}
    stale = {file.name for file in EXPECTED.iterdir()} - wanted
    faults += ["expected/%s belongs to no case" % name for name in sorted(stale)]
    print("\n".join(faults) if faults else "%d cases, all explained" % len(table))
    return not faults


def unexplained(name, case, expected):
    """Sections that the case does not compare, and patterns that match none."""
    kept = cases.compared(case, expected)
    faults = ["expected/%s.txt: %s is not compared" % (name, section)
              for section in expected if section not in kept]
    files = [section for section in kept if sections.is_result_file(section)]
    for pattern in cases.patterns(case):
        matched = any(cases.matches(file, pattern) for file in files)
        if not matched and pattern not in (cases.ALL, cases.NOTHING_MORE):
            faults.append("%s: 'compare' names %s, which the case does not have" % (name, pattern))
    return faults


def main():
    arguments = argparse.ArgumentParser(description="End-to-end tests; see the file's head.")
    arguments.add_argument("--kva", type=pathlib.Path, help="the built program")
    arguments.add_argument("--work", type=pathlib.Path, help="folder to run in")
    arguments.add_argument("--renew", action="store_true", help="rewrite the expectations")
    arguments.add_argument("--list", action="store_true", help="list the cases")
    arguments.add_argument("--check", action="store_true", help="check the table and the store")
    arguments.add_argument("case", nargs="*", help="all cases if none is named")
    given = arguments.parse_args()

    table = cases.read()
    if given.list:
        print("\n".join(table))
        return 0
    if given.check:
        return 0 if check(table) else 1
    unknown = set(given.case) - table.keys()
    if unknown or not given.kva or not given.work:
        arguments.error("unknown case: %s" % ", ".join(unknown) if unknown else
                        "--kva and --work are needed")
    renewed = {} if given.renew else None
    kva, work = given.kva.resolve(), given.work.resolve()
    results = [play(name, table, kva, work, renewed) for name in given.case or table]
    if renewed:
        try:
            changed = store.save(EXPECTED, all_texts(table, renewed))
        except store.Malformed as fault:
            sys.exit("nothing renewed; expected/%s" % fault)
        print("\n".join("renewed: expected/" + file for file in changed) or "nothing to renew")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
