#!/usr/bin/env python3
"""The frame of kvatool: help, version, one line with status 2 for every wrong usage, and one with status
1 for every file that cannot be written.

Usage: usage_test.py KVATOOL
"""

import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()
EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "testdata.dat"


def run(*words):
    return subprocess.run([TOOL, *words], capture_output=True, text=True, check=False,
                          stdin=subprocess.DEVNULL)


def subcommands():
    """The names in the part "Subcommands:" of the help."""
    part = run("--help").stdout.split("Subcommands:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\S+)", part, re.MULTILINE)


class Help(unittest.TestCase):
    def test_each_level_has_help_with_examples(self):
        self.assertTrue({"check", "import"} <= set(subcommands()))
        for words in [()] + [(name,) for name in subcommands()]:
            with self.subTest(words=words):
                told = run(*words, "--help")
                self.assertEqual((told.returncode, told.stderr), (0, ""))
                self.assertIn("Examples:\n  kvatool %s" % " ".join(words), told.stdout)

    def test_version_is_that_of_the_library(self):
        told = run("--version")
        self.assertEqual((told.returncode, told.stdout, told.stderr), (0, "kvatool 4.05\n", ""))


class WrongUsage(unittest.TestCase):
    def refused(self, words, *parts):
        """Status 2, nothing on standard output, one line on standard error that holds the parts."""
        told = run(*words)
        self.assertEqual((told.returncode, told.stdout), (2, ""), told.stderr)
        self.assertEqual(told.stderr.count("\n"), 1, told.stderr)
        for part in ("kvatool", "--help", *parts):
            self.assertIn(part, told.stderr)

    def test_no_subcommand(self):
        self.refused([], "subcommand")

    def test_unknown_subcommand_names_the_nearest(self):
        self.refused(["chek"], "unknown command 'chek'", "nearest known one is 'check'")
        self.refused(["inport", "x", "-o", "y"], "'inport'", "nearest known one is 'import'")

    def test_unknown_option_names_the_nearest(self):
        self.refused(["--verson"], "unknown option '--verson'", "nearest known one is '--version'")
        self.refused(["check", "x", "--hlp"], "unknown option '--hlp'", "nearest known one is '--help'")
        self.refused(["import", "x", "--outptu=y", "-o", "y"], "'--outptu'", "'--output'")

    def test_missing_arguments(self):
        self.refused(["check"], "DATA")
        self.refused(["import", "x"], "--output")
        self.refused(["import", "x", "-o"], "--output")

    def test_one_argument_too_many(self):
        self.refused(["import", "x", "y", "-o", "z"], "'y'", "too many")


class SizeLimit(unittest.TestCase):
    """No file may have more than 1000 bytes: a line says so, and no part of one stays."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)
        subprocess.run([TOOL, "run", EXAMPLE, "-o", "r", "-q"], cwd=self.folder, check=True)

    def limited(self, *words, **how):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))
        return subprocess.run([TOOL, *words], cwd=self.folder, stdin=subprocess.DEVNULL, check=False,
                              stderr=subprocess.PIPE, text=True, preexec_fn=limit, **how)

    def test_file_that_is_named(self):
        for words in (["report", "r"], ["tidy", "r"],
                      ["import", "r/Formats&Data/Genepop.gen", "--repeat", "unknown"]):
            with self.subTest(words=words):
                told = self.limited(*words, "-o", "new")
                self.assertEqual(told.returncode, 1, told.stderr)
                self.assertRegex(told.stderr.splitlines()[-1], "^kvatool %s: .*too large" % words[0])
                self.assertEqual([entry.name for entry in self.folder.iterdir()], ["r"])

    def test_standard_output(self):
        with (self.folder / "told.json").open("w") as out:
            told = self.limited("check", "--json", EXAMPLE, stdout=out)
        self.assertEqual((told.returncode, told.stderr),
                         (1, "kvatool: cannot write to standard output\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
