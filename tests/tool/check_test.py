#!/usr/bin/env python3
"""kvatool check from outside: exit status, JSON, and one line for a file that cannot be read.

Usage: check_test.py KVATOOL
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()

WHOLE = ("2\t\t\t2\t\n\t\t\t100\t\n\t\t\tLocA\tLocA_2\n"
         "North\td\t1\t104\t106\nSouth\th\t2\t104\t104\n")


class Check(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)

    def run_on(self, *words, **files):
        for name, text in files.items():
            (self.folder / name).write_bytes(text if isinstance(text, bytes) else text.encode())
        return subprocess.run([TOOL, "check", *words], cwd=self.folder, capture_output=True,
                              text=True, check=False, stdin=subprocess.DEVNULL)

    def test_status_0_without_errors_and_with_warnings(self):
        told = self.run_on("whole", "half", whole=WHOLE, half=WHOLE.replace("104\t104", "104\t"))
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertIn("whole: no error, no warning, no note\n", told.stdout)
        self.assertIn("half: no error, 1 warning, no note\n", told.stdout)

    def test_status_1_with_an_error_in_one_file(self):
        told = self.run_on("bad", "whole", whole=WHOLE, bad=WHOLE.replace("106", "106.5"))
        self.assertEqual((told.returncode, told.stderr), (1, ""))
        self.assertIn("error: decimal", told.stdout)
        self.assertIn("row 4, column 5 (106.5)", told.stdout)

    def test_file_that_cannot_be_read_is_a_line_and_the_others_are_checked(self):
        told = self.run_on("none", "whole", whole=WHOLE)
        self.assertEqual(told.returncode, 1)
        self.assertEqual(told.stderr,
                         "kvatool check: cannot read 'none': No such file or directory\n")
        self.assertIn("whole: no error", told.stdout)

    def test_json_holds_findings_and_what_was_understood(self):
        told = self.run_on("--json", "bad", "none", bad=WHOLE.replace("South\th\t2", "South\tx\t2"))
        self.assertEqual(told.returncode, 1)  # the second file is not there
        bad, none = json.loads(told.stdout)["files"]
        self.assertEqual((bad["file"], bad["failure"]), ("bad", None))
        self.assertEqual((bad["errors"], bad["warnings"], bad["notes"]), (0, 1, 0))
        finding, = bad["findings"]
        self.assertEqual((finding["code"], finding["severity"], finding["count"]),
                         ("type-unknown", "warning", 1))
        self.assertEqual(finding["places"], [{"row": 5, "column": 2, "found": "x"}])
        understood = bad["understood"]
        self.assertEqual([population["name"] for population in understood["populations"]],
                         ["North", "South"])
        self.assertEqual(understood["loci"], [
            {"name": "LocA", "repeat": 2, "rest": 100, "alleles": 2, "smallest": 104,
             "largest": 106, "copies": 4, "missing": 0}])
        self.assertEqual(none["failure"], "No such file or directory")
        self.assertIsNone(none["understood"])

    def test_json_is_valid_whatever_bytes_a_name_has(self):
        told = self.run_on("--json", "data", data=WHOLE.encode().replace(b"South", b"S\xfcd\x01"))
        self.assertEqual(told.returncode, 0)
        report, = json.loads(told.stdout)["files"]
        self.assertEqual(report["understood"]["populations"][1]["name"], "S\ufffdd\x01")

    def test_nothing_is_written(self):
        self.run_on("whole", "bad", whole=WHOLE, bad="x")
        self.assertEqual(sorted(file.name for file in self.folder.iterdir()), ["bad", "whole"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
