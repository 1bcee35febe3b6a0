#!/usr/bin/env python3
"""Each system call of a run fails in turn: the run ends by itself, tells of it, and keeps to its folder.

Usage: refuse_test.py SUBJECT calls|memory LIBRARY DATAFILE KVA [KVATOOL]

SUBJECT is kva or a subcommand of kvatool; LIBRARY is made of refuse.cpp. A run under a fault gives
the same files as without, or it tells what failed: kva on the console or in its log, kvatool on
standard error. kvatool leaves either the whole of what it makes or nothing of it. A read fails, and
also finds the end of the file too early. A refused allocation ends the program in one line, or does
no harm (the C library reads without a buffer then).
"""

import errno
import itertools
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile

SUBJECT, FAULTS = sys.argv[1:3]
LIBRARY, DATA, KVA, TOOL = [pathlib.Path(word).resolve() for word in [*sys.argv[3:], ""][:4]]
SKIPPED = 77
CALLS = ["open", "write", "close", "mkdir", "chdir", "fchdir", "read", "lseek", "fork", "rename", "renameat",
         "unlink", "rmdir", "fsync"]
ERRORS = {"write": [errno.ENOSPC], "read": [errno.EIO, 0], "fork": [errno.EAGAIN]}
# Of so many allocations each one is refused, of the later ones every 29th.
EACH_ALLOCATION = int(os.environ.get("KVA_EACH_ALLOCATION", 1000))
GENEPOP = b"Two loci\nLa\nLb\nPop\na1, 100102 080080\na2, 100100 080084\nPop\nb1, 102102 084084\n"


class Kva:
    """A run of all passes by kva, which goes on over what fails and has status 1 after a run."""

    program = [KVA, "-i", "d.txt", "-fst", "g", "p", "n=2", "-dist", "p", "POSA", "locus", "n=2",
               "-format", "im", "msvar", "-hetrange", "n=2"]
    status = 1
    memory = (255, r"\nProgram stopped: std::bad_alloc\n$")
    made = "d.txt_KVAresult00/"

    def prepare(self, home):
        """Puts beside the data what the run needs."""

    @staticmethod
    def lost(whole, console, files, number):
        """What got lost without a word; nothing if all is well."""
        told = console + files.get("d.txt_KVAresult00/KVA.log", b"").decode("latin-1")
        normal = whole[1] + whole[2]["d.txt_KVAresult00/KVA.log"].decode("latin-1")
        reasons = (os.strerror(number or errno.EIO), "Can't", "Cannot", "can't", "Wrong Filename",
                   "Program stopped")
        if any(told.count(reason) > normal.count(reason) for reason in reasons):
            return None
        return "lost without a word: %s" % sorted(
            name for name in whole[2] if files.get(name) != whole[2][name])


class Tool:
    """A subcommand of kvatool: all or nothing, and status 1 with a line if nothing."""

    status = 0
    memory = (1, r"(?m)^kvatool(?!.*by signal)")

    def __init__(self, arguments, made, wanted=None):
        self.program = [TOOL, *arguments.split()]
        self.made = made
        self.wanted = wanted  # a folder of results to begin with, of which what can be read is given
        self.results = {}

    def prepare(self, home):
        """Puts beside the data what the subcommand needs."""
        (home / "cats.gen").write_bytes(GENEPOP)
        if self.wanted:
            if not self.results:
                subprocess.run([KVA, "-i", "d.txt"], cwd=home, check=False,
                               stdout=subprocess.DEVNULL)
                folder = home / "d.txt_KVAresult00"
                self.results = {file.relative_to(folder): file.read_bytes()
                                for file in folder.rglob("*") if file.is_file()}
                shutil.rmtree(folder)
            for name, data in self.results.items():
                file = home / self.wanted / name
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_bytes(data)

    def lost(self, whole, console, files, number):
        """What is half there, or was not told; nothing if all is well."""
        del number
        halves = [name for name, data in files.items() if data != whole[2].get(name)
                  and ".unfinished-" not in name and not name.endswith("/tidy.tsv")
                  and not (self.wanted and name in self.made)]
        if halves:
            return "left behind: %s; said %r" % (halves, console)
        # The results, the table and the record are each whole or not there.
        missing = {name.split("/")[0] for name in set(whole[2]) - set(files)}
        broken = [name for name in files if name.split("/")[0] in missing]
        if broken:
            return "not whole: %s" % broken
        new = [line for line in console.splitlines() if line not in whole[1].splitlines()]
        return None if any(line.startswith("kvatool") for line in new) else "said %r" % console


SUBJECTS = {
    "kva": Kva,
    "run": lambda: Tool("run d.txt -o results --seed 1 --fst pairs,global --permutations 2 "
                        "--distances population:POSA --bootstrap 2 --formats im,msvar "
                        "--het-range 2 --tidy all.txt --json run.json",
                        ("results/", "all.txt", "run.json")),
    "check": lambda: Tool("check d.txt", ()),
    "import": lambda: Tool("import cats.gen -o new.txt --repeat 2 --populations numbers",
                           ("new.txt",)),
    "tidy": lambda: Tool("tidy results -o all.txt", ("all.txt",), "results"),
    "report": lambda: Tool("report results -o page.html", ("page.html",), "results"),
}


def content(file):
    """The bytes of a file; of a record without the seconds that it tells."""
    data = file.read_bytes()
    return re.sub(rb'"seconds": [0-9.e-]+', b"", data) if file.suffix == ".json" else data


def run(subject, folder, order, counts=None):
    """A run in a folder of its own: status, console, files of the folder."""
    home = pathlib.Path(folder, "home")
    home.mkdir()
    (home / "d.txt").write_bytes(DATA.read_bytes())
    (home / "beside.txt").write_text("not yours\n")
    subject.prepare(home)
    environment = dict(os.environ, LC_ALL="C", LD_PRELOAD=str(LIBRARY), KVA_REFUSE=order)
    environment.pop("KVA_REFUSE_COUNTS", None)
    if counts:
        environment["KVA_REFUSE_COUNTS"] = str(counts)
    done = subprocess.run(subject.program, cwd=home, env=environment, timeout=60,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    files = {str(file.relative_to(home)): content(file).replace(str(home).encode(), b"")
             for file in sorted(home.rglob("*")) if file.is_file()}
    outside = {path.name for path in pathlib.Path(folder).iterdir()} - {"home", "counts"}
    assert not outside, "written outside: %s" % outside
    console = done.stdout.decode("latin-1").replace(str(home), "")
    return done.returncode, console, files


def counted(subject, folder):
    """How many calls of each kind a run without a fault makes; the run itself."""
    counts = pathlib.Path(folder, "counts")
    whole = run(subject, folder, "none 0 0", counts)
    if whole[0] == SKIPPED:
        print("no filter of system calls on this machine")
        sys.exit(SKIPPED)
    assert whole[0] == subject.status, whole
    return {kind: int(calls)
            for kind, calls in (line.split() for line in counts.read_text().splitlines())}, whole


def fault(subject, kind, number, whole, status, console, files):
    """What is wrong with a run under a fault; nothing if all is well."""
    if status < 0:
        return "killed by %s" % signal.Signals(-status).name
    if status not in (subject.status, subject.memory[0]):
        return "status %d" % status
    made = tuple(subject.made) if not isinstance(subject.made, str) else (subject.made,)
    beside = {name: data for name, data in whole[2].items() if not name.startswith(made)}
    if {name: files.get(name) for name in beside} != beside:
        return "data changed"
    foreign = [name for name in files if name not in beside and not name.startswith(made)]
    # What cannot be renamed or taken away stays under the name it had.
    foreign = [name for name in foreign
               if kind not in ("rename", "unlink", "rmdir") or ".unfinished-" not in name]
    if foreign:
        return "files outside the results: %s" % foreign
    if (files == whole[2] and status == subject.status
            and (SUBJECT != "check" or console == whole[1])):
        return None
    if kind == "malloc":
        ended = status == subject.memory[0] and re.search(subject.memory[1], console)
        return None if ended else "status %d, said %r" % (status, console[-200:])
    if status == 0:
        return "status 0, said %r" % console
    return subject.lost(whole, console, files, number)


def orders(calls):
    """Kind, number of the call and error number of each fault to try."""
    if FAULTS == "memory":
        every = itertools.chain(range(1, min(calls["malloc"], EACH_ALLOCATION) + 1),
                                range(EACH_ALLOCATION + 1, calls["malloc"] + 1, 29))
        return [("malloc", n, errno.ENOMEM) for n in every]
    return [(kind, n, number) for kind in CALLS for n in range(1, calls[kind] + 1)
            for number in ERRORS.get(kind, [errno.EACCES])]


def main():
    """Each call of the kind in turn, with each error number."""
    subject = SUBJECTS[SUBJECT]()
    failures = 0
    with tempfile.TemporaryDirectory() as top:
        with tempfile.TemporaryDirectory(dir=top) as place:
            calls, whole = counted(subject, place)
        tried = orders(calls)
        for kind, n, number in tried:
            with tempfile.TemporaryDirectory(dir=top) as place:
                try:
                    outcome = run(subject, place, "%s %d %d" % (kind, n, number))
                    wrong = fault(subject, kind, number, whole, *outcome)
                except subprocess.TimeoutExpired:
                    wrong = "does not end"
            if wrong:
                failures += 1
                print("%s %d, error %d: %s" % (kind, n, number, wrong))
    print(", ".join("%s %d" % row for row in calls.items()))
    print("%d faults, %d badly taken" % (len(tried), failures))
    return 1 if failures or not tried else 0


if __name__ == "__main__":
    sys.exit(main())
