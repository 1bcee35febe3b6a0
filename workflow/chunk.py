#!/usr/bin/env python3
"""One job of a batch: the data files of a list through `kvatool run`, into a piece of the table.

Usage: chunk.py LIST TABLE TOLD SETTINGS SITE

LIST, SETTINGS and SITE are those of plan.py. TABLE, gzipped where it is called so, has no head: pieces are
laid behind each other. TOLD is JSON: what was done and which data files failed. Both are written
beside their names and renamed when they are whole. Exit status 1, and neither, if the job failed.
"""

import fnmatch
import gzip
import hashlib
import json
import os
import pathlib
import resource
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

import plan

FILES_OF_A_CALL = 100  # bounds the result folders that lie in the scratch folder at a time
FIRST_SIGNALLED = 128
WRONG_USAGE = 2
MARK = f".unfinished-{socket.gethostname()}-{os.getpid()}"


class JobError(Exception):
    """Why the job as a whole cannot be done, in a line."""


# --- Calls of kvatool ----------------------------------------------------------------------

def calls(files, settings):
    """Cuts the data files into calls of kvatool, in order.

    Of one call all base names differ, as they name the result folders."""
    call, names = [], set()
    most = 1 if settings["own_seeds"] else FILES_OF_A_CALL
    for file in files:
        if len(call) == most or os.path.basename(file) in names:
            yield call
            call, names = [], set()
        call.append(file)
        names.add(os.path.basename(file))
    if call:
        yield call


def seed_of(file, settings):
    if not settings["own_seeds"]:
        return settings["seed"]
    text = f"{settings['seed']}\n{file}".encode("utf-8", "surrogateescape")
    return int.from_bytes(hashlib.sha256(text).digest()[:8], "big") >> 11  # 53 bits


class Call:
    """A run of kvatool on some data files, in a folder of its own."""

    def __init__(self, files, settings, scratch):
        self.files = files
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=scratch))
        self.tidy = self.folder / "table.txt"
        words = [settings["kvatool"], "run", "--quiet", "--seed", str(seed_of(files[0], settings)),
                 "--threads", str(settings["threads"]), *settings["options"],
                 "--output", str(self.folder / "results"), "--tidy", str(self.tidy), "--", *files]
        told = subprocess.run(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, check=False)
        self.told = told.stderr.decode("utf-8", "replace").strip()
        if told.returncode == WRONG_USAGE:
            raise JobError(self.told)
        if told.returncode < 0 or told.returncode > FIRST_SIGNALLED:
            raise JobError(f"kvatool was ended by a signal (status {told.returncode})")
        self.failed = [file for file in files if not self.results(file).is_dir()]
        if len(self.failed) < len(files) and not self.tidy.exists():
            raise JobError(self.told)

    def results(self, file):
        folder = self.folder / "results"
        return folder if len(self.files) == 1 else folder / os.path.basename(file)

    def remove(self):
        shutil.rmtree(self.folder)


def message_of(file, settings, scratch):
    """What kvatool says of a data file that failed among others."""
    alone = Call([file], settings, scratch)
    alone.remove()
    if not alone.failed:
        raise JobError(f"{file} failed among others and not by itself")
    return alone.told


# --- The table -----------------------------------------------------------------------------

def quoted(text):
    """A name as the table holds it: as it is, or in quotes if it has other than plain characters."""
    if all(c.isascii() and (c.isalnum() or c in "_-+.") for c in text):
        return text
    return '"' + text.replace('"', '""') + '"'


class Table:
    """The rows and columns of tables that are kept."""

    def __init__(self, out, settings):
        self.out = out
        self.columns = [plan.COLUMNS.index(column) for column in settings["columns"]]
        self.patterns = settings["statistics"]
        self.kept = {}  # statistic to whether it is
        self.rows = 0

    def keeps(self, statistic):
        if statistic not in self.kept:
            name = statistic.decode("ascii")
            self.kept[statistic] = not self.patterns or any(
                fnmatch.fnmatchcase(name, pattern) for pattern in self.patterns)
        return self.kept[statistic]

    def add(self, call):
        """Adds the table of a call, which has the column data only if it had several files."""
        front = b""
        heads = plan.COLUMNS
        if len(call.files) == 1:
            front = quoted(call.files[0]).encode("utf-8", "surrogateescape") + b"\t"
            heads = heads[1:]
        with open(call.tidy, "rb") as lines:
            if lines.readline() != "\t".join(heads).encode() + b"\n":
                raise JobError("the table of kvatool has other columns than it should have")
            everything = not self.patterns and self.columns == list(range(len(plan.COLUMNS)))
            for line in lines:
                line = front + line
                if not everything:
                    cells = line.rstrip(b"\n").split(b"\t")
                    if not self.keeps(cells[1]):
                        continue
                    line = b"\t".join(cells[column] for column in self.columns) + b"\n"
                self.out.write(line)
                self.rows += 1


# --- The job -------------------------------------------------------------------------------

class Kept:
    """The result folders, if they are kept: KEEP/NUMBER/0017_data.txt, renamed when whole."""

    def __init__(self, settings, number):
        self.folder = pathlib.Path(settings["keep"], number) if settings["keep"] else None
        self.unfinished = pathlib.Path(str(self.folder) + MARK)
        self.count = 0

    def take(self, call):
        for file in call.files:
            self.count += 1
            if self.folder and file not in call.failed:
                self.unfinished.mkdir(parents=True, exist_ok=True)
                shutil.move(call.results(file),
                            self.unfinished / f"{self.count:04d}_{os.path.basename(file)}")

    def finish(self):
        if self.folder and self.unfinished.exists():
            shutil.rmtree(self.folder, ignore_errors=True)
            self.unfinished.rename(self.folder)


def cpu_seconds():
    return sum(used.ru_utime + used.ru_stime
               for used in map(resource.getrusage, (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN)))


def run_calls(files, settings, scratch, table, kept):
    """Runs all data files. Those that failed, with what kvatool says."""
    failed = []
    for some in calls(files, settings):
        call = Call(some, settings, scratch)
        for file in call.failed:
            message = call.told if len(some) == 1 else message_of(file, settings, scratch)
            if settings["stop"]:
                raise JobError(message)
            failed.append({"data": file, "message": message})
        if len(call.failed) < len(some):
            table.add(call)
        kept.take(call)
        call.remove()
    return failed


def opened(name):
    if name.endswith(".gz"):
        # No time and no name in it: the same rows give the same bytes.
        return gzip.GzipFile(fileobj=open(name + MARK, "wb"), mode="wb", filename="", mtime=0,
                             compresslevel=6)
    return open(name + MARK, "wb")


def do_job(list_name, table_name, told_name, settings, scratch):
    begun = time.monotonic()
    with open(list_name, encoding="utf-8", errors="surrogateescape") as lines:
        files = [line.split("\t")[0] for line in lines if not line.startswith("# ")]
    kept = Kept(settings, pathlib.Path(list_name).stem)
    with opened(table_name) as out:
        raw = getattr(out, "fileobj", None)
        table = Table(out, settings)
        failed = run_calls(files, settings, scratch, table, kept)
    if raw:
        raw.close()
    kept.finish()
    told = {"files": len(files), "done": len(files) - len(failed), "rows": table.rows,
            "seconds": round(time.monotonic() - begun, 3), "cpu_seconds": round(cpu_seconds(), 3),
            "host": socket.gethostname(), "failed": failed}
    pathlib.Path(told_name + MARK).write_text(json.dumps(told) + "\n", encoding="utf-8",
                                              errors="surrogateescape")
    os.replace(table_name + MARK, table_name)
    os.replace(told_name + MARK, told_name)


def main():
    list_name, table_name, told_name = sys.argv[1:4]
    settings = {**json.loads(sys.argv[4]), **json.loads(sys.argv[5])}
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(FIRST_SIGNALLED + signal.SIGTERM))
    try:
        with tempfile.TemporaryDirectory(prefix="kva_", dir=settings["scratch"] or None) as scratch:
            do_job(list_name, table_name, told_name, settings, scratch)
    except (JobError, OSError) as wrong:
        sys.exit(f"chunk.py: {list_name}: {wrong}")
    finally:
        for name in (table_name, told_name):
            pathlib.Path(name + MARK).unlink(missing_ok=True)
        shutil.rmtree(str(Kept(settings, pathlib.Path(list_name).stem).unfinished), ignore_errors=True)


if __name__ == "__main__":
    main()
