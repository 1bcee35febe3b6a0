#!/usr/bin/env python3
"""Each reference that the report can write stands in CITATION.cff, with its authors, year, title and place.

Usage: references_test.py KVA KVATOOL

A run with each distance, a sequential test, global F-statistics, a bootstrap and a range of heterozygosity
makes pages that cite all of them; what the source lists says whether it is all.
"""

import html
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import citation  # noqa: E402

TOOL = pathlib.Path(sys.argv[2]).resolve()
MEASURES = ["POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"]


def written_references():
    """Those of a page for each measure."""
    with tempfile.TemporaryDirectory() as place:
        def tool(*words):
            return subprocess.run([TOOL, *words], cwd=place, check=True, capture_output=True,
                                  text=True, encoding="utf-8").stdout

        tool("run", citation.ROOT / "examples" / "testdata.dat", "-o", "r", "-q", "--fst", "pairs,global",
             "--permutations", "20", "--sequential", "2", "--distances", "population",
             "--bootstrap", "2", "--het-range", "2")
        found = set()
        for measure in MEASURES:
            listed = tool("report", "r", "--measure", measure).split('<ul id="references">')[1]
            found |= set(re.findall("<li>(.*?)</li>", listed.split("</ul>")[0]))
        return {html.unescape(reference) for reference in found}


def listed_in_source():
    """Those of the table of the source, their lines put together."""
    source = (citation.ROOT / "src" / "report" / "methodssection.cpp").read_text()
    table = source.split("kReferences = {{")[1].split("}};")[0]
    joined = re.sub(r'"\s+"', "", table)
    return set(re.findall(r'\{"[^"]*",\s*"([^"]*)"\}', joined))


class References(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.written = written_references()

    def test_pages_have_each_of_the_source(self):
        self.assertEqual(self.written, listed_in_source())

    def test_citation_has_each(self):
        whole = {"%s %s" % (authors, rest) for authors, _, rest in citation.references()}
        shortened = {"%s et al. %s" % (first, rest) for authors, first, rest in citation.references()
                     if authors.count(",") > 1}
        found = {citation.without_letter(reference) for reference in self.written}
        self.assertEqual(sorted(found - whole - shortened), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
