#!/usr/bin/env python3
"""Tests of the report's judgements and data sets; nothing is measured."""

import unittest

import datasets
import goals
import growth
import report


class Verdict(unittest.TestCase):
    def test_five_percent_either_way_are_allowed(self):
        self.assertEqual(report.verdict(104.9, 100.0), "")
        self.assertEqual(report.verdict(95.1, 100.0), "")

    def test_more_is_a_slip_and_less_a_gain(self):
        self.assertEqual(report.verdict(105.1, 100.0), "slip")
        self.assertEqual(report.verdict(94.9, 100.0), "gain")

    def test_a_row_without_a_stored_figure_is_new(self):
        self.assertEqual(report.verdict(1.0, None), "new")


class Growth(unittest.TestCase):
    def test_output_or_work_may_grow_as_fast(self):
        self.assertFalse(growth.Growth("loci", "pass", 2.1, 2.0, 1.0).too_fast)
        self.assertFalse(growth.Growth("loci", "pass", 4.0, 1.0, 4.0).too_fast)
        self.assertTrue(growth.Growth("loci", "pass", 4.0, 2.0, 2.0).too_fast)


class Stored(unittest.TestCase):
    def test_every_short_row_has_a_figure_and_no_other_has(self):
        stored = report.stored_figures(report.FIGURES)
        self.assertEqual(list(stored["figures"]), [row.name for row in goals.SHORT])


class Data(unittest.TestCase):
    def test_counts_follow_from_the_shape(self):
        data = datasets.made(3, 4, 5)
        self.assertEqual((data.populations, data.individuals, data.pairs), (3, 12, 3))
        self.assertEqual(data.slots, 2 * 12 * 5)
        self.assertEqual(data.pair_slots, data.slots * 2)

    def test_a_row_of_text_for_each_individual(self):
        data = datasets.made(3, 4, 5)
        lines = data.text.splitlines()
        self.assertEqual(len(lines), 3 + 12)
        self.assertEqual({line.count("\t") for line in lines}, {2 + 2 * 5})

    def test_alleles_stay_within_their_number(self):
        data = datasets.made(5, 40, 6, 8, 12)
        self.assertTrue(6 * 6 <= data.pool_alleles <= 6 * 12)

    def test_the_cats_are_complete(self):
        data = datasets.cats()  # 17 colonies, 237 cats, 108 alleles at 9 loci
        self.assertEqual((data.populations, data.individuals, data.loci), (17, 237, 9))
        self.assertEqual(data.pool_alleles, 108)


if __name__ == "__main__":
    unittest.main()
