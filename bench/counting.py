"""Runs of the program in a folder of their own: instructions, seconds, bytes written.

The clock is libfaketime's and goes on by a second each time it is asked, so that every batch of
permutations has seeds of its own, the same in every run.
"""

import glob
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

CLOCK = "@2024-01-02 03:04:05 i1.0"
FILE = "data.txt"
CALLGRIND = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"]


class Missing(Exception):
    """A tool that measuring needs is not installed."""


def faketime_library():
    for pattern in ("/usr/lib/*/faketime", "/usr/lib*/faketime", "/usr/local/lib/faketime"):
        for file in glob.glob(pattern + "/libfaketime.so.1"):
            return file
    raise Missing("libfaketime is not installed (scripts/setup.sh test)")


def run(command, data, options):
    """What a command leaves: standard error, bytes of the result files, seconds."""
    environment = {"PATH": os.environ["PATH"], "TZ": "UTC", "LC_ALL": "C",
                   "LD_PRELOAD": faketime_library(), "FAKETIME": CLOCK}
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / FILE).write_text(data.text, encoding="ascii")
        begin = time.perf_counter()
        done = subprocess.run(command + ["-i", FILE] + options.split(), cwd=folder,
                              env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              text=True, check=False)
        seconds = time.perf_counter() - begin
        if done.returncode != 1:
            raise RuntimeError("%s: status %d\n%s" % (options, done.returncode, done.stderr))
        results = pathlib.Path(folder).glob("*_KVAresult*/**/*")
        written = sum(file.stat().st_size for file in results if file.is_file())
    return done.stderr, written, seconds


def counted(kva, data, options):
    """Instructions of a run, and the bytes it writes."""
    if not shutil.which("valgrind"):
        raise Missing("valgrind is not installed (scripts/setup.sh test)")
    told, written, _ = run(CALLGRIND + [str(kva)], data, options)
    return int(re.search(r"Collected : (\d+)", told)[1]), written


def nanoseconds(kva, data, options, runs=3):
    """Wall time of the fastest of some runs."""
    return 1e9 * min(run([str(kva)], data, options)[2] for _ in range(runs))
