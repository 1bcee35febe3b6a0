#!/usr/bin/env python3
"""The page of kvatool report in Chromium, at the width of a phone and of a desk.

The page as it is must say nothing on the console. A copy with a probe behind it, and without the policy
that would stop the probe, tells whether the page can be scrolled sideways, what a click on each button
saves, and whether tables sort. Nothing is fetched from anywhere. Ends with 77 where there is no Chromium.

Usage: report_browser_test.py KVATOOL [--pictures FOLDER]   FOLDER: pictures of the page are kept there
"""

import argparse
import functools
import html
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from report_page import EXAMPLES, report_of_example  # noqa: E402

SKIPPED = 77
WIDTHS = {"phone": 390, "desk": 1280}
CHROMIUM = shutil.which("chromium") or shutil.which("chromium-browser")
OPTIONS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--hide-scrollbars", "--enable-logging=stderr", "--v=0"]
PROBE = r"""
<script>
(function () {
  var told = {inner: innerWidth, page: document.documentElement.scrollWidth, saved: {}, sorted: []};
  document.querySelectorAll("details").forEach(function (one) { one.open = true; });
  told.opened = document.documentElement.scrollWidth;
  var texts = [];
  URL.createObjectURL = function (blob) { texts.push(blob); return "#"; };
  HTMLAnchorElement.prototype.click = function () { told.saved[this.download] = texts.length - 1; };
  document.querySelectorAll("button.save").forEach(function (button) { button.click(); });
  var table = document.getElementById("fst-pairs"), head = table.tHead.rows[0].cells[2];
  for (var k = 0; k < 2; ++k) {
    head.firstChild.click();
    told.sorted.push(Array.from(table.tBodies[0].rows, function (row) {
      return row.cells[2].textContent; }));
  }
  Promise.all(texts.map(function (blob) { return blob.text(); })).then(function (all) {
    for (var name in told.saved) { told.saved[name] = all[told.saved[name]]; }
    parent.postMessage(JSON.stringify(told), "*");
  });
})();
</script>
"""
# A window of Chromium is 500 pixels wide or more; a frame in it can be as narrow as a phone.
FRAME = """<!DOCTYPE html><body><iframe src="probed.html" width="%d" height="900" frameborder="0"></iframe><script>
addEventListener("message", function (event) {
  var place = document.createElement("pre");
  place.id = "told";
  place.textContent = event.data;
  document.body.appendChild(place);
});
</script>
"""
ARGUMENTS = None


class Browser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(place.cleanup)
        cls.place = pathlib.Path(place.name)
        text = report_of_example(ARGUMENTS.kvatool, cls.place)
        (cls.place / "page.html").write_text(text, encoding="utf-8")
        probed = re.sub(r'<meta http-equiv="Content-Security-Policy"[^>]*>', "", text)
        (cls.place / "probed.html").write_text(probed.replace("</body>", PROBE + "</body>"),
                                               encoding="utf-8")

    def browse(self, page, width, *options):
        """What Chromium prints of the page and its messages."""
        with tempfile.TemporaryDirectory() as profile:
            told = subprocess.run(
                [CHROMIUM, *OPTIONS, "--user-data-dir=" + profile, "--window-size=%d,1500" % width,
                 *options, (self.place / page).as_uri()],
                capture_output=True, text=True, encoding="utf-8", timeout=120, check=False)
        self.assertEqual(told.returncode, 0, told.stderr)
        return told.stdout, [line for line in told.stderr.splitlines() if "CONSOLE" in line]

    @functools.lru_cache(maxsize=None)
    def probe(self, width):
        """What the probe tells of the page in a frame of this width."""
        (self.place / "frame.html").write_text(FRAME % width)
        page, _ = self.browse("frame.html", 1400, "--virtual-time-budget=5000", "--dump-dom")
        told = re.search(r'<pre id="told">(.*?)</pre>', page, re.DOTALL)
        self.assertIsNotNone(told, "the probe did not end")
        return json.loads(html.unescape(told[1]))

    def test_page_never_scrolls_sideways(self):
        for width in WIDTHS.values():
            told = self.probe(width)
            self.assertEqual(told["inner"], width)
            self.assertLessEqual(told["page"], width)
            self.assertLessEqual(told["opened"], width)

    def test_console_stays_empty_and_the_policy_lets_the_page_work(self):
        for width in WIDTHS.values():
            page, messages = self.browse("page.html", width, "--dump-dom")
            self.assertEqual(messages, [])
            pictures, tables = page.count("<figure "), page.count("<table ")
            self.assertEqual(page.count(">Save as SVG</button>"), pictures)
            self.assertEqual(page.count(">Save as TSV</button>"), tables)

    def test_console_is_heard(self):
        """The test above would be of no worth if nothing were ever told."""
        text = (self.place / "page.html").read_text(encoding="utf-8")
        (self.place / "bad.html").write_text(text.replace("</body>", PROBE + "</body>"),
                                             encoding="utf-8")
        _, messages = self.browse("bad.html", 1280, "--dump-dom")
        self.assertIn("Content Security Policy", " ".join(messages))

    def test_pictures_and_tables_can_be_saved(self):
        saved = self.probe(1280)["saved"]
        self.assertTrue(saved["fst-picture.svg"].startswith("<svg "))
        self.assertIn('xmlns="http://www.w3.org/2000/svg"', saved["fst-picture.svg"])
        lines = saved["distances.tsv"].split("\n")
        self.assertEqual(lines[0], "Population 1\tPopulation 2\tDistance")
        matrix = (self.place / "all" / "Distance_data" / "DAN_Pop.txt").read_text().split("\n")
        self.assertEqual(lines[1], "Alder\tBirch\t" + matrix[2].split()[1])
        whole = [line.split("\t")[3] for line in saved["fst-pairs.tsv"].split("\n")[1:] if line]
        record = json.loads((self.place / "all" / "run.json").read_text())
        p = [test["p"] for test in record["tests"] if test["statistic"] == "fst_pairwise"]
        self.assertEqual(sorted(map(float, whole)), sorted(p))

    def test_tables_sort_by_a_click(self):
        up, down = self.probe(1280)["sorted"]
        self.assertEqual(up, sorted(up, key=float))
        self.assertEqual(down, up[::-1])

    def test_pictures_of_the_page_are_made(self):
        for name, width in WIDTHS.items():
            folder = pathlib.Path(ARGUMENTS.pictures or self.place).resolve()
            picture = folder / ("report_%s.png" % name)
            text = (self.place / "page.html").read_text(encoding="utf-8")
            (self.place / "shown.html").write_text(
                text.replace(str(EXAMPLES), "/home/anna"), encoding="utf-8")
            self.browse("shown.html", width, "--screenshot=%s" % picture)
            self.assertGreater(picture.stat().st_size, 10000)


def main():
    global ARGUMENTS
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("kvatool", type=lambda name: pathlib.Path(name).resolve())
    arguments.add_argument("kva", nargs="?")
    arguments.add_argument("--pictures")
    ARGUMENTS = arguments.parse_args()
    if not CHROMIUM:
        print("no Chromium")
        return SKIPPED
    return 0 if unittest.main(argv=sys.argv[:1], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
