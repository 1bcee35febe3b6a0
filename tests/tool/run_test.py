#!/usr/bin/env python3
"""kvatool run from outside: the sheets of kva, seeds, threads, tables, places, stops.

Usage: run_test.py KVATOOL KVA
"""

import csv
import glob
import hashlib
import json
import math
import os
import pathlib
import pty
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

TOOL, KVA = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
ALL = ["--fst", "pairs,global,beta", "--permutations", "120", "--distances", "all", "--bootstrap", "3",
       "--het-range", "300", "--formats", "all"]
ALL_OF_KVA = ["-fst", "g", "p", "beta", "n=120", "-dist", "p", "i", "POSA", "FSS", "ADA", "KSC", "DMS",
              "ASD", "CAS", "DAN", "DSG", "n=3", "-hetrange", "n=300", "-format", "msvar", "arlequin",
              "migrate", "im"]
DRAWN = ["Distance_data/", "F-Statistic/", "Resampling_data/", "Formats&Data/", "KVA.log",
         "Single_data/", "Summary.xls", "Group_data/"]


def data_text(populations, individuals, loci, seed=7, haploid=False):
    """A data file of two columns a locus, populations somewhat apart."""
    draw = random.Random(seed)
    lines = ["2\t\t\t" + "\t".join("2\t" for _ in range(loci)),
             "\t\t\t" + "\t".join("0\t" for _ in range(loci)),
             "\t\t\t" + "\t".join(f"L{l}\tL{l}b" for l in range(loci))]
    for p in range(populations):
        for _ in range(individuals):
            cells = [str(100 + 2 * ((draw.randrange(6) + p) % 9)) for _ in range(2 * loci)]
            kind = "h" if haploid and p == 1 else "d"
            lines.append(f"Pop{p}\t{kind}\t1\t" + "\t".join(cells))
    return "\n".join(lines) + "\n"


def frozen():
    """The environment of a clock that stands still."""
    libraries = [file for pattern in ("/usr/lib/*/faketime", "/usr/lib*/faketime")
                 for file in glob.glob(pattern + "/libfaketime.so.1")]
    return dict(os.environ, LD_PRELOAD=libraries[0], FAKETIME="2024-01-01 00:00:00", TZ="UTC")


def tree(folder):
    """Path to bytes, of all files but the record of the run."""
    return {str(file.relative_to(folder)): file.read_bytes()
            for file in sorted(pathlib.Path(folder).rglob("*"))
            if file.is_file() and file.name != "run.json"}


class RunTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)
        self.data = self.folder / "d.txt"
        self.data.write_text(data_text(4, 9, 5))

    def run_tool(self, *words, **how):
        return subprocess.run([TOOL, "run", *words], cwd=self.folder, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False, **how)

    def done(self, *words, **how):
        told = self.run_tool(*words, **how)
        self.assertEqual(told.returncode, 0, told.stderr)
        return told

    def record(self, folder="r"):
        return json.loads((self.folder / folder / "run.json").read_text())

    def table(self, name="t.tsv"):
        with open(self.folder / name, newline="", encoding="utf-8") as file:
            return list(csv.DictReader(file, delimiter="\t"))

    def left(self):
        return sorted(name for name in os.listdir(self.folder))


class SheetsOfKva(RunTest):
    def kva(self, *words, **how):
        subprocess.run([KVA, "-i", "d.txt", *words], cwd=self.folder, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, check=False, **how)
        return tree(self.folder / "d.txt_KVAresult00")

    def test_clock_seed_gives_the_very_bytes(self):
        for haploid in (False, True):
            with self.subTest(haploid=haploid):
                self.data.write_text(data_text(4, 9, 5, haploid=haploid))
                sheets = self.kva(*ALL_OF_KVA, env=frozen())
                self.done("d.txt", "-o", "r", "--clock-seed", *ALL, env=frozen())
                self.assertEqual(tree(self.folder / "r"), sheets)
                shutil.rmtree(self.folder / "r")
                shutil.rmtree(self.folder / "d.txt_KVAresult00")

    def test_words_switch_the_same_bits(self):
        pairs = [
            (["-rare", "4"], ["--rarefy", "4"]),
            (["-dist", "p", "CAS", "l", "n=2"],
             ["--distances", "population:CAS", "--distance-loci", "--bootstrap", "2"]),
            (["-dist", "i", "posa", "nexus", "calc=ln"],
             ["--distances", "individual:posa", "--nexus", "--minus-log"]),
            (["-fst", "p", "locus", "n=3"],
             ["--fst", "pairs", "--fst-loci", "--permutations", "3"]),
            (["-fst", "p", "HW", "n=60"],
             ["--fst", "pairs", "--resample", "alleles", "--permutations", "60"]),
            (["-fst", "g", "HW", "n=60"],
             ["--fst", "global", "--resample", "alleles", "--permutations", "60"]),
            (["-fst", "p", "RD", "n=60"], ["--fst", "pairs", "--thin", "--permutations", "60"]),
            (["-hetrange", "n=20"], ["--het-range", "20"]),
            (["-hetrange", "n=20", "linked", "RD"],
             ["--het-range", "20", "--het-linked", "--het-thin"]),
            (["-hetrange", "n=20", "individual"], ["--het-range", "20", "--het-individuals"]),
            (["-format", "msvar"], ["--formats", "msvar"]),
            (["-format", "im"], ["--formats", "im"]),
        ]
        self.data.write_text(data_text(4, 9, 5, haploid=True))
        for of_kva, of_tool in pairs:
            with self.subTest(words=of_tool):
                sheets = self.kva(*of_kva, env=frozen())
                self.done("d.txt", "-o", "r", "--clock-seed", *of_tool, env=frozen())
                self.assertEqual(tree(self.folder / "r"), sheets)
                shutil.rmtree(self.folder / "r")
                shutil.rmtree(self.folder / "d.txt_KVAresult00")

    def test_information_file_of_im(self):
        (self.folder / "im.txt").write_bytes(
            b"\r\n".join(self.data.read_bytes().split(b"\n")[:3] + [b"inherit\t\t\t0.25\t\t1\t", b""]))
        sheets = self.kva("-fim", "im.txt", "-format", "im", env=frozen())
        self.done("d.txt", "-o", "r", "--clock-seed", "--formats", "im", "--im-info", "im.txt",
                  env=frozen())
        self.assertEqual(tree(self.folder / "r"), sheets)
        self.assertTrue(any(b"0.25" in text for name, text in sheets.items() if "IM_Format" in name))

    def test_heterozygosity_is_told_and_taken(self):
        values = set()
        for word, told in (("observed", "Hobserved"), ("expected", "Hexpected"), ("inbred", "(AUTO)")):
            self.done("d.txt", "-o", "r", "--force", "--fst", "pairs", "--permutations", "0",
                      "--heterozygosity", word)
            self.assertEqual(self.record()["settings"]["heterozygosity"], word)
            self.assertIn(told, (self.folder / "r" / "KVA.log").read_text())
            values.add((self.folder / "r" / "F-Statistic" / "FST_WC84.txt").read_bytes())
        self.assertEqual(len(values), 2, "without inbred populations the last is the first")

    def test_uncorrected_range_keeps_a_heterozygosity_of_zero(self):
        self.data.write_text("2\t\t\t2\t\n\t\t\t0\t\n\t\t\tL1\tL1b\nA\td\t0\t5\t6\nA\td\t0\t6\t5\n")
        least = []
        for words in ([], ["--het-uncorrected"]):
            self.done("d.txt", "-o", "r", "--force", "--seed", "1", "--het-range", "400", *words)
            sheet = (self.folder / "r" / "Resampling_data" / "HetRangeMin.xls").read_text()
            least.append(float(sheet.splitlines()[-1].split("\t")[1]))
        self.assertGreater(least[0], 0)
        self.assertEqual(least[1], 0)  # all four copies are equal in an eighth of the draws

    def test_with_a_seed_only_what_is_drawn_differs(self):
        sheets = self.kva(*ALL_OF_KVA)
        self.done("d.txt", "-o", "r", "--seed", "3", *ALL)
        ours = tree(self.folder / "r")
        self.assertEqual(sheets.keys(), ours.keys())
        for name, text in sheets.items():
            if not any(name.startswith(drawn) for drawn in DRAWN):
                self.assertEqual(ours[name], text, name)
        for name in ("F-Statistic/FST_WC84.txt", "F-Statistic/Beta_POP.xls", "Single_data/Hetexp.xls"):
            self.assertEqual(ours[name], sheets[name])
        self.assertNotEqual(ours["Distance_data/CAS_Pop.txt"], sheets["Distance_data/CAS_Pop.txt"])


class Seeds(RunTest):
    def test_same_bytes_for_any_number_of_threads(self):
        for threads in "123":
            self.done("d.txt", "-o", "r" + threads, "--seed", "11", "--threads", threads, *ALL,
                      "--tidy", "t" + threads)
        trees = [tree(self.folder / ("r" + threads)) for threads in "123"]
        self.assertGreater(len(trees[0]), 60)
        self.assertEqual(trees[1], trees[0])
        self.assertEqual(trees[2], trees[0])
        tables = {(self.folder / ("t" + threads)).read_bytes() for threads in "123"}
        self.assertEqual(len(tables), 1)
        tests = [self.record("r" + threads)["tests"] for threads in "123"]
        self.assertEqual(tests[1], tests[0])
        self.assertEqual(tests[2], tests[0])

    def test_a_pass_draws_the_same_whatever_else_runs(self):
        self.done("d.txt", "-o", "alone", "--seed", "11", "--het-range", "300")
        self.done("d.txt", "-o", "all", "--seed", "11", *ALL)
        alone, together = tree(self.folder / "alone"), tree(self.folder / "all")
        for name in alone:
            if name.startswith("Resampling_data/"):
                self.assertEqual(alone[name], together[name], name)

    def test_seed_that_was_drawn_repeats_the_run(self):
        self.done("d.txt", "-o", "r", *ALL)
        seed = self.record()["random"]["seed"]
        self.assertTrue(0 <= seed < 2 ** 53)
        self.assertIn(f"Random seed: {seed}", (self.folder / "r" / "KVA.log").read_text())
        self.done("d.txt", "-o", "again", "--seed", str(seed), *ALL)
        self.assertEqual(tree(self.folder / "again"), tree(self.folder / "r"))
        self.done("d.txt", "-o", "other", *ALL)
        self.assertNotEqual(self.record("other")["random"]["seed"], seed)
        self.assertNotEqual(tree(self.folder / "other"), tree(self.folder / "r"))


class Numbers(RunTest):
    def holm(self, p):
        order = sorted(range(len(p)), key=lambda k: p[k])
        adjusted, most = [0.0] * len(p), 0.0
        for rank, k in enumerate(order):
            most = max(most, min(1.0, (len(p) - rank) * p[k]))
            adjusted[k] = most
        return adjusted

    def benjamini_hochberg(self, p):
        order = sorted(range(len(p)), key=lambda k: p[k])
        adjusted, least = [0.0] * len(p), 1.0
        for rank in range(len(p), 0, -1):
            k = order[rank - 1]
            least = min(least, p[k] * len(p) / rank)
            adjusted[k] = least
        return adjusted

    def test_p_values_of_pairs(self):
        self.done("d.txt", "-o", "r", "--seed", "1", "--fst", "pairs,global", "--permutations", "999",
                  "--tidy", "t.tsv")
        rows = self.table()
        value = {(row["statistic"], row["population1"], row["population2"], row["locus"]): row["value"]
                 for row in rows}
        pairs = [(a, b) for s, a, b, _ in value if s == "fst_pairwise_test_p"]
        self.assertEqual(len(pairs), 6)
        p = []
        for a, b in pairs:
            def of(what, a=a, b=b):
                return float(value["fst_pairwise" + what, a, b, ""])
            hits = of("_test_hits")
            self.assertEqual(of("_test_permutations"), 999)
            p.append((hits + 1) / 1000)
            self.assertAlmostEqual(of("_test_p"), p[-1], delta=1e-9)
            self.assertAlmostEqual(of("_test_p_error"), math.sqrt(p[-1] * (1 - p[-1]) / 999), delta=1e-9)
            self.assertAlmostEqual(of("_p"), max(hits, 1) / 999, delta=1e-6)  # of the sheet
        for (a, b), holm, rate in zip(pairs, self.holm(p), self.benjamini_hochberg(p)):
            self.assertAlmostEqual(float(value["fst_pairwise_test_p_holm", a, b, ""]), holm, delta=1e-9)
            self.assertAlmostEqual(float(value["fst_pairwise_test_p_bh", a, b, ""]), rate, delta=1e-9)
        hits = float(value["fst_global_locus_test_hits", "", "", "L0"])
        self.assertAlmostEqual(float(value["fst_global_locus_p", "", "", "L0"]), max(hits, 1) / 999,
                               delta=1e-5)
        self.assertIn(("gst_prime_global_test_p", "", "", ""), value)

    def test_sequential_test(self):
        self.done("d.txt", "-o", "r", "--seed", "1", "--fst", "pairs", "--permutations", "100000",
                  "--sequential", "5")
        tests = [test for test in self.record()["tests"] if test["statistic"] == "fis_pairwise"]
        self.assertEqual(len(tests), 6)
        ended = [test for test in tests if test["ended_by_hits"]]
        self.assertGreater(len(ended), 3)
        for test in ended:
            self.assertEqual(test["hits"], 5)
            self.assertAlmostEqual(test["p"], 5 / test["permutations"])

    def test_record(self):
        self.done("d.txt", "-o", "r", "--seed", "9007199254740991", "--threads", "2", "--fst", "pairs",
                  "--permutations", "10", "--json", "j.json")
        record = self.record()
        self.assertEqual(json.loads((self.folder / "j.json").read_text()), record)
        self.assertEqual(record["data"]["sha256"], hashlib.sha256(self.data.read_bytes()).hexdigest())
        self.assertEqual((record["data"]["populations"], record["data"]["individuals"],
                          record["data"]["loci"]), (4, 36, 5))
        self.assertEqual((record["program"], record["version"]), ("kvatool", "4.05"))
        self.assertEqual(record["random"], {"generator": "Philox4x32-10", "seed": 2 ** 53 - 1})
        self.assertEqual(record["threads"], 2)
        self.assertEqual(record["settings"]["permutations"], 10)
        self.assertIn("F-statistics", [row["name"] for row in record["passes"]])
        self.assertEqual(record["warnings"], [])

    def test_pair_without_a_value_has_no_p(self):
        self.data.write_text("2\t\t\t2\t\n\t\t\t0\t\n\t\t\tL1\tL1b\n"
                             "A\td\t0\t5\t5\nA\td\t0\t5\t5\nB\td\t0\t5\t5\nB\td\t0\t5\t5\n")
        self.done("d.txt", "-o", "r", "--fst", "pairs", "--permutations", "10", "--tidy", "t.tsv")
        values = {row["statistic"]: row["value"] for row in self.table()}
        self.assertEqual(values["fst_pairwise"], "")
        self.assertEqual(values["fst_pairwise_test_p"], "")
        self.assertEqual(values["fst_pairwise_test_p_holm"], "")
        self.assertIsNone(self.record()["tests"][0]["p"])

    def test_odd_names_stay_whole(self):
        odd = self.data.read_bytes().replace(b"Pop1", b'a "b" #\xe9')
        self.data.write_bytes(odd)
        self.done("d.txt", "-o", "r", "--fst", "pairs", "--permutations", "5", "--tidy", "t.tsv")
        with open(self.folder / "t.tsv", newline="", encoding="latin-1") as file:
            names = {row["population2"] for row in csv.DictReader(file, delimiter="\t")}
        self.assertIn('a "b" #\xe9', names)
        self.assertIn("\ufffd", json.dumps(self.record(), ensure_ascii=False))


class SeveralFiles(RunTest):
    def setUp(self):
        super().setUp()
        (self.folder / "e.txt").write_text(data_text(3, 5, 4, seed=8))

    def test_a_folder_each_and_one_table(self):
        self.done("d.txt", "e.txt", "-o", "r", "--seed", "4", "--tidy", "t.tsv", "--json", "j.json")
        self.assertEqual(sorted(os.listdir(self.folder / "r")), ["d.txt", "e.txt"])
        rows = self.table()
        self.assertEqual({row["data"] for row in rows}, {"d.txt", "e.txt"})
        self.done("e.txt", "-o", "alone", "--seed", "4", "--tidy", "alone.tsv")
        alone = self.table("alone.tsv")
        self.assertEqual([{k: v for k, v in row.items() if k != "data"}
                          for row in rows if row["data"] == "e.txt"], alone)
        records = json.loads((self.folder / "j.json").read_text())
        self.assertEqual([pathlib.Path(r["data"]["file"]).name for r in records], ["d.txt", "e.txt"])
        self.assertFalse((self.folder / "r" / "d.txt" / "tidy.tsv").exists())

    def test_default_places(self):
        self.done("d.txt", "e.txt", "-q")
        self.assertEqual(self.left(), ["d.txt", "d.txt_kvatool", "e.txt", "e.txt_kvatool"])

    def test_a_bad_file_stops_no_other(self):
        (self.folder / "bad.txt").write_text("no data\n")
        told = self.run_tool("bad.txt", "d.txt", "-o", "r", "-q", "--tidy", "t.tsv")
        self.assertEqual(told.returncode, 1)
        self.assertEqual(told.stderr.count("\n"), 1)
        self.assertIn("bad.txt", told.stderr)
        self.assertEqual(os.listdir(self.folder / "r"), ["d.txt"])
        self.assertEqual({row["data"] for row in self.table()}, {"d.txt"})

    def test_one_place_for_two_is_refused(self):
        (self.folder / "x").mkdir()
        shutil.copy(self.data, self.folder / "x" / "d.txt")
        told = self.run_tool("d.txt", "x/d.txt", "-o", "r")
        self.assertEqual(told.returncode, 1)
        self.assertIn("two data files", told.stderr)


class Places(RunTest):
    def refused(self, status, words, *parts):
        before = self.left()
        told = self.run_tool(*words)
        self.assertEqual((told.returncode, told.stdout), (status, ""))
        self.assertEqual(told.stderr.count("\n"), 1, told.stderr)
        for part in parts:
            self.assertIn(part, told.stderr)
        self.assertEqual(self.left(), before, "something was written")

    def test_folder_that_is_there(self):
        self.done("d.txt", "-o", "r", "--seed", "1")
        (self.folder / "r" / "mine").write_text("x")
        self.refused(1, ["d.txt", "-o", "r"], "there already", "--force")
        self.done("d.txt", "-o", "r/", "--force")
        self.assertFalse((self.folder / "r" / "mine").exists())
        self.assertEqual(self.left(), ["d.txt", "r"])

    def test_force_replaces_no_other_folder(self):
        (self.folder / "mine").mkdir()
        (self.folder / "mine" / "thesis.txt").write_text("x")
        self.refused(1, ["d.txt", "-o", "mine", "--force"], "no result folder")
        self.refused(1, ["d.txt", "-o", "d.txt", "--force"], "no result folder")
        os.symlink("mine", self.folder / "link")
        self.refused(1, ["d.txt", "-o", "link", "--force"], "no result folder")

    def test_bad_data_and_places(self):
        (self.folder / "bad.txt").write_text("no data\n")
        self.refused(1, ["bad.txt", "-o", "r"], "bad.txt", "row 1", "expected")
        self.refused(1, ["nope.txt"], "nope.txt")
        self.refused(1, ["."], ".")
        self.refused(1, ["d.txt", "-o", "no/where/r"], "no folder")
        self.refused(1, ["d.txt", "-o", "r", "--tidy", "no/where"], "cannot write 'no/where'")
        os.mkfifo(self.folder / "pipe")
        self.refused(1, ["pipe"], "pipe")

    def test_wrong_words(self):
        for words, parts in (
                (["--fst", "pair"], ["unknown F-statistic 'pair'", "'pairs'"]),
                (["--distances", "populations"], ["'population'"]),
                (["--distances", "population:CAZ"], ["'CAS'"]),
                (["--formats", "arlekin"], ["'arlequin'"]),
                (["--resample", "genotype"], ["'genotypes'"]),
                (["--heterozygosity", "expectd"], ["'expected'"]),
                (["--permutation", "5"], ["'--permutations'"]),
                (["--permutations", "many"], ["--permutations"]),
                (["--permutations", "-1"], ["--permutations"]),
                (["--threads", "0"], ["--threads"]),
                (["--seed", "1", "--clock-seed"], ["--clock-seed"]),
                (["--clock-seed", "--threads", "2"], ["--threads 1"]),
                (["--fst", "pairs", "--sequential", "5", "--clock-seed"], ["--seed"]),
                (["--im-info", "x"], ["--formats im"])):
            with self.subTest(words=words):
                self.refused(2, ["d.txt", *words], "kvatool run", *parts)

    def test_words_that_do_not_go_together(self):
        of_range = "--het-linked, --het-individuals, --het-thin and --het-uncorrected need --het-range N"
        of_pairs = "--sequential, --fst-loci and --thin need --fst pairs"
        for words, why in (
                (["--het-linked"], of_range),
                (["--het-individuals"], of_range),
                (["--het-thin"], of_range),
                (["--het-uncorrected"], of_range),
                (["--sequential", "5"], of_pairs),
                (["--fst-loci"], of_pairs),
                (["--thin"], of_pairs),
                (["--fst", "global,beta", "--thin"], of_pairs),
                (["--fst", "pairs", "--thin", "--sequential", "5"],
                 "--sequential and --thin do not go together"),
                (["--bootstrap", "5"], "--bootstrap needs --distances")):
            with self.subTest(words=words):
                self.refused(2, ["d.txt", "-o", "r", *words],
                             "kvatool run: " + why + "; see kvatool run --help\n")

    def test_device_is_written_and_stays_one(self):
        self.done("d.txt", "-o", "r", "--tidy", "/dev/null", "--json", "/dev/null")
        self.assertTrue(pathlib.Path("/dev/null").is_char_device())

    def test_full_disk_is_told(self):
        told = self.run_tool("d.txt", "-o", "r", "-q", preexec_fn=lambda: limit_files(3000))
        self.assertEqual(told.returncode, 1)
        self.assertIn("Cannot write result file", told.stderr)
        self.assertEqual(self.left(), ["d.txt"])


def limit_files(size):
    import resource
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


class Stops(RunTest):
    def stop(self, number):
        """A long run ended by a signal: its status and how long it took to end."""
        with subprocess.Popen([TOOL, "run", "d.txt", "-o", "r", "--fst", "pairs", "--permutations",
                               "2000000000", "--tidy", "t.tsv", "--threads", "2"], cwd=self.folder,
                              stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True) as run:
            for line in run.stderr:
                if "IM files" in line:  # the next pass is the long one
                    break
            time.sleep(0.2)
            begun = time.monotonic()
            run.send_signal(number)
            rest = run.stderr.read()
            return run.wait(), time.monotonic() - begun, rest

    def test_interrupted(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(signal=number):
                status, seconds, told = self.stop(number)
                self.assertEqual(status, 128 + number)
                self.assertLess(seconds, 1.0)
                self.assertIn("stopped, no results of d.txt", told)
                self.assertEqual(self.left(), ["d.txt"])

    def test_killed_run_leaves_nothing_that_looks_finished(self):
        status, _, _ = self.stop(signal.SIGKILL)
        self.assertEqual(status, -signal.SIGKILL)
        self.assertFalse((self.folder / "r").exists())
        self.assertFalse((self.folder / "t.tsv").exists())
        self.assertTrue(any(name.startswith("r.unfinished-") for name in self.left()))
        self.done("d.txt", "-o", "r")


class Telling(RunTest):
    def test_a_line_a_pass(self):
        told = self.done("d.txt", "-o", "r")
        lines = told.stderr.splitlines()
        self.assertEqual(told.stdout, "")
        self.assertEqual(len(lines), 9)
        self.assertRegex(lines[0], r"^d\.txt: allele counts, \d+\.\d s$")
        self.assertEqual(lines[-1], f"d.txt: results in {(self.folder / 'r').resolve()}")

    def test_quiet(self):
        told = self.done("d.txt", "-o", "r", "--quiet")
        self.assertEqual((told.stdout, told.stderr), ("", ""))

    def test_bar_on_a_terminal(self):
        terminal, other = pty.openpty()
        run = subprocess.Popen([TOOL, "run", "d.txt", "-o", "r", "--fst", "pairs", "--permutations",
                                "300000"], cwd=self.folder, stdin=subprocess.DEVNULL, stderr=other)
        os.close(other)
        told = b""
        try:
            while block := os.read(terminal, 4096):
                told += block
        except OSError:  # the terminal's other side is closed
            pass
        os.close(terminal)
        self.assertEqual(run.wait(), 0)
        self.assertRegex(told.decode(), r"\rd\.txt: \[#*\.*\] F-statistics, \d+ %, \d+:\d\d left")
        self.assertIn(b"d.txt: results in", told)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
