#!/usr/bin/env python3
"""Every source and every script of a test stands in a CMake list, so that it is built and runs."""

import pathlib
import re
import unittest

TESTS = pathlib.Path(__file__).resolve().parent


def listed_words(folder):
    """The words of a folder's CMakeLists.txt without its comments."""
    file = folder / "CMakeLists.txt"
    text = file.read_text(encoding="utf-8") if file.exists() else ""
    return set(re.findall(r"[^\s()\"/;]+", re.sub(r"#.*", "", text)))


def is_listed(file):
    """Whether the list of its folder, or of one further up in tests/, names a file."""
    folders = [folder for folder in file.parents if folder == TESTS or TESTS in folder.parents]
    return any(file.name in listed_words(folder) for folder in folders)


class CMakeLists(unittest.TestCase):
    def test_every_test_is_listed(self):
        files = sorted([*TESTS.rglob("*.cpp"), *TESTS.rglob("*_test.py")])
        self.assertGreater(len(files), 50)
        missing = [str(file.relative_to(TESTS)) for file in files if not is_listed(file)]
        self.assertEqual(missing, [])


if __name__ == "__main__":
    unittest.main()
