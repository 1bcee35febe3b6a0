#!/usr/bin/env python3
"""Runs the built program on small cases and compares all that it leaves behind.

Usage: run.py --kva PROGRAM --work FOLDER [--renew] [case ...]
       run.py --list          names of all cases, one a line
       run.py --check         every case and every input file is explained

A case is a section of cases.ini; README.md tells its keys. The program runs in an empty folder
under a frozen clock. Compared are the exit status, the bytes on the console and every file and
folder found afterwards, with expected/<case>/. Where they differ the new outcome is left in
FOLDER/<case>/outcome, and the first differing line is shown. --renew rewrites the expectations.
"""

import argparse
import configparser
import glob
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
EXPECTED = HERE / "expected"
INPUT = HERE / "input"
EXAMPLES = HERE.parent.parent / "examples"

KEYS = {"why", "input", "place", "convert", "folders", "run", "keys", "expect"}
CLOCK = "2024-01-02 03:04:05"
TIMEOUT = 300  # seconds; a sanitized build on a busy machine stays far below
RESULT_FOLDER = re.compile(r".*_KVAresult\d\d+$")


# The table of cases


def read_cases():
    table = configparser.ConfigParser(interpolation=None, delimiters=("=",))
    table.optionxform = str
    table.read(HERE / "cases.ini", encoding="utf-8")
    return {
        name: {key: spread(value) for key, value in table[name].items()}
        for name in table.sections()
    }


def check(cases):
    """Whether the table is sound and each input file has a row in input/README.md."""
    faults = []
    for name, case in cases.items():
        faults += ["%s: unknown key %s" % (name, key) for key in case.keys() - KEYS]
        faults += ["%s: no '%s'" % (name, key) for key in ("why", "run") if key not in case]
        folder = EXPECTED / case.get("expect", name)
        if not folder.is_dir():
            faults.append("%s: nothing expected in %s" % (name, folder.name))
    used = {word for case in cases.values() for word in case.get("input", "").split()}
    told = (INPUT / "README.md").read_text(encoding="utf-8")
    for file in sorted(INPUT.iterdir()):
        if file.name == "README.md":
            continue
        if "| `%s` |" % file.name not in told:
            faults.append("input/%s has no row in input/README.md" % file.name)
        if file.name not in used:
            faults.append("input/%s is used by no case" % file.name)
    wanted = {case.get("expect", name) for name, case in cases.items()}
    if EXPECTED.is_dir():
        left = {folder.name for folder in EXPECTED.iterdir()} - wanted
        faults += ["expected/%s belongs to no case" % name for name in sorted(left)]
    print("\n".join(faults) if faults else "%d cases, all explained" % len(cases))
    return not faults


# The run of a case


def spread(text):
    """Writes out {x*300}, a text 300 times, and the words of a{00..99}, with the numbers put in."""
    text = re.sub(r"\{(.)\*(\d+)\}", lambda found: found[1] * int(found[2]), text)

    def numbered(found):
        numbers = range(int(found[2]), int(found[3]) + 1)
        return " ".join("%s%0*d" % (found[1], len(found[2]), number) for number in numbers)

    return re.sub(r"(\S*)\{(\d+)\.\.(\d+)\}", numbered, text)


CONVERSIONS = {
    "crlf": lambda text: text.replace(b"\n", b"\r\n"),
    "cr": lambda text: text.replace(b"\n", b"\r"),
}


def input_bytes(name):
    file = INPUT / name
    if not file.exists():
        file = EXAMPLES / name
    return file.read_bytes()


def lay_out(case, folder):
    """Fills the working folder of a case; gives the files laid in it with their bytes."""
    for name in case.get("folders", "").split():
        (folder / name).mkdir(parents=True)
    laid = {}
    names = case.get("input", "").split()
    places = shlex.split(case.get("place", ""))
    convert = CONVERSIONS.get(case.get("convert"), lambda text: text)
    for i, name in enumerate(names):
        place = places[i] if i < len(places) else name
        (folder / place).parent.mkdir(parents=True, exist_ok=True)
        laid[place] = convert(input_bytes(name))
        (folder / place).write_bytes(laid[place])
    return laid


def faketime_library():
    for pattern in ("/usr/lib/*/faketime", "/usr/lib*/faketime", "/usr/local/lib/faketime"):
        for file in glob.glob(pattern + "/libfaketime.so.1"):
            return file
    sys.exit("run.py: libfaketime is not installed (Debian package: faketime)")


def environment():
    return {
        "PATH": os.environ.get("PATH", ""),
        "TZ": "UTC",
        "LC_ALL": "C",
        "LD_PRELOAD": faketime_library(),
        "FAKETIME": CLOCK,
        # The clock's library stands before the sanitizers' one, which is harmless.
        "ASAN_OPTIONS": "verify_asan_link_order=0:" + os.environ.get("ASAN_OPTIONS", ""),
    }


def snapshot(folder, laid):
    """The files under a folder with their bytes, and the folders (None), but not the laid files.

    A laid file that is changed or gone is reported as such.
    """
    found = {}
    for place, data in laid.items():
        file = folder / place
        if not file.is_file() or file.read_bytes() != data:
            found[place + " (input file, changed)"] = b""
    for path in sorted(folder.rglob("*")):
        name = path.relative_to(folder).as_posix()
        if path.is_dir():
            found[name + "/"] = None
        elif name not in laid:
            found[name] = path.read_bytes()
    return found


def run_case(case, kva, folder):
    """Runs a case in an empty folder; gives its outcome: file name to bytes, None for folders."""
    outer = folder / "run"
    inner = outer / "work"  # one level down, so that a step out of it is seen
    inner.mkdir(parents=True)
    laid = lay_out(case, inner)
    command = [str(kva)] + shlex.split(case["run"].replace("{work}", str(inner)))
    keys = case.get("keys", "").encode().decode("unicode_escape").encode("latin-1")
    with open(folder / "console", "wb") as console, open(folder / "errors", "wb") as errors:
        try:
            status = subprocess.run(
                command, cwd=inner, env=environment(), input=keys,
                stdout=console, stderr=errors, timeout=TIMEOUT, check=False,
            ).returncode
        except subprocess.TimeoutExpired:
            status = "none, stopped after %d seconds" % TIMEOUT

    hide = lambda data: data.replace(str(inner).encode(), b"{work}")
    tree = snapshot(outer, {"work/" + place: data for place, data in laid.items()})
    outcome = {
        "status.txt": ("%s\n" % status).encode(),
        "console.txt": hide((folder / "console").read_bytes()),
        "tree.txt": "".join(name + "\n" for name in sorted(tree)).encode(),
    }
    errors = (folder / "errors").read_bytes()
    if errors:  # nothing belongs there, so there is never an expectation for it
        outcome["standard-error.txt"] = hide(errors)
    for name, data in tree.items():
        if data is not None:
            outcome["tree/" + name] = hide(data)
    return outcome


def outside_result_folders(case, outcome):
    """Names in the outcome's tree that are no laid folder and in no result folder."""
    own = {"work"}
    for place in case.get("folders", "").split() + shlex.split(case.get("place", "")):
        path = pathlib.PurePosixPath("work", place)
        own |= {str(parent) for parent in [path, *path.parents]}
    names = outcome["tree.txt"].decode(errors="surrogateescape").splitlines()
    result = []
    for name in names:
        path = pathlib.PurePosixPath(name.rstrip("/"))
        inside = any(RESULT_FOLDER.match(part) for part in path.parts)
        if not inside and str(path) not in own:
            result.append(name)
    return result


# Expectations


def store(outcome, folder):
    shutil.rmtree(folder, ignore_errors=True)
    for name, data in outcome.items():
        file = folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(data)


def load(folder):
    files = (path for path in folder.rglob("*") if path.is_file())
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in files}


def first_difference(name, old, new):
    if old is None:
        return "%s: not expected at all" % name
    if new is None:
        return "%s: expected, but not there" % name
    old_lines, new_lines = old.split(b"\n"), new.split(b"\n")
    for number, pair in enumerate(zip(old_lines, new_lines), 1):
        if pair[0] != pair[1]:
            return "%s, line %d\n  expected: %r\n  now:      %r" % (name, number, *pair)
    shared = min(len(old_lines), len(new_lines))
    return "%s: the same up to line %d, then %d lines expected, now %d" % (
        name, shared, len(old_lines), len(new_lines))


def compare(expected, outcome):
    names = sorted(expected.keys() | outcome.keys(), key=lambda name: (name.count("/"), name))
    differing = [name for name in names if expected.get(name) != outcome.get(name)]
    return [first_difference(name, expected.get(name), outcome.get(name)) for name in differing]


def play(name, cases, kva, work, renew):
    """Runs one case and compares or renews; whether all is well."""
    case = cases[name]
    folder = work / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    outcome = run_case(case, kva, folder)

    faults = ["written outside the result folder: " + n for n in outside_result_folders(case, outcome)]
    if renew and "expect" not in case and not faults and "standard-error.txt" not in outcome:
        store(outcome, EXPECTED / name)
    else:
        faults += compare(load(EXPECTED / case.get("expect", name)), outcome)
    if not faults:
        shutil.rmtree(folder)
        print("%s: as expected" % name)
        return True
    store(outcome, folder / "outcome")
    print("%s: %s" % (name, case["why"]))
    print("\n".join(faults[:5]))
    if len(faults) > 5:
        print("... and %d more differences" % (len(faults) - 5))
    print("Compare: diff -r %s %s" % (EXPECTED / case.get("expect", name), folder / "outcome"))
    return False


def main():
    arguments = argparse.ArgumentParser(description="End-to-end tests; see the file's head.")
    arguments.add_argument("--kva", type=pathlib.Path, help="the built program")
    arguments.add_argument("--work", type=pathlib.Path, help="folder to run in")
    arguments.add_argument("--renew", action="store_true", help="rewrite the expectations")
    arguments.add_argument("--list", action="store_true", help="list the cases")
    arguments.add_argument("--check", action="store_true", help="check the table itself")
    arguments.add_argument("case", nargs="*", help="all cases if none is named")
    given = arguments.parse_args()

    cases = read_cases()
    if given.list:
        print("\n".join(cases))
        return 0
    if given.check:
        return 0 if check(cases) else 1
    unknown = set(given.case) - cases.keys()
    if unknown or not given.kva or not given.work:
        arguments.error("unknown case: %s" % ", ".join(unknown) if unknown else
                        "--kva and --work are needed")
    names = given.case or list(cases)
    results = [play(n, cases, given.kva.resolve(), given.work.resolve(), given.renew) for n in names]
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
