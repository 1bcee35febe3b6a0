#!/usr/bin/env python3
"""The frame of kvatool: help, version, and one line with status 2 for every wrong usage.

Usage: usage_test.py KVATOOL
"""

import pathlib
import re
import subprocess
import sys
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()


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


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
