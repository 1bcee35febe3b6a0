#!/usr/bin/env python3
"""kvatool report from outside: each number of the page beside the sheet that it comes from, the sheets
being read here once more; names with markup; what was not run; bad input.

Usage: report_test.py KVATOOL KVA
"""

import base64
import functools
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import report_page  # noqa: E402
from report_page import EXAMPLES, PERMUTATIONS, REPLICATES, Page, call  # noqa: E402

TOOL = pathlib.Path(sys.argv[1]).resolve()
KVA = pathlib.Path(sys.argv[2]).resolve()
INPUT = EXAMPLES.parent / "tests" / "end_to_end" / "input"
NO_VALUE = {"n.d.", "n.s.", "-32767", "-32767.000000", "-32767.00000"}
run = functools.partial(report_page.run, TOOL)
report = functools.partial(report_page.report, TOOL)


def shown(cell):
    """A cell of a sheet as the page has it."""
    cell = cell.strip()
    return "" if cell in NO_VALUE else cell


# --- The sheets, read here in the plainest way -----------------------------------------------------


def lines_of(path):
    return path.read_bytes().decode("utf-8").split("\n")


def table_of(path):
    """Rows of a sheet with two lines of loci and a row for each sample, as lists of cells."""
    rows = [line.split("\t") for line in lines_of(path)[2:]]
    return {row[0]: [shown(cell) for cell in row[1:] if cell] for row in
            rows[:next((k for k, row in enumerate(rows) if row == [""]), len(rows))]}


def summary_of(path):
    """(population, locus) to head to cell."""
    lines = [line.split("\t") for line in lines_of(path) if line]
    heads = lines[0]
    return {(row[2], row[0]): {head: shown(cell) for head, cell in zip(heads, row)}
            for row in lines[1:]}


def frequencies_of(path):
    """(population, locus) to allele to frequency."""
    lines = lines_of(path)
    loci, found, population, begins = lines[0].strip("\t").split("\t")[::2], {}, None, True
    for line in lines[1:]:
        if not line:
            begins = True
            continue
        cells = line.split("\t")
        population, begins = (cells[0], False) if begins else (population, False)
        for place, locus in enumerate(loci):
            pair = cells[1 + 2 * place:3 + 2 * place]
            if len(pair) == 2 and pair[0]:
                found.setdefault((population, locus), {})[pair[0]] = pair[1]
    return found


def matrix_of(path):
    """(first, second) to cell, the first being left of the diagonal."""
    rows = [line.split() for line in lines_of(path)[1:] if line]
    return {(rows[j][0], row[0]): shown(row[1 + j]) for i, row in enumerate(rows) for j in range(i)}


def p_values_of(path):
    """(first, second) to the cells above and below the diagonal."""
    lines = lines_of(path)
    rows = [line.split("\t") for line in lines[lines.index("P-values:") + 1:] if line]
    return {(rows[j][0], row[0]): (shown(rows[j][1 + i]), shown(row[1 + j]))
            for i, row in enumerate(rows) for j in range(i)}


def global_of(path):
    """(locus or "", statistic) to its value and p-value."""
    found = {}
    for line in lines_of(path):
        cells = line.split("\t")
        over = re.fullmatch(r"(?:global )?(\S+) over all loci:", cells[0])
        of = re.fullmatch(r"(?:global )?(\S+?):\s*", cells[1]) if len(cells) > 2 else None
        if over:
            found["", over[1]] = [shown(cell) for cell in cells[1:]]
        elif of and cells[0]:
            found[cells[0], of[1]] = [shown(cell) for cell in cells[2:]]
    return found


# --- The tests -----------------------------------------------------------------------------------


class OfTheExample(unittest.TestCase):
    """A page of examples/testdata.dat with everything."""

    @classmethod
    def setUpClass(cls):
        place = tempfile.TemporaryDirectory()
        cls.addClassCleanup(place.cleanup)
        cls.place = pathlib.Path(place.name)
        cls.folder, cls.boot = cls.place / "all", cls.place / "boot"
        cls.text = report_page.report_of_example(TOOL, cls.place)
        cls.page = Page(cls.text)
        cls.record = json.loads((cls.folder / "run.json").read_text())
        cls.populations = list(table_of(cls.folder / "Single_data" / "Hetexp.xls"))[1:]
        head = lines_of(cls.folder / "Single_data" / "Hetexp.xls")[0]
        cls.loci = head.strip("\t").split("\t")
        cls.checked = set()

    def table(self, name):
        OfTheExample.checked.add(name)
        return self.page.tables[name]

    def sheet(self, name):
        return table_of(self.folder / "Single_data" / name)

    def test_run_is_that_of_the_record(self):
        rows = dict(self.table("run-record").rows)
        data = self.record["data"]
        self.assertEqual(rows["Data file"], data["file"])
        self.assertEqual(rows["SHA-256 of the data file"], data["sha256"])
        self.assertEqual(rows["Seed of the random numbers"], "1")
        self.assertEqual(rows["Version of the program"], self.record["version"])
        self.assertEqual((rows["Begun"], rows["Ended"]), (self.record["begun"], self.record["ended"]))
        self.assertEqual((rows["Threads"], rows["Result folder"]), ("1", "all"))
        self.assertEqual(rows["Random numbers"], self.record["random"]["generator"])
        self.assertEqual(self.page.texts["log"], (self.folder / "KVA.log").read_text())

    def test_settings_are_those_of_the_record(self):
        expected = []
        for name, value in self.record["settings"].items():
            if isinstance(value, dict):
                expected += [["%s (%s)" % (name, part), ", ".join(inner)]
                             for part, inner in value.items()]
            elif isinstance(value, list):
                expected.append([name, ", ".join(value)])
            else:
                expected.append([name, value if isinstance(value, str) else json.dumps(value)])
        self.assertEqual(self.table("settings").rows, expected)

    def test_sizes_are_those_of_the_data(self):
        counted = {}
        for line in (EXAMPLES / "testdata.dat").read_text().splitlines()[3:]:
            cells = line.split("\t")
            typed = counted.setdefault(cells[0], [0, 0])
            typed[0] += 1
            typed[1] += sum(1 for cell in (cells[3:] + 20 * [""])[:20] if not cell.strip())
        rows = self.table("sizes").rows
        self.assertEqual([row[:2] for row in rows],
                         [[name, str(size)] for name, (size, _) in counted.items()])
        for name, size, missing in rows:
            share = 100 * counted[name][1] / (20 * int(size))
            self.assertEqual(missing, "%.2f" % share, name)

    def test_gene_copies_are_those_of_the_sheet(self):
        table = self.table("gene-copies")
        self.assertEqual(table.heads, ["Population"] + self.loci)
        self.assertEqual({row[0]: row[1:] for row in table.rows}, self.sheet("NumChromosomes.xls"))

    def test_suspicious_alleles_are_those_of_the_error_report(self):
        remarks = []
        for line in lines_of(self.folder / "Errorreport.txt")[6:]:
            locus, *rest = line.split(",\t")
            for remark in "".join(rest).split("\t"):
                remarks += [[locus] + re.findall(r"\d+", remark)] if remark else []
        table = self.table("suspicious")
        self.assertTrue(table.box)
        self.assertTrue(remarks)
        self.assertEqual([[row[1]] + [cell for cell in row[3:5] if cell] for row in table.rows],
                         remarks)

    def test_diversity_is_that_of_the_sheets(self):
        table = self.table("diversity-loci")
        summary = summary_of(self.folder / "Summary.xls")
        richness = lines_of(self.folder / "Single_data" / "AllelicRichness.xls")
        second = richness.index("Variance of allelic richness")
        variance = {line.split("\t")[0]: line.split("\t")[1:] for line in richness[second + 3:]}
        sheets = {head: self.sheet(name) for head, name in (
            ("Gene copies", "NumChromosomes.xls"), ("He", "Hetexp.xls"),
            ("Allelic richness", "AllelicRichness.xls"))}
        self.assertEqual(len(table.rows), (1 + len(self.populations)) * len(self.loci))
        for row in table.rows:
            cells = dict(zip(table.heads, row))
            population, locus = row[:2]
            at = self.loci.index(locus)
            for head, sheet in sheets.items():
                self.assertEqual(cells[head], sheet[population][at], (row, head))
            self.assertEqual(cells["Variance of richness"], shown(variance[population][at]))
            of = summary.get((population, locus), {})
            for head, there in (("Ho", "Het obs"), ("Alleles counted", "Max.obs.Alleles"),
                                ("Fis", "Fis,Pop")):
                self.assertEqual(cells[head], of.get(there, ""), (row, head))

    def test_means_are_those_of_the_diversity(self):
        loci, means = self.page.tables["diversity-loci"], self.table("diversity-means")
        self.assertEqual(means.sheet_columns(), ["Population"])
        for row in means.rows:
            cells = [dict(zip(loci.heads, of)) for of in loci.rows if of[0] == row[0]]
            for head in ("Ho", "He", "Allelic richness", "Alleles counted"):
                values = [float(of[head]) for of in cells if of[head]]
                got = float(row[means.heads.index(head)])
                self.assertAlmostEqual(got, sum(values) / len(values), delta=0.00005001)
            variances = [float(of["Variance of richness"]) for of in cells]
            error = float(row[means.heads.index("Its standard error")])
            self.assertAlmostEqual(error, sum(variances) ** 0.5 / len(cells), delta=0.00005001)

    def test_richness_references_are_those_of_the_sheet(self):
        line = next(line for line in lines_of(self.folder / "Single_data" / "AllelicRichness.xls")
                    if line.startswith("Std. Ind. Number"))
        self.assertEqual(self.table("richness-reference").rows,
                         [list(pair) for pair in zip(self.loci, line.split("\t")[1:])])

    def test_allele_frequencies_are_those_of_the_sheet(self):
        expected = frequencies_of(self.folder / "Allelecount" / "Allelefrequencies.xls")
        for number, locus in enumerate(self.loci, 1):
            table = self.table("alleles-%d" % number)
            self.assertEqual([row[0] for row in table.rows], ["Total"] + self.populations)
            self.assertEqual(table.heads[1:], list(expected["Total", locus]))
            for row in table.rows:
                found = {allele: cell for allele, cell in zip(table.heads[1:], row[1:]) if cell}
                self.assertEqual(found, expected[row[0], locus], (row[0], locus))

    def test_fst_of_pairs_is_that_of_the_sheet(self):
        table = self.table("fst-pairs")
        fst = matrix_of(self.folder / "F-Statistic" / "FST_WC84.txt")
        sheet = p_values_of(self.folder / "F-Statistic" / "FST_WC84-pValue.xls")
        tests = {(test["population1"], test["population2"]): test for test in self.record["tests"]
                 if test["statistic"] == "fst_pairwise"}
        self.assertEqual(len(table.rows), len(fst))
        for row in table.rows:
            pair = tuple(row[:2])
            test = [json.dumps(tests[pair][name]) for name in ("p", "p_error", "p_holm", "p_bh")]
            self.assertEqual([float(cell) for cell in row[3:7]], [float(p) for p in test])
            self.assertEqual(row[2:3] + row[7:], [fst[pair], *sheet[pair]])

    def test_global_f_is_that_of_the_sheet(self):
        expected = global_of(self.folder / "F-Statistic" / "GlobFst.xls")
        names = {"Fst": "fst_global", "Gst": "gst_global", "Gst'": "gst_prime_global"}
        tests = {(test["statistic"], test.get("locus")): test["p"] for test in self.record["tests"]}
        over = self.table("f-global")
        self.assertEqual(over.column("Statistic"), ["Fst", "Fit", "Fis", "Gst", "Gst'"])
        for row in over.rows:
            p = tests.get((names.get(row[0]), None))
            self.assertEqual([cell for cell in row[1:3] if cell], expected["", row[0]])
            self.assertEqual(row[3], "" if p is None else row[3])
            self.assertEqual(p, None if p is None else float(row[3]))
        loci = self.table("f-loci")
        self.assertEqual(loci.column("Locus"), self.loci)
        for row in loci.rows:
            place = 1
            for head in ("Fst", "Fit", "Fis", "Gst", "Gst'"):
                value = expected[row[0], head]
                self.assertEqual(row[place:place + len(value)], value, (row[0], head))
                place += len(value)
                if head in names:
                    self.assertEqual(float(row[place]), tests[names[head] + "_locus", row[0]])
                    place += 1

    def test_distances_are_those_of_the_sheet(self):
        table = self.table("distances")
        expected = matrix_of(self.folder / "Distance_data" / "DAN_Pop.txt")
        self.assertEqual({tuple(row[:2]): row[2] for row in table.rows}, expected)
        self.assertFalse(any(table.derived))

    def test_tree_has_the_distances_of_its_branches(self):
        table = self.table("tree-branches")
        self.assertEqual(table.sheet_columns(), ["Node", "Its parent"])
        self.assertEqual(len(table.rows), 2 * len(self.populations) - 3)
        newick = self.page.texts["newick"]
        for name in self.populations:
            self.assertIn("'%s':" % name, newick)
        self.assertEqual(sum(1 for row in table.rows if row[3]), len(self.populations) - 3)

    def test_points_are_named_and_centred(self):
        for name, count in (("populations", len(self.populations)), ("individuals", 200)):
            table = self.table(name + "-axes")
            self.assertEqual(len(table.rows), count)
            for axis in ("Axis 1", "Axis 2"):
                values = [float(cell) for cell in table.column(axis)]
                self.assertAlmostEqual(sum(values), 0, delta=1e-6 * count)
                eigenvalue = float(self.table(name + "-eigenvalues").rows[int(axis[-1]) - 1][1])
                self.assertAlmostEqual(sum(v * v for v in values), eigenvalue, delta=1e-3)
        sizes = {row[0]: int(row[1]) for row in self.page.tables["sizes"].rows}
        of = self.page.tables["individuals-axes"].column("Population")
        self.assertEqual({name: of.count(name) for name in sizes}, sizes)

    def test_range_is_that_of_the_sheets(self):
        table = self.table("het-range")
        sheets = [table_of(self.folder / "Resampling_data" / ("HetRange%s.xls" % which))
                  for which in ("Min", "Mean", "Max")] + [self.sheet("Hetexp.xls")]
        self.assertEqual(len(table.rows), len(self.populations) * len(self.loci))
        for row in table.rows:
            at = self.loci.index(row[1])
            self.assertEqual(row[2:], [sheet[row[0]][at] for sheet in sheets], row[:2])

    def test_zz_every_table_was_compared(self):
        """Runs as the last one: tests go by their names."""
        self.assertEqual(set(self.page.tables), self.checked)

    def test_methods_cite_what_the_list_has(self):
        text = self.page.texts["methods-text"]
        self.assertIn(" %d permutations of genotypes" % PERMUTATIONS, text)
        self.assertIn(" %d bootstrap replicates" % REPLICATES, text)
        self.assertIn("seed 1", text)
        years = set(re.findall(r"\b(?:19|20)\d\d", text))
        listed = set(re.findall(r"\(((?:19|20)\d\d)[ab]?\)", self.page.sections["methods"].
                                split("References")[1]))
        self.assertEqual(years, listed)

    def test_page_needs_nothing_else(self):
        self.assertEqual(self.page.tags & {"link", "img", "iframe", "object", "embed", "base"}, set())
        for name, value in self.page.attributes:
            if name in ("src", "href", "xlink:href", "action", "srcset", "style"):
                self.assertTrue(name == "href" and value.startswith("#"), (name, value))
            self.assertFalse(name.startswith("on"), (name, value))
        self.assertNotIn("url(", self.text)
        self.assertEqual(len(self.page.ids), len(set(self.page.ids)))

    def test_policy_names_the_style_and_the_script(self):
        policy = next(value for name, value in self.page.attributes
                      if name == "content" and "default-src" in value)
        for tag in ("style", "script"):
            inside = re.search("<%s>(.*?)</%s>" % (tag, tag), self.text, re.DOTALL)[1]
            digest = base64.b64encode(hashlib.sha256(inside.encode()).digest()).decode()
            self.assertIn("%s-src 'sha256-%s'" % (tag, digest), policy)

    def test_same_folder_gives_the_same_bytes(self):
        self.assertEqual(report(self.place, "all/", "--bootstrap", "./boot", "--measure", "DAN"),
                         self.text)

    def test_pictures_are_there_and_xml(self):
        import xml.dom.minidom
        pictures = re.findall(r"<svg .*?</svg>", self.text, re.DOTALL)
        self.assertEqual(len(pictures), 8)
        for picture in pictures:
            xml.dom.minidom.parseString(picture)

    def test_first_measure_is_taken_without_an_option(self):
        page = Page(report(self.place, "all"))
        self.assertIn("Shown is the distance CAS", page.sections["tree"])
        self.assertIn("There is no bootstrap", page.sections["tree"])
        cas = matrix_of(self.folder / "Distance_data" / "CAS_Pop.txt")
        self.assertEqual({tuple(row[:2]): row[2] for row in page.tables["distances"].rows}, cas)

    def test_replicates_alone_give_their_mean(self):
        page = Page(report(self.place, "boot"))
        self.assertTrue(page.tables["distances"].derived[2])
        self.assertIn("%d replicates" % REPLICATES, page.sections["tree"])
        text = (self.boot / "Distance_data" / "CAS_Pop.txt").read_text()
        first = [float(block.split("\n")[2].split()[1]) for block in text.strip().split("\n\n")]
        self.assertEqual(len(first), REPLICATES)
        mean = sum(first) / REPLICATES
        self.assertAlmostEqual(float(page.tables["distances"].rows[0][2]), mean, delta=1e-6)


class Outside(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)

    def refused(self, status, *words, says):
        before = sorted(self.place.rglob("*"))
        told = call(TOOL, "report", *words, folder=self.place)
        self.assertEqual((told.returncode, told.stdout), (status, b""))
        self.assertEqual(told.stderr.count(b"\n"), 1, told.stderr)
        self.assertIn(says, told.stderr.decode())
        self.assertEqual(sorted(self.place.rglob("*")), before)

    def write(self, name, populations, loci=("L<b>1", "L&2")):
        """A data file of six individuals in each population."""
        rows = ["2" + "\t" * 2 + "".join("\t2\t" for _ in loci), "\t\t" + "\t50\t" * len(loci),
                "\t\t" + "".join("\t%s\t%s_2" % (locus, locus) for locus in loci)]
        for place, population in enumerate(populations):
            for k in range(6):
                alleles = [str(100 + 2 * ((k * (2 + l) + place + copy) % 4))
                           for l in range(len(loci)) for copy in range(2)]
                rows.append("\t".join([population, "d", "1", *alleles]))
        (self.place / name).write_bytes("\n".join(rows).encode("utf-8", "surrogateescape") + b"\n")
        return name

    def test_markup_in_names_is_text(self):
        names = ["<script>alert(1)</script>", 'a"b', "c&d'e", "</svg><b>", "Z\udcfcrich"]
        data = self.write("<i>data</i>.txt".replace("/", "_"), names)
        run(self.place, "result", data, "--fst", "pairs,global", "--permutations", "9", "--distances",
            "population:DAN,individual:DAN", "--het-range", "20")
        text = report(self.place, "result")
        page = Page(text)
        self.assertEqual(text.count("<script"), 1)
        for markup in ("<b>", "<i>", "alert(1)</script>"):
            self.assertNotIn(markup, text)
        for table, column in (("sizes", "Population"), ("populations-axes", "Population")):
            self.assertEqual(page.tables[table].column(column), names[:4] + ["Zürich"])
        self.assertEqual(page.tables["gene-copies"].heads, ["Population", "L<b>1", "L&2"])
        self.assertIn("'c&d''e'", page.texts["newick"])

    def test_passes_that_were_not_run_are_named_with_their_option(self):
        run(self.place, "result", EXAMPLES / "onecolumn.txt")
        page = Page(report(self.place, "result"))
        for section, option in (("pairs", "--fst pairs"), ("global", "--fst global"),
                                ("tree", "--distances population"),
                                ("populations", "--distances population"),
                                ("individuals", "--distances individual"),
                                ("range", "--het-range")):
            self.assertIn("Not run. kvatool run DATA " + option, page.sections[section])
        for section in ("run", "data", "diversity", "alleles", "methods"):
            self.assertNotIn("Not run", page.sections[section])

    def test_folder_of_kva_has_its_log_and_the_p_values_of_the_sheet(self):
        shutil.copy(EXAMPLES / "testdata.dat", self.place / "data.txt")
        call(KVA, "-i", "data.txt", "-fst", "p", "n=1000", folder=self.place)
        page = Page(report(self.place, "data.txt_KVAresult00"))
        table = page.tables["fst-pairs"]
        self.assertNotIn("p after Holm", table.heads)
        sheet = p_values_of(self.place / "data.txt_KVAresult00" / "F-Statistic" /
                            "FST_WC84-pValue.xls")
        self.assertEqual({tuple(row[:2]): tuple(row[3:]) for row in table.rows}, sheet)
        log = (self.place / "data.txt_KVAresult00" / "KVA.log").read_text()
        self.assertEqual(page.texts["log"], log)
        self.assertNotIn("settings", page.tables)

    def test_limits_are_those_of_the_heterogeneity_among_loci(self):
        shutil.copy(INPUT / "plain.txt", self.place)
        # F-statistics global, of pairs, with heterogeneity among loci from 200 replicates; run; quit
        keys = "iplain.txt\na3\nd+pn3r1lox123469bsgn5\n1h46r7l1a200mc1rmrcn2\n0lsrm!q\n"
        subprocess.run([KVA], cwd=self.place, input=keys.encode(), stdout=subprocess.DEVNULL,
                       check=False)
        folder = next(self.place.glob("plain.txt_KVAresult*"))
        line = next(line for line in lines_of(folder / "F-Statistic" / "LocusFHeterogeneity.xls")
                    if line.startswith("Global:"))
        cells = line.split("\t")[1:]
        table = Page(report(self.place, folder.name)).tables["f-global"]
        for place, row in enumerate(table.rows[:3]):  # Fst, Fit, Fis for 95 %, then for 99 %
            of95, of99 = cells[4 * place:4 * place + 3], cells[4 * place + 12:4 * place + 15]
            self.assertEqual(row[-4:], [of95[0], of95[2], of99[0], of99[2]], row[0])
        self.assertEqual([row[-4:] for row in table.rows[3:]], [[""] * 4] * 2)

    def test_populations_of_one_name_stay_apart(self):
        run(self.place, "result", self.write("data.txt", ["A", "B", "A"]), "--fst", "pairs",
            "--permutations", "0", "--distances", "population:DAN")
        page = Page(report(self.place, "result"))
        self.assertEqual(page.tables["sizes"].column("Population"), ["A", "B", "A"])
        self.assertEqual([row[:2] for row in page.tables["fst-pairs"].rows],
                         [["A", "B"], ["A", "A"], ["B", "A"]])
        for number in (1, 2):
            table = page.tables["alleles-%d" % number]
            self.assertEqual(table.column("Population"), ["Total", "A", "B", "A"])
            for row in table.rows:
                self.assertAlmostEqual(sum(float(cell) for cell in row[1:] if cell), 1, delta=1e-5)
        self.assertIn("There were no tests", page.sections["pairs"])

    def test_data_of_one_population_make_a_page(self):
        run(self.place, "result", self.write("data.txt", ["A"]), "--fst", "pairs,global",
            "--permutations", "5", "--distances", "all", "--het-range", "5")
        page = Page(report(self.place, "result"))
        self.assertIn("This takes 2 or more populations.", page.sections["pairs"])
        self.assertIn("This takes 3 or more populations.", page.sections["tree"])
        self.assertEqual(len(page.tables["individuals-axes"].rows), 6)

    def test_page_goes_to_a_file_and_replaces_it(self):
        run(self.place, "result", self.write("data.txt", ["A", "B"]))
        page = report(self.place, "result")
        for _ in range(2):
            self.assertEqual(report(self.place, "result", "-o", "report.html"), "")
            self.assertEqual((self.place / "report.html").read_text(encoding="utf-8"), page)

    def test_bad_input_is_one_line_and_writes_nothing(self):
        folder = run(self.place, "result", self.write("data.txt", ["A", "B"]), "--distances",
                     "population:DAN")
        words = ("result", "-o", "page.html")
        self.refused(1, "absent", "-o", "page.html", says="absent: is no folder")
        self.refused(2, *words, "--measure", "XYZ", says="--measure")
        self.refused(1, *words, "--measure", "DSG", says="holds no distances DSG")
        self.refused(1, *words, "--bootstrap", "result", says="holds no bootstrap replicates")
        self.refused(1, "result", "-o", "no/page.html", says="cannot write 'no/page.html'")
        self.refused(2, says="FOLDER")
        record = (folder / "run.json").read_bytes()
        (folder / "run.json").write_bytes(record[:100])
        self.refused(1, *words, says="run.json: is no record of a run")
        (folder / "run.json").write_bytes(b'{"tests": 3, "settings": [1], "data": null}')
        self.assertEqual(report(self.place, *words), "")
        os.remove(self.place / "page.html")
        sheet = folder / "Single_data" / "Hetexp.xls"
        sheet.write_bytes(sheet.read_bytes()[:-9])
        self.refused(1, *words, says="Single_data/Hetexp.xls: line ")

    def test_bootstrap_of_other_data_is_refused(self):
        run(self.place, "one", self.write("a.txt", ["A", "B", "C"]), "--distances", "population:DAN")
        run(self.place, "two", self.write("b.txt", ["A", "B", "D"]), "--distances", "population:DAN",
            "--bootstrap", "3")
        self.refused(1, "one", "--bootstrap", "two", says="two: is not of the same data")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
