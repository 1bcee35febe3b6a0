#!/usr/bin/env python3
"""Links between the documents lead somewhere: the file is there, and the heading; CITATION.cff has the methods.

Headings give anchors as GitHub and the site make them. Links to other hosts are not followed.
"""

import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import citation  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
LINK = re.compile(r"\[(?:[^\]\[]|\[[^\]]*\])*\]\(([^)\s]+)\)")


def documents():
    """The pages of the repository, not those of builds."""
    folders = (".", "docs", "r", "examples", "tests/end_to_end", "tests/end_to_end/input")
    return sorted(page for folder in folders for page in (ROOT / folder).glob("*.md"))


def without_code(text):
    text = re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S)
    return re.sub(r"`[^`\n]*`", lambda found: "x" * len(found.group()), text)


def anchors(page):
    text = re.sub(r"^```.*?^```$", "", page.read_text(), flags=re.M | re.S)
    found = set()
    for heading in re.findall(r"^#+ (.*)$", text, flags=re.M):
        plain = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").lower()
        anchor = re.sub(r"[^\w\- ]", "", plain).strip().replace(" ", "-")
        while anchor in found:
            anchor += "-1"
        found.add(anchor)
    return found


class Links(unittest.TestCase):
    def test_each_leads_somewhere(self):
        wrong, count = [], 0
        for page in documents():
            for link in LINK.findall(without_code(page.read_text())):
                if "://" in link or link.startswith("mailto:"):
                    continue
                count += 1
                name, _, anchor = link.partition("#")
                target = (page.parent / name).resolve() if name else page
                if not target.exists():
                    wrong.append("%s: no file %s" % (page.relative_to(ROOT), link))
                elif anchor and (target.suffix != ".md" or anchor not in anchors(target)):
                    wrong.append("%s: no heading %s" % (page.relative_to(ROOT), link))
        self.assertEqual(wrong, [])
        self.assertGreater(count, 80)

    def test_each_page_is_in_the_site(self):
        nav = (ROOT / "mkdocs.yml").read_text()
        left_out = {"tests/end_to_end/input/README.md"}
        pages = {str(page.relative_to(ROOT)) for page in documents()} - left_out
        self.assertEqual(sorted(page for page in pages if ": %s\n" % page not in nav), [])


class References(unittest.TestCase):
    def test_citation_has_those_of_the_results_and_of_the_report(self):
        listed = []
        for name in ("results.md", "report.md"):
            text = (ROOT / "docs" / name).read_text().split("## References\n")[1]
            items = re.split(r"^- ", text, flags=re.M)[1:]
            listed += [citation.without_letter(" ".join(item.split())) for item in items]
        written = ["%s %s" % (authors, rest) for authors, _, rest in citation.references()]
        self.assertEqual(sorted(listed), sorted(written))

    def test_sources_of_formulas_are_listed(self):
        page = (ROOT / "docs" / "results.md").read_text()
        text, listed = page.split("## References\n")
        named = set(re.findall(r"([A-Z][a-z]+)(?: et al\.|(?:, van)?[^.;|()\d]{0,40}?)? ((?:19|20)\d\d)",
                               without_code(text)))
        self.assertGreater(len(named), 25)
        for name, year in sorted(named):
            with self.subTest(name + " " + year):
                self.assertRegex(listed, r"%s[^()]*\(%s[ab]?\)" % (name, year))

    def test_version_is_that_of_the_project(self):
        version = re.search(r"VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text().split(
            "project(kva")[1]).group(1)
        self.assertIn('\nversion: "%s"\n' % version, (ROOT / "CITATION.cff").read_text())


if __name__ == "__main__":
    unittest.main()
