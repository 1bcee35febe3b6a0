#!/usr/bin/env python3
"""Each system call of a run fails in turn: the run ends by itself, tells of it, and keeps to its folder.

Usage: refuse_test.py PROGRAM LIBRARY DATAFILE KIND

KIND is a name of refuse.cpp. A run is whole (the same files as without a fault) or tells, on the
console or in its log, what failed. A read fails, and also finds the end of the file too early. A
refused allocation ends the program in one line, or does no harm (the C library reads without a
buffer then).
"""

import errno
import itertools
import os
import pathlib
import signal
import subprocess
import sys
import tempfile

PROGRAM, LIBRARY, DATA = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
KIND = sys.argv[4]
SKIPPED = 77
ARGUMENTS = ["-i", "d.txt", "-fst", "g", "p", "n=2", "-dist", "p", "POSA", "locus", "n=2",
             "-format", "im", "msvar", "-hetrange", "n=2"]


def run(folder, order, counts=None):
    """A run in a folder of its own: status, console, files of the result folder."""
    home = pathlib.Path(folder, "home")
    home.mkdir()
    (home / "d.txt").write_bytes(DATA.read_bytes())
    (home / "beside.txt").write_text("not yours\n")
    environment = dict(os.environ, LC_ALL="C", LD_PRELOAD=str(LIBRARY), KVA_REFUSE=order)
    environment.pop("KVA_REFUSE_COUNTS", None)
    if counts:
        environment["KVA_REFUSE_COUNTS"] = str(counts)
    done = subprocess.run([PROGRAM, *ARGUMENTS], cwd=home, env=environment, timeout=60,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    files = {str(file.relative_to(home)): file.read_bytes()
             for file in sorted(home.rglob("*")) if file.is_file()}
    outside = {path.name for path in pathlib.Path(folder).iterdir()} - {"home", "counts"}
    assert not outside, "written outside: %s" % outside
    return done.returncode, done.stdout.decode("latin-1"), files


def counted(folder):
    """How many calls of the kind a run without a fault makes; the run itself."""
    counts = pathlib.Path(folder, "counts")
    whole = run(folder, "none 0 0", counts)
    if whole[0] == SKIPPED:
        print("no filter of system calls on this machine")
        sys.exit(SKIPPED)
    assert whole[0] == 1, whole
    lines = dict(line.split() for line in counts.read_text().splitlines())
    return int(lines[KIND]), whole


def fault(whole, status, console, files, number):
    """What is wrong with a run under a fault; nothing if all is well."""
    beside = {"d.txt", "beside.txt"}
    own = {name for name in files if name.startswith("d.txt_KVAresult00/")}
    if status < 0:
        return "killed by %s" % signal.Signals(-status).name
    if status not in (1, 255):
        return "status %d" % status
    if {name: files.get(name) for name in beside} != {name: whole[2][name] for name in beside}:
        return "data changed"
    if set(files) - own - beside:
        return "files outside the result folder: %s" % (set(files) - own - beside)
    if files == whole[2]:
        return None
    if KIND == "malloc":
        ended = status == 255 and console.endswith("\nProgram stopped: std::bad_alloc\n")
        return None if ended else "status %d, said %r" % (status, console[-200:])
    told = console + files.get("d.txt_KVAresult00/KVA.log", b"").decode("latin-1")
    normal = whole[1] + whole[2]["d.txt_KVAresult00/KVA.log"].decode("latin-1")
    reasons = (os.strerror(number or errno.EIO), "Can't", "Cannot", "can't", "Wrong Filename", "Program stopped")
    news = [reason for reason in reasons if told.count(reason) > normal.count(reason)]
    return None if news else "lost without a word: %s" % sorted(
        name for name in whole[2] if files.get(name) != whole[2][name])


def main():
    """Each call of the kind in turn, with each error number."""
    numbers = {"write": [errno.ENOSPC], "read": [errno.EIO, 0]}.get(KIND, [errno.EACCES])
    with tempfile.TemporaryDirectory() as top:
        with tempfile.TemporaryDirectory(dir=top) as place:
            calls, whole = counted(place)
        failures = 0
        for n, number in itertools.product(range(1, calls + 1), numbers):
            with tempfile.TemporaryDirectory(dir=top) as place:
                try:
                    outcome = run(place, "%s %d %d" % (KIND, n, number))
                    wrong = fault(whole, *outcome, number)
                except subprocess.TimeoutExpired:
                    wrong = "does not end"
            if wrong:
                failures += 1
                print("%s %d, error %d: %s" % (KIND, n, number, wrong))
    print("%d faults of %s, %d badly taken" % (calls * len(numbers), KIND, failures))
    return 1 if failures or not calls else 0


if __name__ == "__main__":
    sys.exit(main())
