#!/usr/bin/env python3
"""Tests of the store of expectations: what is written reads the same, to the byte."""

import itertools
import os
import pathlib
import random
import tempfile
import unittest

import cases
import store
from sections import in_run
from store import Reference

EXPECTED = cases.HERE / "expected"

# What could be taken for something else: marks of the format, line ends, bytes that show nothing.
NASTY = [b"", b"=== ", b"===", b"==", b"=", b"as in ", b" = ", b"\\", b"\\x41", b"\n", b"\r", b"\t",
         b" ", b"\0", b"\x7f", b"\xff", b"\xc3\xa4", b"a"]


class Bytes(unittest.TestCase):
    def assert_round_trip(self, data):
        lines = store.lines_of(data)
        self.assertEqual(store.bytes_of(lines), data)
        for line in lines:
            self.assertRegex(line, r"^[\t\x20-\x7e]*$")
            self.assertFalse(line.endswith(" ") or line.startswith("==="), line)
        sections = {"one": data, "two": data}
        self.assertEqual(store.parse(store.layout(sections)), sections)

    def test_every_byte_alone_and_between_others_round_trips(self):
        for byte in range(256):
            for around in (b"%b", b"a%bb", b"%b\n", b"\n%b", b"a\n%b", b" %b ", b"==%b"):
                self.assert_round_trip(around % bytes([byte]))

    def test_all_rows_of_three_nasty_pieces_round_trip(self):
        for pieces in itertools.product(NASTY, repeat=3):
            self.assert_round_trip(b"".join(pieces))

    def test_random_bytes_round_trip(self):
        stream = random.Random(20240102)
        for _ in range(500):
            self.assert_round_trip(b"".join(stream.choices(NASTY, k=stream.randrange(40))))
            self.assert_round_trip(stream.randbytes(stream.randrange(200)))

    def test_plain_lines_with_tabs_stand_as_they_are(self):
        self.assertEqual(store.lines_of(b"\tLocA\t\nTotal\t0.5\t\n"), ["\tLocA\t", "Total\t0.5\t"])

    def test_what_shows_nothing_is_made_visible(self):
        self.assertEqual(store.lines_of(b"a \r\nb\\\0\xe4\n=== c"),
                         ["a \\x0d", "b\\x5c\\x00\\xe4", "\\x3d== c\\"])
        self.assertEqual(store.lines_of(b"a \n"), ["a\\x20"])

    def test_an_absent_line_end_differs_from_an_empty_line(self):
        self.assertEqual(store.lines_of(b""), [])
        self.assertEqual(store.lines_of(b"\n"), [""])
        self.assertEqual(store.lines_of(b"a"), ["a\\"])
        self.assertEqual(store.lines_of(b"a\n"), ["a"])


class Files(unittest.TestCase):
    def test_nasty_names_and_references_round_trip(self):
        names = [b"".join(pieces) for pieces in itertools.product(NASTY, repeat=2)]
        names = [os.fsdecode(name) for name in names]
        for name, other in itertools.product(names, names[::7]):
            sections = {name: b"x\ny", name + "2": Reference("c", other), "#2 " + other: b""}
            self.assertEqual(store.parse(store.layout(sections)), sections)

    def test_the_form_of_a_case(self):
        sections = {"status": b"1\n", "./": b"a\nb\n", "a": Reference("plain", "a"),
                    "b": Reference("plain", "c"), "#2 a": Reference("plain", "a")}
        self.assertEqual(store.layout(sections),
                         "=== status\n1\n=== ./\na\nb\n=== as in plain\na\nb = c\n#2 a\n")

    def test_what_is_no_store_is_refused(self):
        for text in ("", "a\n", "=== a\nb", "=== a\n\\\\\n", "=== a\nb\\x4\n", "=== a\n====\n",
                     "=== a\n=== a\n", "=== a\n=== as in b\na\n"):
            with self.assertRaises(store.Malformed, msg=repr(text)):
                store.parse(text)


class Folder(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name) / "expected"

    def save(self, outcomes):
        return store.save(self.folder, store.layout_all(outcomes))

    def text(self, case):
        return (self.folder / (case + ".txt")).read_text(encoding="ascii")

    def test_all_cases_load_as_they_were_saved(self):
        long = b"1\n2\n"
        outcomes = {
            "a": {"F/x": long, "F/y": long, "z": b"\0"},
            "b": {"F/x": long, "F/y": long, "F/v": long, "#2 F/x": long, "z": b"\0"},
            "c": {"F/y": long, "F/w": b"3\n4", "#2 F/w": b"3\n4"},
        }
        self.save(outcomes)
        self.assertEqual({case: store.load(self.folder, case) for case in outcomes}, outcomes)

    def test_a_section_is_written_out_once(self):
        self.save({"a": {"x": b"1\n2\n"}, "b": {"x": b"1\n2\n", "y": b"1\n2\n"},
                   "c": {"F/x": b"1\n2\n", "y": b"1\n2\n", "#2 x": b"1\n2\n"}})
        self.assertEqual(self.text("a"), "=== x\n1\n2\n")
        self.assertEqual(self.text("b"), "=== as in a\nx\n=== as in b\ny = x\n")
        self.assertEqual(self.text("c"), "=== F/x\n1\n2\n=== as in b\ny\n=== as in a\n#2 x\n")

    def test_a_single_line_is_shorter_than_a_reference(self):
        self.save({"a": {"x": b"1\n"}, "b": {"x": b"1\n"}})
        self.assertEqual(self.text("b"), "=== x\n1\n")

    def test_only_what_differs_is_written(self):
        self.save({"a": {"x": b"1\n2\n"}, "b": {"x": b"1\n2\n"}, "c": {"x": b"5\n6\n"}})
        changed = self.save({"a": {"x": b"1\n2\n"}, "b": {"x": b"1\n3\n"}})
        self.assertEqual(changed, ["c.txt (removed)", "b.txt"])
        self.assertEqual(self.text("b"), "=== x\n1\n3\n")

    def test_a_reference_to_nothing_or_in_a_circle_is_refused(self):
        for texts in ({"a": "=== as in b\nx\n"}, {"a": "=== as in a\nx\n"},
                      {"a": "=== as in b\nx\n", "b": "=== y\n"},
                      {"a": "=== as in b\nx\n", "b": "=== as in a\nx\n"}):
            store.save(self.folder, texts)
            with self.assertRaises(store.Malformed, msg=texts):
                store.load(self.folder, "a")


class Expectations(unittest.TestCase):
    def test_all_of_them_read_as_they_are_written(self):
        outcomes = {case: store.load(EXPECTED, case) for case in store.cases_in(EXPECTED)}
        self.assertGreater(len(outcomes), 100)
        with tempfile.TemporaryDirectory() as place:
            folder = pathlib.Path(place)
            store.save(folder, store.layout_all(outcomes))
            for case, sections in outcomes.items():
                self.assertEqual(store.load(folder, case), sections)
                self.assertEqual(store.parse(store.layout(sections)), sections)

    def test_no_section_of_several_lines_is_written_out_twice_in_a_folder(self):
        seen = {}
        for case in store.cases_in(EXPECTED):
            text = (EXPECTED / (case + ".txt")).read_text(encoding="ascii")
            for name, data in store.parse(text).items():
                if isinstance(data, bytes) and data.count(b"\n") > 1:
                    key = (in_run(name).rpartition("/")[0], data)
                    self.assertNotIn(key, seen, "%s: %s" % (case, name))
                    seen[key] = case


if __name__ == "__main__":
    unittest.main()
