#!/usr/bin/env python3
"""The reading of blocks and the comparing of lines in commands_test.py."""

import pathlib
import tempfile
import unittest

import commands_test


class Steps(unittest.TestCase):
    def test_commands_with_their_lines(self):
        self.assertEqual(
            commands_test.steps(["$ one", "a", "b", "$ two", "$ three", "c"]),
            [["one", ["a", "b"]], ["two", []], ["three", ["c"]]])

    def test_command_goes_on_behind_a_backslash_and_in_marked_lines(self):
        self.assertEqual(
            commands_test.steps(["$ one \\", "    more", "$ cat <<E", "> text", "> E", "text", "> no"]),
            [["one \\\n    more", []], ["cat <<E\ntext\nE", ["text", "> no"]]])


class Fits(unittest.TestCase):
    def test_same_lines_but_for_blanks_at_the_end(self):
        self.assertTrue(commands_test.fits(["a", "b\t"], ["a  ", "b"]))
        self.assertFalse(commands_test.fits(["a"], ["b"]))
        self.assertFalse(commands_test.fits(["a", "b"], ["a"]))
        self.assertFalse(commands_test.fits(["a"], ["a", "b"]))
        self.assertFalse(commands_test.fits([], ["a"]))

    def test_dots_stand_for_any_lines(self):
        self.assertTrue(commands_test.fits(["...", "z"], ["a", "b", "z"]))
        self.assertTrue(commands_test.fits(["a", "..."], ["a"]))
        self.assertTrue(commands_test.fits(["a", "...", "z", "..."], ["a", "z", "y", "z", "x"]))
        self.assertFalse(commands_test.fits(["a", "...", "z"], ["a", "b"]))

    def test_dots_at_the_end_of_a_line_stand_for_its_rest(self):
        self.assertTrue(commands_test.fits(["took ..."], ["took 0.3 s"]))
        self.assertFalse(commands_test.fits(["took ..."], ["gave 0.3 s"]))


class Blocks(unittest.TestCase):
    def test_words_of_the_fence(self):
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder) / "page.md"
            page.write_text("```sh needs=a,b\n$ x\n```\ntext\n```text file=f.txt\n1\n```\n")
            runs, file = commands_test.blocks(page)
        self.assertTrue(runs.runs())
        self.assertEqual(runs.options, {"needs": "a,b"})
        self.assertFalse(file.runs())
        self.assertEqual((file.options, file.lines, file.line), ({"file": "f.txt"}, ["1"], 5))


class Needs(unittest.TestCase):
    def block(self, *lines, needs=""):
        block = commands_test.Block(commands_test.ROOT / "page.md", 1, "needs=" + needs)
        block.lines = list(lines)
        return block

    def test_block_that_lacks_a_program_is_skipped_and_told(self):
        run = commands_test.PageRun(None, {})
        run.run(self.block("$ false", needs="sh,no-such-program"))
        self.assertEqual((run.commands, run.failures), (0, 0))
        self.assertEqual(run.skipped, ["page.md:1, which needs no-such-program"])


if __name__ == "__main__":
    unittest.main()
