"""Runs the built program on a case under a frozen clock and gives what it leaves behind."""

import collections
import glob
import os
import pathlib
import shlex
import subprocess
import sys

import cases
import sections
from sections import WORK

CLOCK = "2024-01-02 03:04:05"
TIMEOUT = 300  # seconds; a sanitized build on a busy machine stays far below

CONVERSIONS = {
    "crlf": lambda text: text.replace(b"\n", b"\r\n"),
    "cr": lambda text: text.replace(b"\n", b"\r"),
}

# sections: name to bytes; faults: what no run may do, whatever is expected of it.
Outcome = collections.namedtuple("Outcome", "sections faults")


# The run


def lay_out(case, folder):
    """Fills the working folder of a case; gives the files laid in it with their bytes."""
    for name in case.get("folders", "").split():
        (folder / name).mkdir(parents=True)
    laid = {}
    names = case.get("input", "").split()
    places = shlex.split(case.get("place", ""))
    convert = CONVERSIONS.get(case.get("convert"), lambda text: text)
    for i, name in enumerate(names):
        place = places[i] if i < len(places) else pathlib.PurePosixPath(name).name
        (folder / place).parent.mkdir(parents=True, exist_ok=True)
        laid[place] = convert(cases.input_file(name).read_bytes())
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


def run(case, kva, folder):
    """Runs a case in an empty folder."""
    outer = folder / "run"
    inner = outer / WORK  # one level down, so that a step out of it is seen
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

    found = {"status": ("%s\n" % status).encode(), "console": (folder / "console").read_bytes()}
    errors = (folder / "errors").read_bytes()
    if errors:  # nothing belongs there, so there is never an expectation for it
        found["standard error"] = errors
    tree = snapshot(outer)
    faults = changed_inputs(laid, tree) + outside_result_folders(case, laid, tree)
    for place in laid:
        tree.pop("%s/%s" % (WORK, place), None)
    found.update(sections.of_tree(tree))
    return Outcome({name: hide(data, inner) for name, data in found.items()}, faults)


def hide(data, work):
    """Takes out what depends on the machine: the working folder, and the sign of a NaN."""
    data = data.replace(str(work).encode(), b"{work}")
    return data.replace(b" -nan", b"  nan").replace(b"-nan", b"nan")


# What is left behind


def snapshot(folder):
    """All files under a folder with their bytes, and the folders (with None)."""
    return {
        path.relative_to(folder).as_posix(): None if path.is_dir() else path.read_bytes()
        for path in sorted(folder.rglob("*"))
    }


def changed_inputs(laid, tree):
    return ["input file changed or gone: " + name for name, data in laid.items()
            if tree.get("%s/%s" % (WORK, name)) != data]


def outside_result_folders(case, laid, tree):
    """A fault for each name that was not there before and is in no result folder."""
    own = {WORK}
    for place in [*case.get("folders", "").split(), *case.get("beside", "").split(), *laid]:
        path = pathlib.PurePosixPath(WORK, place)
        own |= {str(parent) for parent in [path, *path.parents]}
    return ["written outside the result folder: " + place for place in tree
            if place not in own and sections.result_folder(place) is None]
