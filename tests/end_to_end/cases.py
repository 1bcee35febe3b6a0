"""The table of cases, cases.ini, whose keys README.md tells, and whether it is sound."""

import configparser
import fnmatch
import pathlib
import re

import sections

HERE = pathlib.Path(__file__).resolve().parent
INPUT = HERE / "input"
EXAMPLES = HERE.parent.parent / "examples"

KEYS = {"why", "input", "place", "convert", "folders", "run", "keys", "expect", "compare", "beside"}
NEEDED = ("why", "run")
NOTHING_MORE = "console"  # as `compare`: only what is always compared
ALL = "all"  # as `compare`: every result file


def read():
    """All cases in the table's order: name to its keys and values."""
    table = configparser.ConfigParser(interpolation=None, delimiters=("=",))
    table.optionxform = str
    table.read(HERE / "cases.ini", encoding="utf-8")
    return {
        name: {key: spread(value) for key, value in table[name].items()}
        for name in table.sections()
    }


def spread(text):
    """Writes out {x*300}, a text 300 times, and the words of a{00..99}, with the numbers put in."""
    text = re.sub(r"\{(.)\*(\d+)\}", lambda found: found[1] * int(found[2]), text)

    def numbered(found):
        numbers = range(int(found[2]), int(found[3]) + 1)
        return " ".join("%s%0*d" % (found[1], len(found[2]), number) for number in numbers)

    return re.sub(r"(\S*)\{(\d+)\.\.(\d+)\}", numbered, text)


# What a case compares


def with_expectations(table):
    """The cases with a file of their own in expected/, those that compare all in front."""
    own = [name for name in table if "expect" not in table[name]]
    return sorted(own, key=lambda name: not compares_all(table[name]))


def patterns(case):
    """What is compared of the result files; without the key every one, until somebody chooses."""
    return case.get("compare", ALL).split()


def compares_all(case):
    return patterns(case) == [ALL]


def compared(case, found):
    """What counts, in its order: the sections of no result file, and those `compare` names."""
    return {
        name: found[name] for name in sorted(found, key=sections.order)
        if not sections.is_result_file(name)
        or any(matches(name, pattern) for pattern in patterns(case))
    }


def matches(name, pattern):
    """Whether a pattern names a section, in whichever run."""
    return pattern == ALL or fnmatch.fnmatchcase(sections.in_run(name), pattern)


# Input files


def input_file(name):
    """The file of input/ or, where none has that name or examples/ stands there, of examples/."""
    file = INPUT / name
    return file if file.exists() else EXAMPLES / name.removeprefix("examples/")


# Soundness


def faults(table):
    """What is wrong with the table and with the lists of input files."""
    found = []
    for name, case in table.items():
        found += ["%s: %s" % (name, fault) for fault in faults_of_case(case, table)]
        if not re.fullmatch(r"\w+", name, re.ASCII):
            found.append("%s: a name is of letters, digits and _" % name)
    return found + faults_of_input(table)


def faults_of_case(case, table):
    found = ["unknown key %s" % key for key in sorted(case.keys() - KEYS)]
    found += ["no '%s'" % key for key in NEEDED if key not in case]
    if "expect" in case:
        if "compare" in case:
            found.append("'compare' belongs to %s" % case["expect"])
        if "expect" in table.get(case["expect"], case):
            found.append("'expect' names no case with expectations of its own")
    elif "compare" not in case:
        found.append("no 'compare'")
    return found + ["no input file %s" % name for name in case.get("input", "").split()
                    if not input_file(name).is_file()]


def faults_of_input(table):
    used = {input_file(word) for case in table.values() for word in case.get("input", "").split()}
    told = (INPUT / "README.md").read_text(encoding="utf-8")
    found = []
    examples = [file for file in EXAMPLES.iterdir() if file.is_file()]
    for file in sorted([*INPUT.iterdir(), *examples]):
        place = "%s/%s" % (file.parent.name, file.name)
        if file.name == "README.md":
            continue
        if file.parent == INPUT and "| `%s` |" % file.name not in told:
            found.append("%s has no row in input/README.md" % place)
        if file not in used:
            found.append("%s is used by no case" % place)
    return found
