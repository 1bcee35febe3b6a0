#!/usr/bin/env python3
"""Starts the program with standard streams closed: nothing of the console may land in its files.

Usage: closed_streams_test.py PROGRAM DATAFILE
"""

import itertools
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, DATA = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
STREAMS = (0, 1, 2)


def results_of(closed):
    """Status and result files of a run that begins with some descriptors closed."""
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(DATA, folder)
        descriptors = " ".join("%d>&-" % number for number in closed)
        run = subprocess.run(
            ["sh", "-c", 'exec "$0" "$@" ' + descriptors, PROGRAM, "-i", DATA.name],
            cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, check=False)
        results = pathlib.Path(folder, DATA.name + "_KVAresult00")
        files = {file.relative_to(results): file.read_bytes()
                 for file in results.rglob("*") if file.is_file()}
        return run.returncode, files


class ClosedStreams(unittest.TestCase):
    def test_log_is_the_log_alone(self):
        status, whole = results_of(())
        log = pathlib.Path("KVA.log")
        self.assertEqual(status, 1)
        self.assertTrue(whole[log].startswith(b"KVAnalyser-Log\n"))
        for count in (1, 2, 3):
            for closed in itertools.combinations(STREAMS, count):
                with self.subTest(closed=closed):
                    status, files = results_of(closed)
                    self.assertEqual(status, 1)
                    self.assertEqual(files[log], whole[log])
                    self.assertEqual(files.keys(), whole.keys())


if __name__ == "__main__":
    os.environ["LC_ALL"] = "C"
    unittest.main(argv=sys.argv[:1])
