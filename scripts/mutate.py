#!/usr/bin/env python3
"""Mutation testing: changes one operator, constant, index or statement of src/ at a time, and
tells which changes no test notices.

    scripts/mutate.py --count 300                    a sample of all subsystems
    scripts/mutate.py src/fstat/wc84.cpp             every change of a file
    scripts/mutate.py src/fstat/wc84.cpp:40-60       ... of some lines
    scripts/mutate.py --list src/fstat/wc84.cpp      shows them only

The user's files are never touched: the project is copied to build/mutation/tree, and changed and
built there. A mutant meets the unit tests of its subsystem first, then the scripts that test what
kvatool makes of it, then the unit tests of the subsystems above; a test that fails, crashes or takes
too long kills it. A change that does not compile does not
count. mutants_equivalent.txt, beside this script, holds changes that make no difference; they are
counted and not run. A survivor is printed in the form of that file. Status 1: a mutant survived.
"""

import argparse
import collections
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/mutation/tree"
BUILD = ROOT / "build/mutation/build"
EQUIVALENT = ROOT / "scripts/mutants_equivalent.txt"
# Each one knows those before it alone.
SUBSYSTEMS = ["base", "data", "output", "run", "stats", "distance", "fstat", "hetrange", "formats",
              "check", "imports", "results", "report", "control", "api"]
# What the two programs make of a subsystem, with their places for KVA and TOOL.
SCRIPTS = {"check": ["tests/tool/check_test.py TOOL KVA"],
           "imports": ["tests/tool/import_test.py TOOL KVA"],
           "results": ["tests/tool/tidy_test.py TOOL KVA"],
           "report": ["tests/tool/report_test.py TOOL KVA",
                      "scripts/report_pictures.py --check --kvatool TOOL"],
           "api": ["tests/tool/run_test.py TOOL KVA"]}
LEAST = 25  # mutants of a subsystem in a sample
GIBIBYTE = 1 << 30
# Quick to compile and to link, and an index out of range ends the test.
CONFIGURATION = [
    "-GNinja", "-DKVA_TESTS=ON", "-DKVA_BENCH=OFF", "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
    "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -D_GLIBCXX_ASSERTIONS",
    "-DCMAKE_CXX_FLAGS=-w"]

NOT_CODE = re.compile(
    r"""//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])'|^[ ]*\#[^\n]*"""
    r"|^[ ]*(?:using|static_assert|template|friend)\b[^\n]*", re.S | re.M)
# What is looked for in the code of a line, and what takes its place. The formatting puts blanks
# around binary operators and none inside the brackets of a template.
OPERATOR = re.compile(r"(?<= )([-+*/%&|]=?|[<>]=?|[!=]=|&&|\|\|)(?= |$)")
SWAPS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||",
         "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=",
         "*=": "/=", "/=": "*=", "&": "|", "|": "&", "|=": "&=", "&=": "|="}
CHANGES = [
    (OPERATOR, lambda m: SWAPS.get(m[1], m[1])),
    (re.compile(r"(?<=[\w)\]])\[([^\[\]]*[A-Za-z][^\[\]]*)\]"), lambda m: f"[({m[1]}) + 1]"),
    (re.compile(r"(?<![\w.])\d+(?![\w.])"), lambda m: str(int(m[0]) + 1)),
    (re.compile(r"(?<![\w.])\d+\.\d+(?![\w.])"), lambda m: str(float(m[0]) + 1.0)),
    (re.compile(r"\b(?:true|false)\b"), lambda m: "false" if m[0] == "true" else "true"),
    # Not the step of a loop, which would never end.
    (re.compile(r"(?<!; )(?:\+\+|--)"), lambda m: "--" if m[0] == "++" else "++"),
    (re.compile(r"(?<=[( ])!(?=[\w(])"), lambda m: ""),
    (re.compile(r"\bstd::(?:min|max)\b"), lambda m: "std::max" if "min" in m[0] else "std::min"),
    (re.compile(r"\b(?:break|continue)(?=;)"), lambda m: ""),
    # A call or an assignment that has its line to itself.
    (re.compile(r"^ +(?:\(void\))?[\w.>()\[\]:-]+(?:\(.*\)| [-+*/|&]?= [^{}]*);$"), lambda m: "")]

Mutant = collections.namedtuple("Mutant", "subsystem file line old new")


def mutants_of(file):
    text = (ROOT / file).read_text()
    code = NOT_CODE.sub(lambda m: re.sub(r"[^\n]", '"', m[0]), text)
    for number, (line, bare) in enumerate(zip(text.split("\n"), code.split("\n")), 1):
        for pattern, change in CHANGES:
            for match in pattern.finditer(bare):
                new = line[: match.start()] + change(match) + line[match.end() :]
                if new != line:
                    yield Mutant(file.split("/")[1], file, number, line, new)


def chosen(places):
    """The mutants at places such as src/data, src/data/sheet.cpp or src/data/sheet.cpp:10-20."""
    found = []
    for place in places:
        name, _, lines = place.partition(":")
        first, _, last = lines.partition("-")
        path = ROOT / name
        for file in sorted(path.rglob("*.[ch]*")) if path.is_dir() else [path]:
            found += [m for m in mutants_of(str(file.relative_to(ROOT)))
                      if not lines or int(first) <= m.line <= int(last or first)]
    # No unit test has main, or kvatool.
    return [m for m in found if m.subsystem in SUBSYSTEMS and m.file != "src/control/MainWork.cpp"]


def sample(mutants, count, seed):
    """About `count` mutants: of each subsystem in proportion to its size, but not too few."""
    draw, taken = random.Random(seed), []
    for name in SUBSYSTEMS:
        own = [m for m in mutants if m.subsystem == name]
        share = max(min(LEAST, count // len(SUBSYSTEMS)), round(count * len(own) / len(mutants)))
        taken += sorted(draw.sample(own, min(share, len(own))))
    return taken


def known_equivalents():
    blocks = [b.split("\n") for b in EQUIVALENT.read_text().split("\n\n")]
    return {(b[0], b[1][1:].strip(), b[2][1:].strip()) for b in blocks if len(b) > 3}


def run(command, seconds=None, **options):
    """Whether a command succeeds, in time and within bounds of memory and files."""
    def bounds():
        resource.setrlimit(resource.RLIMIT_AS, (4 * GIBIBYTE, 4 * GIBIBYTE))
        resource.setrlimit(resource.RLIMIT_FSIZE, (GIBIBYTE, GIBIBYTE))
    try:
        return subprocess.run(command, timeout=seconds, preexec_fn=bounds, capture_output=True,
                              stdin=subprocess.DEVNULL, **options).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def build(*targets):
    return run(["cmake", "--build", BUILD, "-j1", "--target", *targets])


def passes(name, seconds=None):
    """Whether the tests of a subsystem build and pass, in a folder of their own."""
    program = BUILD / f"tests/{name}/kva_{name}_tests"
    commands = [[program, "--gtest_fail_fast", "--gtest_brief=1"]]
    places = {"KVA": BUILD / "kva", "TOOL": BUILD / "kvatool"}
    for script in SCRIPTS.get(name, []):
        file, *words = script.split()
        commands.append([sys.executable, TREE / file] + [places.get(word, word) for word in words])
    if not build(program.name):
        return False
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        os.chmod(folder, 0o1777)  # some tests give up their rights
        for number, command in enumerate(commands):
            if number > 0 and not build("kva", "kvatool"):
                return False
            if not run(command, seconds, cwd=folder, env=os.environ | {"TMPDIR": folder}):
                return False
    return True


def upwards(subsystem):
    """A subsystem and those that may notice its changes."""
    return SUBSYSTEMS[SUBSYSTEMS.index(subsystem) :]


def prepare(subsystems):
    """Makes the copy, builds it and sees it pass. Returns the seconds each subsystem may take."""
    def copy(source, target):
        target, new = pathlib.Path(target), pathlib.Path(source).read_bytes()
        if not target.exists() or target.read_bytes() != new:
            target.write_bytes(new)
    for name in ["bench", "cmake", "completions", "docs", "examples", "fuzz", "include", "man",
                 "scripts", "src", "tests"]:
        shutil.copytree(ROOT / name, TREE / name, copy_function=copy, dirs_exist_ok=True)
    copy(ROOT / "CMakeLists.txt", TREE / "CMakeLists.txt")
    if not run(["cmake", "-S", TREE, "-B", BUILD] + CONFIGURATION):
        sys.exit(f"mutate.py: {TREE} cannot be configured")
    limits = {}
    for name in subsystems:
        built, start = build(f"kva_{name}_tests", "kva", "kvatool"), time.monotonic()
        if not built or not passes(name):
            sys.exit(f"mutate.py: the tests of {name} do not build or fail before any change")
        limits[name] = 10.0 + 4.0 * (time.monotonic() - start)
    return limits


def fate(mutant, limits):
    """What becomes of a mutant: "survived", "not built" or who killed it."""
    own, file = mutant.subsystem, TREE / mutant.file
    text = file.read_text()
    lines = text.split("\n")
    try:
        file.write_text("\n".join(lines[: mutant.line - 1] + [mutant.new] + lines[mutant.line :]))
        if not build(f"kva_{own}_tests"):
            return "not built"
        for name in upwards(own):
            if not passes(name, limits[name]):
                return f"killed by {name}"
        return "survived"
    finally:
        file.write_text(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("places", nargs="*", default=["src"], help="folder, FILE, FILE:LINE[-LINE]")
    parser.add_argument("--count", type=int, help="a random sample of so many")
    parser.add_argument("--seed", type=int, default=1, help="of the sample (default 1)")
    parser.add_argument("--list", action="store_true", help="print the mutants and stop")
    options = parser.parse_args()

    mutants = chosen(options.places)
    if options.count:
        mutants = sample(mutants, options.count, options.seed)
    known, counts = known_equivalents(), collections.defaultdict(collections.Counter)
    lowest = min((m.subsystem for m in mutants), key=SUBSYSTEMS.index, default="api")
    limits = {} if options.list else prepare(upwards(lowest))
    for number, m in enumerate(mutants, 1):
        key = (m.file, m.old.strip(), m.new.strip())
        fates = "equivalent" if key in known else "listed" if options.list else fate(m, limits)
        counts[m.subsystem][fates.split(" by ")[0]] += 1
        print(f"[{number}/{len(mutants)}] {m.file}:{m.line} {fates}", flush=True)
        if fates in ("listed", "survived"):
            print("{}\n- {}\n+ {}".format(*key), flush=True)

    kinds = ["killed", "survived", "equivalent", "not built", "listed"]
    print("".join(f"{head:>12}" for head in ["subsystem"] + kinds))
    for name, row in counts.items():
        print(f"{name:>12}" + "".join(f"{row[kind]:12}" for kind in kinds))
    return 1 if any(row["survived"] for row in counts.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
