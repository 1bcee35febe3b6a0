#!/usr/bin/env python3
"""Tests of the names of sections and of what a case compares."""

import unittest

import cases
import run
import sections

ONE_RUN = {
    "work": None,
    "work/my data": None,
    "work/my data/a_KVAresult00": None,  # empty: no run's
    "work/my data/a_KVAresult01": None,
    "work/my data/a_KVAresult01/KVA.log": b"log",
    "work/my data/a_KVAresult01/F": None,
    "work/my data/a_KVAresult01/F/IM": None,
    "work/my data/a_KVAresult01/F/IM/b c": b"im",
}
TWO_RUNS = {
    "work": None,
    "work/a_KVAresult00": None,
    "work/a_KVAresult00/KVA.log": b"1",
    "work/a_KVAresult03": None,
    "work/a_KVAresult03/F": None,
    "work/a_KVAresult03/F/x": b"2",
    "work/a_KVAresult03/KVA.log": b"3",
}


class Tree(unittest.TestCase):
    def test_names_are_paths_in_the_result_folder(self):
        self.assertEqual(sections.of_tree(ONE_RUN), {
            "work/": b"my data/\n",
            "work/my data/": b"a_KVAresult00/\na_KVAresult01/\n",
            "./": b"F/\nKVA.log\n",
            "F/": b"IM/\n",
            "F/IM/": b"b c\n",
            "KVA.log": b"log",
            "F/IM/b c": b"im",
        })

    def test_further_runs_are_numbered(self):
        self.assertEqual(sections.of_tree(TWO_RUNS), {
            "work/": b"a_KVAresult00/\na_KVAresult03/\n",
            "./": b"KVA.log\n",
            "#2 ./": b"F/\nKVA.log\n",
            "#2 F/": b"x\n",
            "KVA.log": b"1",
            "#2 F/x": b"2",
            "#2 KVA.log": b"3",
        })

    def test_nothing_left_behind_has_no_section(self):
        self.assertEqual(sections.of_tree({"work": None}), {})

    def test_the_order_is_head_working_folder_and_each_run(self):
        names = ["status", "console", "standard error", "work/", "work/a/", "./", "F/", "F/x", "y",
                 "#2 ./", "#2 F/", "#2 F/x", "#10 ./"]
        self.assertEqual(sorted(reversed(names), key=sections.order), names)


class Compared(unittest.TestCase):
    FOUND = {"status": b"", "console": b"", "./": b"", "F/": b"", "F/x.xls": b"", "KVA.log": b"",
             "#2 ./": b"", "#2 F/x.xls": b"", "standard error": b"!"}
    ALWAYS = ["status", "console", "standard error", "./", "#2 ./"]

    def names(self, case):
        return sorted(cases.compared(case, self.FOUND), key=sections.order)

    def expected(self, *files):
        return sorted([*self.ALWAYS, "F/", *files], key=sections.order)

    def test_status_console_and_all_names_count_always(self):
        self.assertEqual(self.names({"compare": "console"}), self.expected())

    def test_patterns_name_files_of_every_run(self):
        self.assertEqual(self.names({"compare": "G/* F/*"}),
                         self.expected("F/x.xls", "#2 F/x.xls"))
        self.assertEqual(self.names({"compare": "KVA.log"}), self.expected("KVA.log"))

    def test_all_names_every_file_and_so_does_a_case_without_the_key(self):
        for case in ({"compare": "all"}, {}):
            self.assertEqual(self.names(case),
                             self.expected("F/x.xls", "KVA.log", "#2 F/x.xls"))


    def test_what_is_stored_and_not_compared_is_told(self):
        self.assertEqual(run.unexplained("a", {"compare": "F/* KVA.*"}, self.FOUND), [])
        self.assertEqual(run.unexplained("a", {"compare": "console"}, self.FOUND), [
            "expected/a.txt: F/x.xls is not compared",
            "expected/a.txt: KVA.log is not compared",
            "expected/a.txt: #2 F/x.xls is not compared"])

    def test_a_pattern_without_a_file_is_told(self):
        found = {"status": b"", "./": b"", "KVA.log": b""}
        self.assertEqual(run.unexplained("a", {"compare": "KVA.log F/*"}, found),
                         ["a: 'compare' names F/*, which the case does not have"])


class Differences(unittest.TestCase):
    def test_the_first_differing_line_of_each_section_is_told(self):
        self.assertEqual(
            run.compare({"a": b"1\n2\n3\n", "b": b"1\n", "c": b"1", "same": b"0"},
                        {"a": b"1\n\t2 \n4\n", "c": b"1\n", "d": b"", "same": b"0"}),
            ["a, line 2\n  expected: 2\n  now:      \t2\\x20",
             "c, line 1\n  expected: 1\\\n  now:      1",
             "d: not expected at all",
             "b: expected, but not there"])

    def test_a_section_that_goes_on_tells_where_it_ended(self):
        self.assertEqual(run.compare({"a": b"1\n"}, {"a": b"1\n2\n3\n"}),
                         ["a: the same up to line 1, then 1 lines expected, now 3"])


if __name__ == "__main__":
    unittest.main()
