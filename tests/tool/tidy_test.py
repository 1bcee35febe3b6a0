#!/usr/bin/env python3
"""kvatool tidy from outside: where the table goes, what is told, and the exit status.

Usage: tidy_test.py KVATOOL
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()
HEAD = b"statistic\tpopulation1\tpopulation2\tlocus\treplicate\tvalue\n"
TABLE = HEAD + b'heterozygosity_expected\tTotal\t\tL1\t\t0.5\nheterozygosity_expected\t"A B"\t\tL1\t\t\n'


class Tidy(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)
        self.sheet = self.folder / "result" / "Single_data" / "Hetexp.xls"
        self.sheet.parent.mkdir(parents=True)
        self.sheet.write_text("\tL1\t\nTotal\t0.5\t\nA B\tn.d.\t\n")

    def tidy(self, *words, **how):
        how.setdefault("stdout", subprocess.PIPE)
        return subprocess.run([TOOL, "tidy", *words], cwd=self.folder, stdin=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, check=False, **how)

    def test_table_goes_to_standard_output(self):
        told = self.tidy("result")
        self.assertEqual((told.returncode, told.stdout, told.stderr), (0, TABLE, b""))

    def test_table_goes_to_a_file(self):
        told = self.tidy("result", "-o", "table.txt")
        self.assertEqual((told.returncode, told.stdout, told.stderr), (0, b"", b""))
        self.assertEqual((self.folder / "table.txt").read_bytes(), TABLE)

    def test_bad_sheet_is_told_with_its_line(self):
        self.sheet.write_text("\tL1\t\nTotal\t0.5\t\nA\tx\t\n")
        told = self.tidy("result")
        self.assertEqual(told.returncode, 1)
        self.assertEqual(told.stdout, HEAD + b"heterozygosity_expected\tTotal\t\tL1\t\t0.5\n")
        self.assertEqual(told.stderr,
                         b'kvatool tidy: Single_data/Hetexp.xls: line 3: "x" is no number\n')

    def test_folder_that_is_none_is_told(self):
        told = self.tidy("absent")
        self.assertEqual((told.returncode, told.stderr),
                         (1, b"kvatool tidy: absent: is no folder\n"))

    def test_file_that_cannot_be_made_is_told(self):
        told = self.tidy("result", "-o", "no/table.txt")
        self.assertEqual((told.returncode, told.stderr),
                         (1, b"kvatool tidy: cannot write 'no/table.txt': "
                             b"No such file or directory\n"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "no /dev/full")
    def test_full_disk_is_told(self):
        told = self.tidy("result", "-o", "/dev/full")
        self.assertEqual((told.returncode, told.stderr.count(b"\n")), (1, 1))
        self.assertIn(b"cannot write '/dev/full'", told.stderr)
        with open("/dev/full", "wb") as full:
            told = self.tidy("result", stdout=full)
        self.assertEqual((told.returncode, told.stderr),
                         (1, b"kvatool: cannot write to standard output\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
