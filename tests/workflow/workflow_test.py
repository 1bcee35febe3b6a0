#!/usr/bin/env python3
"""The workflow of workflow/ from outside, on a few small data files.

Usage: workflow_test.py KVATOOL [--slurm] [word of unittest ...]

With --slurm also on the Slurm that workflow/slurm/setup.sh starts. Exit status 77 if snakemake is not
installed.
"""

import csv
import gzip
import hashlib
import io
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

TOOL = pathlib.Path(sys.argv[1]).resolve()
ON_SLURM = "--slurm" in sys.argv
WORKFLOW = pathlib.Path(__file__).resolve().parents[2] / "workflow"
SKIPPED = 77
OPTIONS = "--fst pairs,global --permutations 40 --het-range 20"
HEAD = ["data", "statistic", "population1", "population2", "locus", "replicate", "value"]

# In place of kvatool: notes the data files of each run, and waits or dies once where it is told to.
WRAPPER = """#!/bin/sh
case "$*" in --version) exec {tool} --version ;; esac
echo "$*" | sed 's/.* -- //' >>{folder}/calls
case "$*" in
*"$(cat {folder}/hold 2>/dev/null || echo NONE)"*) touch {folder}/held && exec sleep 300 ;;
*"$(cat {folder}/die 2>/dev/null || echo NONE)"*) rm {folder}/die && kill -9 $$ ;;
esac
exec {tool} "$@"
"""


def simulate(folder, *words):
    subprocess.run([sys.executable, WORKFLOW / "simulate.py", folder, "--individuals", "6", "--loci", "3",
                    *words], check=True)


class BatchTest(unittest.TestCase):
    """Twelve data files in a folder, and runs of the workflow on them."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name).resolve()
        simulate(self.folder / "sim", "--files", "12", "--populations", "3")
        self.files = [f"sim/000/{k:06d}.txt" for k in range(12)]
        self.scratch = self.folder / "scratch"
        self.scratch.mkdir()
        self.wrapper = self.folder / "wrapper"
        self.wrapper.write_text(WRAPPER.format(tool=TOOL, folder=self.folder))
        self.wrapper.chmod(0o755)

    def command(self, *words, **config):
        settings = {"data": "['sim/*/*.txt']", "run": OPTIONS, "seed": 5, "files_per_job": 5,
                    "kvatool": self.wrapper, "scratch": self.scratch, **config}
        return ["snakemake", "--snakefile", str(WORKFLOW / "Snakefile"), "--directory", str(self.folder),
                *(words or ["--cores", "1"]), "--config",
                *(f"{key}={value}" for key, value in settings.items())]

    def run_batch(self, *words, **config):
        # With CI set Snakemake asks for jobs of a cluster each second.
        return subprocess.run(self.command(*words, **config), check=False, capture_output=True, text=True,
                              env=dict(os.environ, CI="1"))

    def done(self, *words, **config):
        told = self.run_batch(*words, **config)
        self.assertEqual(told.returncode, 0, told.stderr)
        self.assertEqual(list(self.scratch.iterdir()), [], "the scratch folder is left empty")
        return told

    def refused(self, *words, **config):
        told = self.run_batch(*words, **config)
        self.assertNotEqual(told.returncode, 0)
        return told.stderr + told.stdout

    def read(self, name="table.txt", output="batch"):
        return (self.folder / output / name).read_text()

    def rows(self, text):
        return list(csv.reader(io.StringIO(text), delimiter="\t"))

    def by_hand(self, files, seed=lambda file: 5):
        """The rows of the table from a run of kvatool for each data file."""
        rows = [HEAD]
        for file in files:
            place = self.folder / "hand"
            subprocess.run([TOOL, "run", "-q", file, *OPTIONS.split(), "--seed", str(seed(file)), "-o", place,
                            "--tidy", self.folder / "hand.txt"], check=True, cwd=self.folder)
            rows += [[file, *row] for row in self.rows((self.folder / "hand.txt").read_text())[1:]]
            shutil.rmtree(place)
        return rows

    def calls(self):
        """The data files of the runs of kvatool since the last look; jobs come in any order."""
        file = self.folder / "calls"
        lines = file.read_text().splitlines() if file.exists() else []
        file.unlink(missing_ok=True)
        return sorted(line.split() for line in lines)


class Tables(BatchTest):
    def test_table_is_that_of_runs_by_hand(self):
        told = self.done(files_per_job=5)
        self.assertEqual(self.rows(self.read()), self.by_hand(self.files))
        self.assertEqual(self.calls(), [self.files[:5], self.files[5:10], self.files[10:]])
        self.assertEqual(self.read("failures.txt"), "data\tjob\tmessage\n")
        rows = len(self.rows(self.read())) - 1
        for line in ("data files: 12", "done: 12", "failed: 0", "jobs: 3", f"rows: {rows}"):
            self.assertIn(line + "\n", told.stderr)
            self.assertIn(line + "\n", self.read("summary.txt"))

    def test_files_of_a_job_do_not_change_the_table(self):
        tables = set()
        for size in (1, 7, 50):
            self.done(files_per_job=size, output=f"of_{size}")
            tables.add(self.read(output=f"of_{size}"))
        self.assertEqual(len(tables), 1)
        # A plan with fewer jobs in the same folder leaves nothing of the old one.
        self.done(files_per_job=6, output="of_1")
        self.assertEqual({self.read(output="of_1")}, tables)
        self.assertEqual(len(list((self.folder / "of_1" / "plan").iterdir())), 2)

    def test_own_seed_is_made_of_seed_and_path(self):
        self.done(own_seeds=True, files_per_job=7)

        def seed(file):  # the first 53 bits of the check sum
            return int(hashlib.sha256(f"5\n{file}".encode()).hexdigest(), 16) >> (256 - 53)
        self.assertEqual(self.rows(self.read()), self.by_hand(self.files, seed))
        self.done(own_seeds=True, files_per_job=1, output="single")
        self.assertEqual(self.read(output="single"), self.read())

    def test_rows_and_columns_are_chosen(self):
        self.done(output="all")
        self.done(statistics="['fst_pairwise','gst*']", columns="['value','data','statistic']",
                  compress=True)
        with gzip.open(self.folder / "batch" / "table.txt.gz", "rt") as table:
            found = self.rows(table.read())
        expected = [[row[6], row[0], row[1]] for row in self.rows(self.read(output="all"))[1:]
                    if row[1] == "fst_pairwise" or row[1].startswith("gst")]
        self.assertEqual(found, [["value", "data", "statistic"], *expected])
        self.assertGreater(len(expected), 12 * 3)

    def test_results_are_kept(self):
        self.done(keep_results=True, files_per_job=7)
        kept = [file.relative_to(self.folder / "batch" / "results").parent.as_posix()
                for file in sorted((self.folder / "batch" / "results").glob("*/*/run.json"))]
        self.assertEqual(kept, [f"00000{k // 7}/{k % 7 + 1:04d}_{k:06d}.txt" for k in range(12)])

    def test_list_gives_files_and_order(self):
        names = [self.files[7], "with blank.txt", self.files[2]]
        shutil.copy(self.folder / self.files[3], self.folder / names[1])
        (self.folder / "list").write_text("\n".join([*names, names[0]]) + "\n")  # each once
        for size in (1, 3):
            self.done(data="[]", list="list", files_per_job=size)
            self.assertEqual(self.rows(self.read()), self.by_hand(names))


class Failures(BatchTest):
    def setUp(self):
        super().setUp()
        (self.folder / self.files[4]).write_text("no data\n")
        (self.folder / self.files[6]).unlink()
        os.symlink("nowhere", self.folder / self.files[6])
        (self.folder / "sim" / "001").mkdir()
        # Of the same name as one in the same job.
        shutil.copy(self.folder / self.files[11], self.folder / "sim" / "001" / "000010.txt")
        self.good = [file for file in self.files if file not in (self.files[4], self.files[6])]
        self.good.append("sim/001/000010.txt")

    def test_spoiled_and_missing_files_are_listed(self):
        told = self.done()
        self.assertEqual(self.rows(self.read()), self.by_hand(self.good))
        failures = self.rows(self.read("failures.txt"))[1:]
        self.assertEqual([row[:2] for row in failures],
                         [[self.files[4], "000000"], [self.files[6], "000001"]])
        self.assertIn("row 1", failures[0][2])
        self.assertIn("cannot read", failures[1][2])
        self.assertIn("failed: 2, see failures.txt\n", told.stderr)

    def test_only_jobs_with_failures_are_run_again_on_demand(self):
        self.done()
        shutil.copy(self.folder / self.files[0], self.folder / "nowhere")
        (self.folder / "sim" / "000" / "nowhere").symlink_to(self.folder / self.files[0])
        self.calls()
        self.done(retry_failed=True)
        again = {file for call in self.calls() for file in call}
        self.assertEqual(again, set(self.files[:10]))
        self.assertEqual([row[0] for row in self.rows(self.read("failures.txt"))[1:]], [self.files[4]])

    def test_stop_fails_the_job(self):
        told = self.refused(on_failure="stop", files_per_job=20)
        self.assertIn("row 1", told)
        self.assertFalse((self.folder / "batch" / "table.txt").exists())
        self.assertFalse((self.folder / "batch" / "parts" / "000000.json").exists())

    def test_settings_are_checked(self):
        for config, word in (({"run": "--fst pairs --seed 3"}, "--seed is set by the workflow"),
                             ({"columns": "['p']"}, "there is no 'p'"),
                             ({"data": "['none*']"}, "no file matches 'none*'"),
                             ({"data": "[]"}, "there are no data files"),
                             ({"on_failure": "x"}, "neither go-on nor stop"),
                             ({"files_per_job": 0}, "1 at least"),
                             ({"kvatool": "/no/such"}, "cannot run '/no/such'"),
                             ({"run": "--fst trios"}, "trios")):  # kvatool's own word, by a job
            with self.subTest(config):
                self.assertIn(word, self.refused(**config))
                self.assertFalse((self.folder / "batch" / "table.txt").exists())


class Interrupted(BatchTest):
    def hold(self, file):
        """Makes the run with this data file wait; to be called before it."""
        (self.folder / "hold").write_text(file)

    def wait_until_held(self):
        for _ in range(600):
            if (self.folder / "held").exists():
                break
            time.sleep(0.1)
        else:
            self.fail("the job did not begin")
        (self.folder / "hold").unlink()

    def test_killed_batch_goes_on_where_it_stopped(self):
        self.hold(self.files[8])
        run = subprocess.Popen(self.command(files_per_job=4), start_new_session=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.wait_until_held()
        os.killpg(run.pid, signal.SIGKILL)
        run.wait()
        shutil.rmtree(self.scratch)
        self.scratch.mkdir()
        done = {file.stem for file in (self.folder / "batch" / "parts").glob("*.json")}
        begun = {file for call in self.calls() for file in call}
        self.assertEqual(begun, {file for k in [*map(int, done), 2] for file in self.files[4 * k:4 * k + 4]})
        self.assertIn("lock", self.refused(files_per_job=4))
        self.run_batch("--cores", "1", "--unlock", files_per_job=4)
        self.done("--cores", "1", "--rerun-incomplete", files_per_job=4)
        self.assertEqual({file for call in self.calls() for file in call},
                         {file for k in range(3) if f"{k:06d}" not in done
                          for file in self.files[4 * k:4 * k + 4]})
        self.assertEqual(self.rows(self.read()), self.by_hand(self.files))

    def test_job_whose_program_is_killed_is_no_failed_file(self):
        (self.folder / "die").write_text(self.files[5])
        told = self.refused("--cores", "1", "--keep-going")
        self.assertIn("ended by a signal", told)
        self.calls()
        self.done()
        self.assertEqual(self.calls(), [self.files[5:10]])
        (self.folder / "die").write_text(self.files[5])
        self.done("--cores", "1", "--retries", "1", output="again")
        self.assertEqual(self.read(output="again"), self.read())

    def test_terminated_job_leaves_nothing(self):
        (self.folder / "one.list").write_text(f"# x\n{self.files[0]}\t1\t1\n")
        self.hold(self.files[0])
        settings = ('{"kvatool": "%s", "options": [], "seed": 1, "own_seeds": false, "threads": 1, "keep": "",'
                    ' "statistics": [], "columns": ["data"], "stop": false}' % self.wrapper)
        job = subprocess.Popen([sys.executable, WORKFLOW / "chunk.py", "one.list", "one.txt", "one.json",
                                settings, '{"scratch": "%s"}' % self.scratch], cwd=self.folder,
                               start_new_session=True)
        self.wait_until_held()
        job.terminate()
        self.assertEqual(job.wait(), 128 + signal.SIGTERM)
        self.assertEqual(list(self.scratch.iterdir()), [])
        self.assertEqual([file.name for file in self.folder.glob("one.*")], ["one.list"])

    def test_only_what_changed_is_run_again(self):
        self.done()
        self.calls()
        self.done(scratch="/tmp", on_failure="stop")
        self.assertEqual(self.calls(), [])
        shutil.copy(self.folder / self.files[0], self.folder / self.files[10])
        self.done()
        self.assertEqual(self.calls(), [self.files[10:]])
        self.assertEqual(self.rows(self.read()), self.by_hand(self.files))
        self.done(seed=6)
        self.assertEqual(len(self.calls()), 3)


class Simulated(BatchTest):
    def test_file_depends_on_seed_and_number_alone(self):
        simulate(self.folder / "part", "--first", "7", "--files", "2", "--populations", "3")
        for k in (7, 8):
            self.assertEqual((self.folder / "part" / "000" / f"{k:06d}.txt").read_bytes(),
                             (self.folder / self.files[k]).read_bytes())
        simulate(self.folder / "other", "--files", "1", "--populations", "3", "--seed", "2")
        self.assertNotEqual((self.folder / "other" / "000" / "000000.txt").read_bytes(),
                            (self.folder / self.files[0]).read_bytes())

    def test_fst_is_that_asked_for(self):
        # Over 400 loci theta of Weir and Cockerham, whose expectation is F, spreads by about 0.004.
        simulate(self.folder / "wide", "--files", "1", "--populations", "6", "--individuals", "30",
                 "--loci", "400", "--fst", "0.2")
        subprocess.run([TOOL, "run", "-q", "wide/000/000000.txt", "-o", "wide/r", "--fst", "global",
                        "--permutations", "0", "--tidy", "wide/t"], check=True, cwd=self.folder)
        rows = self.rows((self.folder / "wide" / "t").read_text())
        fst = [float(row[5]) for row in rows if row[0] == "fst_global"]
        self.assertAlmostEqual(fst[0], 0.2, delta=0.02)


@unittest.skipUnless(ON_SLURM, "without --slurm")
class OnSlurm(BatchTest):
    def setUp(self):
        super().setUp()
        setup = WORKFLOW / "slurm" / "setup.sh"
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            os.environ["KVA_SLURM_PORT"] = str(free.getsockname()[1])
        place = str(self.folder / "slurm")
        subprocess.run([setup, "start", place], check=True, stdout=subprocess.DEVNULL)
        self.addCleanup(subprocess.run, [setup, "stop", place], check=True)
        os.environ["SLURM_CONF"] = place + "/slurm.conf"

    def cancel_held(self):
        for _ in range(300):
            if (self.folder / "held").exists():
                break
            time.sleep(0.1)
        (self.folder / "hold").unlink()
        running = subprocess.run(["squeue", "--noheader", "--states=RUNNING", "--format=%i"], check=True,
                                 capture_output=True, text=True).stdout.split()
        self.assertEqual(len(running), 1)
        subprocess.run(["scancel", *running], check=True)

    def test_cancelled_job_is_sent_again(self):
        (self.folder / "hold").write_text(self.files[8])
        words = ["--profile", str(WORKFLOW / "slurm" / "profile")]
        run = subprocess.Popen(self.command(*words, files_per_job=12), env=dict(os.environ, CI="1"),
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.cancel_held()
        told = run.communicate()[0]
        self.assertEqual(run.returncode, 0, told)
        self.assertIn("Trying to restart job", told)
        self.assertEqual(self.calls(), [self.files, self.files])
        self.assertEqual(list(self.scratch.iterdir()), [], "the cancelled job cleans up")
        self.assertEqual(self.rows(self.read()), self.by_hand(self.files))


if __name__ == "__main__":
    if not shutil.which("snakemake"):
        print("skipped: snakemake is not installed")
        sys.exit(SKIPPED)
    unittest.main(argv=[sys.argv[0], *(word for word in sys.argv[2:] if word != "--slurm")])
