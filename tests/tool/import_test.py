#!/usr/bin/env python3
"""kvatool import from outside: what it writes and does not, exit status, and one line for failures.

Usage: import_test.py KVATOOL
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()

GENEPOP = "Title\nLocA\nPop\nNorth, 104106\nPop\nSouth, 104104\n"
STRUCTURE = "LocA LocB\nN1 1 104 88\nN1 1 106 -9\n"


class Import(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)

    def write(self, name, text):
        (self.folder / name).write_bytes(text if isinstance(text, bytes) else text.encode())

    def run_tool(self, *words, **options):
        return subprocess.run([TOOL, "import", *words], cwd=self.folder, capture_output=True,
                              text=True, check=False, stdin=subprocess.DEVNULL, **options)

    def refused(self, status, words, *parts):
        """One line on standard error that holds the parts, and no new file."""
        before = sorted(self.folder.iterdir())
        told = self.run_tool(*words)
        self.assertEqual((told.returncode, told.stdout), (status, ""), told.stderr)
        self.assertEqual(told.stderr.count("\n"), 1, told.stderr)
        for part in ("kvatool import: ", *parts):
            self.assertIn(part, told.stderr)
        self.assertEqual(sorted(self.folder.iterdir()), before)

    def test_data_file_and_what_is_told(self):
        self.write("cats.gen", GENEPOP)
        told = self.run_tool("cats.gen", "-o", "data.txt", "--repeat", "2")
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertEqual(told.stdout, "data.txt: 2 populations, 2 individuals, 1 loci, read as "
                                      "Genepop\n")
        self.assertEqual((self.folder / "data.txt").read_text(),
                         "2\t\t\t2\t\n\t\t\t\t\n\t\t\tLocA\tLocA_2\n"
                         "North\td\t0\t104\t106\nSouth\td\t0\t104\t104\n")
        self.assertEqual(sorted(os.listdir(self.folder)), ["cats.gen", "data.txt"])

    def test_repeats_by_a_table(self):
        self.write("cats.gen", GENEPOP)
        self.write("repeats", "locus\trepeat\trest\nLocA\t2\t100\n")
        told = self.run_tool("cats.gen", "-o", "data.txt", "--repeats", "repeats")
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertTrue((self.folder / "data.txt").read_text().startswith(
            "2\t\t\t2\t\n\t\t\t100\t\n"))
        self.write("repeats", "LocX\t2\n")
        self.refused(1, ["cats.gen", "-o", "new", "--repeats", "repeats"],
                     "repeats: line 1: 'LocX'", "'LocA'")
        self.refused(1, ["cats.gen", "-o", "new", "--repeats", "none"],
                     "none: No such file")

    def test_repeat_lengths_are_asked_for(self):
        self.write("cats.gen", GENEPOP)
        self.refused(2, ["cats.gen", "-o", "data.txt"], "--repeat", "--repeats")
        self.refused(2, ["cats.gen", "-o", "data.txt", "--repeat", "2", "--repeats", "x"],
                     "--repeat")
        self.refused(2, ["cats.gen", "-o", "data.txt", "--repeat", "two"], "'two'")

    def test_files_are_replaced_only_by_force(self):
        self.write("cats.gen", GENEPOP)
        self.write("data.txt", "mine")
        self.refused(1, ["cats.gen", "-o", "data.txt", "--repeat", "2"],
                     "cannot write 'data.txt'", "--force")
        self.assertEqual((self.folder / "data.txt").read_text(), "mine")
        told = self.run_tool("cats.gen", "-o", "data.txt", "--repeat", "2", "--force")
        self.assertEqual(told.returncode, 0)
        self.assertIn("North", (self.folder / "data.txt").read_text())

    def test_wrong_words_name_the_nearest(self):
        self.write("cats.gen", GENEPOP)
        self.refused(2, ["cats.gen", "-o", "x", "--repeat", "2", "--format", "genpop"],
                     "unknown format 'genpop'", "'genepop'")
        self.refused(2, ["cats.gen", "-o", "x", "--repeat", "2", "--half-missing", "kep"],
                     "unknown word of --half-missing 'kep'", "'keep'")

    def test_missing_options_are_status_2_and_named(self):
        self.write("cats.str", STRUCTURE)
        words = ["cats.str", "-o", "data.txt", "--repeat", "2"]
        for option, value in (("--rows", "2"), ("--pop-column", "2"), ("--missing", "-9")):
            self.refused(2, words, option)
            words += [option, value]
        told = self.run_tool(*words)
        self.assertEqual((told.returncode, told.stderr), (0, ""))

    def test_options_may_stand_in_front_of_the_file(self):
        self.write("cats.str", STRUCTURE)
        told = self.run_tool("--missing", "-9,0", "--rows", "2", "--pop-column", "2", "--repeat",
                             "2", "-o", "data.txt", "cats.str")
        self.assertEqual((told.returncode, told.stderr), (0, ""))

    def test_bad_input_is_status_1(self):
        self.write("empty", "")
        self.write("prose", "hello world\n")
        self.write("zip", b"PK\x03\x04")
        self.write("bad.gen", GENEPOP.replace("104106", "1041x6"))
        for name, part in (("empty", "no text"), ("prose", "--format"), ("zip", "plain text"),
                           ("bad.gen", "line 4: '1041x6'"), ("none", "No such file"),
                           (".", "it is a folder")):
            self.refused(1, [name, "-o", "data.txt", "--repeat", "2"], name, part)

    def test_output_that_cannot_be_written(self):
        self.write("cats.gen", GENEPOP)
        self.refused(1, ["cats.gen", "-o", "none/data.txt", "--repeat", "2"],
                     "cannot write 'none/data.txt'", "No such file")
        self.refused(1, ["cats.gen", "-o", ".", "--repeat", "2", "--force"], "folder")

    def test_full_disk_and_closed_streams(self):
        self.write("cats.gen", GENEPOP)
        with open("/dev/full", "w", encoding="ascii") as full:
            told = subprocess.run([TOOL, "import", "cats.gen", "-o", "full", "--repeat", "2"],
                                  cwd=self.folder, stdout=full, stderr=subprocess.PIPE, text=True,
                                  check=False)
        self.assertEqual((told.returncode, told.stderr),
                         (1, "kvatool: cannot write to standard output\n"))
        told = subprocess.run(["sh", "-c", 'exec "$0" import cats.gen -o data.txt --repeat 2 '
                                           ">&- 2>&- <&-", TOOL], cwd=self.folder, check=False)
        self.assertEqual(told.returncode, 0)
        self.assertTrue((self.folder / "data.txt").read_text().startswith("2\t\t\t2\t\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
