#!/usr/bin/env python3
"""Tries the workflow for real: throughput, overhead per job, and what happens after a kill.

    trial.py FOLDER KVATOOL                    all of it: a quarter of an hour on two free cores, 3 GB
    trial.py FOLDER KVATOOL --files 1000 --only slurm,kills

Simulated data files go into FOLDER, are run locally and on the Slurm of slurm/setup.sh, which is started
in FOLDER and stopped again, and one line of a table is printed for each case. All tables must have the
same rows. CPU seconds are user and system of everything but the daemons of Slurm: Snakemake here, and
jobs with the Snakemake that each starts. What they have beyond those of chunk.py and its kvatool is the
overhead.
"""

import argparse
import hashlib
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

WORKFLOW = pathlib.Path(__file__).resolve().parent
SETUP = WORKFLOW / "slurm" / "setup.sh"
KEPT = "['fst_*','gst_*','heterozygosity_*']"
JOBSCRIPT = """#!/bin/sh
# properties = {{properties}}
trap 'times >"{folder}/times.$SLURM_JOB_ID"' EXIT
{{exec_job}}
"""


# --- A run of the workflow -----------------------------------------------------------------

class Batch:
    """A run on some of the data files, in a folder of its own."""

    def __init__(self, words, name, files, size, slurm=False, **config):
        self.words, self.files, self.size, self.slurm = words, files, size, slurm
        self.folder = words.folder / name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        (self.folder / "list.txt").write_text(
            "".join(f"../sim/{k // 1000:03d}/{k:06d}.txt\n" for k in range(files)))
        settings = {"list": "list.txt", "files_per_job": size, "kvatool": words.kvatool,
                    "scratch": words.scratch, "statistics": KEPT, **config}
        self.command = ["snakemake", "--snakefile", WORKFLOW / "Snakefile", "--directory", self.folder,
                        "--config", *(f"{key}={value}" for key, value in settings.items())]
        if slurm:
            (self.folder / "job.sh").write_text(JOBSCRIPT.format(folder=self.folder))
            self.command += ["--profile", WORKFLOW / "slurm" / "profile", "--jobscript",
                             self.folder / "job.sh"]
        else:
            self.command += ["--cores", str(words.cores), "--rerun-incomplete"]

    def start(self, *more):
        log = open(self.folder / "log.txt", "ab")
        return subprocess.Popen([*map(str, self.command), *more], stdout=log, stderr=log,
                                start_new_session=True)

    def finish(self):
        """Runs what is left. Wall seconds, and CPU seconds of Snakemake and what it waits for."""
        before, begun = children_seconds(), time.monotonic()
        if self.start().wait() != 0:
            sys.exit(f"failed: see {self.folder}/log.txt")
        return time.monotonic() - begun, children_seconds() - before

    def told(self):
        return [json.loads(file.read_bytes())
                for file in sorted((self.folder / "batch" / "parts").glob("*.json"))]

    def parts(self):
        """Number of a finished job to what it told, its times among it; Snakemake touches the files."""
        return {file.stem: file.read_bytes()
                for file in (self.folder / "batch" / "parts").glob("*.json")}

    def digest(self):
        with open(self.folder / "batch" / "table.txt", "rb") as table:
            return hashlib.file_digest(table, "sha256").hexdigest()

    def slurm_seconds(self):
        """CPU seconds of the jobs on Slurm, from what `times` of their shells told."""
        total = 0.0
        for file in self.folder.glob("times.*"):
            for minutes, seconds in re.findall(r"(\d+)m([\d.]+)s", file.read_text()):
                total += 60 * int(minutes) + float(seconds)
        return total

    def remove(self):
        shutil.rmtree(self.folder)


def children_seconds():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


# --- Throughput ----------------------------------------------------------------------------

class Digests:
    """The tables of runs on as many data files must be the same."""

    def __init__(self):
        self.seen = {}

    def word(self, batch):
        return "same" if self.seen.setdefault(batch.files, batch.digest()) == batch.digest() else "OTHER"


def measure(words, digests, name, files, size, slurm=False, **config):
    batch = Batch(words, "run", files, size, slurm, **config)
    wall, cpu = batch.finish()
    cpu += batch.slurm_seconds()
    told = batch.told()
    inside = sum(job["cpu_seconds"] for job in told)
    print(f"| {name} | {files} | {size} | {len(told)} | {wall:.0f} | {cpu:.0f} | {inside:.0f} "
          f"| {files / cpu:.0f} | {files / wall / words.cores:.0f} | {(cpu - inside) / len(told):.2f} "
          f"| {digests.word(batch)} |", flush=True)
    batch.remove()


def throughput(words, digests):
    few = max(words.files // 10, 1)
    print("| Where | Files | Files per job | Jobs | Wall s | CPU s | ... of chunk.py | Files per CPU s "
          "| Files per s and core | Overhead per job, CPU s | Table |")
    print("|---|---|---|---|---|---|---|---|---|---|---|")
    if "local" in words.only:
        for size in words.sizes:
            measure(words, digests, "local", words.files, size)
        measure(words, digests, "local, scratch on disk", few, 100, scratch="")
        measure(words, digests, "local, own seeds", few, 100, own_seeds=True)
    if "slurm" in words.only:
        for size in words.sizes[1:]:
            measure(words, digests, "Slurm", words.files, size, True)
        measure(words, digests, "Slurm", few, words.sizes[0], True)


# --- Kills ---------------------------------------------------------------------------------

def slow_batch(words, slurm):
    """Eight jobs of some seconds."""
    return Batch(words, "run", 160, 20, slurm, run="--fst pairs,global --permutations 40000")


def wait_for_parts(batch, number):
    while len(batch.parts()) < number:
        time.sleep(0.1)


def unfinished(batch, job):
    """Whether the chunk of a Slurm job has begun and not written its piece."""
    log = batch.folder / "batch" / "logs" / f"{job}.txt"
    number = re.search(r"number=(\d+)", log.read_text()) if log.exists() else None
    return number is not None and number[1] not in batch.parts()


def running_job(batch, run):
    """Number of a Slurm job whose chunk has run for two seconds or more and is not done."""
    while run.poll() is None:
        told = subprocess.run(["squeue", "--noheader", "--states=RUNNING", "--format=%i %M %j"],
                              check=True, capture_output=True, text=True).stdout
        for line in told.splitlines():
            number, seconds, name = line.split()
            if name.startswith("kva.chunk") and int(seconds.split(":")[-1]) >= 2 \
                    and unfinished(batch, number):
                return number
        time.sleep(0.2)
    sys.exit("the batch ended before a job of it could be killed")


def kill_processes(job):
    """kill -9 of all processes of a Slurm job."""
    told = subprocess.run(["scontrol", "listpids", job], check=True, capture_output=True, text=True)
    for line in told.stdout.splitlines()[1:]:
        if line.split()[1] == job:
            os.kill(int(line.split()[0]), signal.SIGKILL)


def tell_kill(name, batch, before, killed_at, status, digests):
    """What became of a batch after a kill: before are the parts that were done then."""
    after = batch.parts()
    again = sum(after.get(part) != told for part, told in before.items())
    print(f"| {name} | {len(before)} of {len(after)} | {status} | {again} | {len(after) - len(before)} "
          f"| {time.monotonic() - killed_at:.0f} | {digests.word(batch)} |", flush=True)
    batch.remove()


def kill_a_job(words, digests, name, kill):
    batch = slow_batch(words, True)
    run = batch.start()
    wait_for_parts(batch, 2)
    job = running_job(batch, run)
    before, killed_at = batch.parts(), time.monotonic()
    kill(job)
    status = run.wait()
    tell_kill(name, batch, before, killed_at, f"went on by itself, status {status}", digests)


def kill_the_workflow(words, digests, name, slurm):
    batch = slow_batch(words, slurm)
    run = batch.start()
    wait_for_parts(batch, 3)
    os.killpg(run.pid, signal.SIGKILL)
    run.wait()
    before, killed_at = batch.parts(), time.monotonic()
    refused = batch.start().wait()
    batch.start("--unlock").wait()
    batch.finish()
    tell_kill(name, batch, before, killed_at, f"refused (status {refused}) until --unlock, then done",
              digests)


def kills(words):
    digests = Digests()
    print("| Killed | Jobs done before | Then | Done ones run again | Others run | Seconds to the end "
          "| Table |")
    print("|---|---|---|---|---|---|---|")
    undisturbed = slow_batch(words, False)
    undisturbed.finish()
    digests.word(undisturbed)
    if "local" in words.only:
        kill_the_workflow(words, digests, "local: kill -9 of Snakemake and its jobs", False)
    if "slurm" in words.only:
        kill_a_job(words, digests, "Slurm: scancel of a job",
                   lambda job: subprocess.run(["scancel", job], check=True))
        kill_a_job(words, digests, "Slurm: kill -9 of a job's processes", kill_processes)
        kill_the_workflow(words, digests, "Slurm: kill -9 of Snakemake, its jobs go on", True)


# --- All of it -----------------------------------------------------------------------------

def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("folder", type=lambda name: pathlib.Path(name).resolve())
    parser.add_argument("kvatool", type=lambda name: pathlib.Path(name).resolve())
    parser.add_argument("--files", type=int, default=10000)
    parser.add_argument("--cores", type=int, default=os.cpu_count())
    parser.add_argument("--scratch", default="/dev/shm")
    parser.add_argument("--sizes", default=[10, 100, 500], help="files per job, small ones first",
                        type=lambda text: [int(word) for word in text.split(",")])
    parser.add_argument("--only", default="local,slurm,kills", help="some of local,slurm,kills")
    words = parser.parse_args()
    words.folder.mkdir(parents=True, exist_ok=True)
    begun = time.monotonic()
    subprocess.run([WORKFLOW / "simulate.py", words.folder / "sim", "--files", str(words.files)],
                   check=True)
    print(f"{words.files} data files simulated in {time.monotonic() - begun:.0f} s\n", flush=True)
    digests = Digests()
    slurm = words.folder / "slurm"
    if "slurm" in words.only:
        subprocess.run([SETUP, "start", slurm], check=True)
        os.environ["SLURM_CONF"] = str(slurm / "slurm.conf")
    try:
        throughput(words, digests)
        if "kills" in words.only:
            print()
            kills(words)
    finally:
        if "slurm" in words.only:
            subprocess.run([SETUP, "stop", slurm], check=True)


if __name__ == "__main__":
    main()
