"""The plan of a batch: which data files each job takes.

OUTPUT/plan/000012.list holds the data files of job 12, after a line with the version of kvatool:

    # kvatool 1.0.0
    sim/000/000120.txt<TAB>5321<TAB>1704067200000000000

path, bytes and time of change in nanoseconds. A list is written only where it says something new, so
that Snakemake runs those jobs again whose data or program changed, and no others.
OUTPUT/plan.json has the numbers of jobs and data files.
"""

import glob
import json
import os
import pathlib
import shlex
import subprocess

COLUMNS = ["data", "statistic", "population1", "population2", "locus", "replicate", "value"]
OWN_OPTIONS = {"-o", "--output", "--tidy", "--json", "--force", "-q", "--quiet", "--seed", "--clock-seed",
               "--threads"}


class PlanError(Exception):
    """What is wrong with the settings, in a line."""


# --- Settings ------------------------------------------------------------------------------

def suffix(config):
    return ".txt.gz" if config["compress"] else ".txt"


def name(number):
    """Of a job's files."""
    return f"{number:06d}"


def settings(config):
    """What decides the rows of the table, as JSON: jobs are run again where it changes."""
    options = config["run"]
    words = shlex.split(options) if isinstance(options, str) else [str(word) for word in options]
    for word in words:
        if word.split("=")[0] in OWN_OPTIONS:
            raise PlanError(f"run: {word} is set by the workflow")
    for column in config["columns"]:
        if column not in COLUMNS:
            raise PlanError(f"columns: there is no '{column}'; there are " + ", ".join(COLUMNS))
    return json.dumps({
        "options": words,
        "seed": int(config["seed"]),
        "own_seeds": bool(config["own_seeds"]),
        "statistics": list(config["statistics"]),
        "columns": list(config["columns"]) or COLUMNS,
        "keep": str(pathlib.Path(config["output"]) / "results") if config["keep_results"] else "",
    })


def site(config):
    """What else a job has to know, as JSON: where and how it runs, with the same results."""
    if config["on_failure"] not in ("go-on", "stop"):
        raise PlanError(f"on_failure: '{config['on_failure']}' is neither go-on nor stop")
    return json.dumps({
        "kvatool": config["kvatool"],
        "threads": int(config["threads"]),
        "stop": config["on_failure"] == "stop",
        "scratch": config["scratch"],
    })


# --- Data files ----------------------------------------------------------------------------

def data_files(config):
    """The paths of all data files in their order, each once."""
    found = []
    patterns = config["data"]
    for pattern in [patterns] if isinstance(patterns, str) else patterns:
        matches = sorted(glob.glob(pattern, recursive=True))
        if not matches:
            raise PlanError(f"data: no file matches '{pattern}'")
        found += [match for match in matches if not os.path.isdir(match)]
    if config["list"]:
        with open(config["list"], encoding="utf-8", errors="surrogateescape") as lines:
            found += [line.rstrip("\r\n") for line in lines if line.strip()]
    if not found:
        raise PlanError("there are no data files; name them by 'data' or 'list'")
    for path in found:
        if any(c in path for c in "\t\r\n"):
            raise PlanError(f"{path!r}: no tabs or line breaks in names of data files")
    return list(dict.fromkeys(found))


def line_of(path):
    try:
        status = os.stat(path)
    except OSError:  # the job lists it as a failure
        return f"{path}\t-\t-\n"
    return f"{path}\t{status.st_size}\t{status.st_mtime_ns}\n"


def version_of(program):
    try:
        return subprocess.run([program, "--version"], check=True, text=True,
                              stdout=subprocess.PIPE).stdout.strip()
    except (OSError, subprocess.CalledProcessError) as wrong:
        raise PlanError(f"kvatool: cannot run '{program}': {wrong}") from wrong


# --- The plan ------------------------------------------------------------------------------

def write_if_new(path, text):
    """Writes a file whole; leaves one alone that reads the same."""
    content = text.encode("utf-8", "surrogateescape")
    if path.exists() and path.read_bytes() == content:
        return
    unfinished = path.with_name(path.name + ".unfinished")
    unfinished.write_bytes(content)
    unfinished.replace(path)


def forget(output, numbers_kept, failed_too):
    """Removes lists and parts of jobs that are no more, and where asked for those with failures."""
    for path in [*(output / "plan").iterdir(), *(output / "parts").iterdir()]:
        stem = path.name.split(".")[0]
        if not stem.isdigit() or int(stem) >= numbers_kept:
            path.unlink()
        elif failed_too and path.name.endswith(".json") and json.loads(path.read_bytes())["failed"]:
            path.unlink()


def make(config):
    """Writes the plan. Throws PlanError."""
    settings(config)
    site(config)
    size = int(config["files_per_job"])
    if size < 1:
        raise PlanError("files_per_job is 1 at least")
    files = data_files(config)
    head = f"# {version_of(config['kvatool'])}\n"
    output = pathlib.Path(config["output"])
    for part in ("plan", "parts", "logs"):
        (output / part).mkdir(parents=True, exist_ok=True)
    jobs = range(0, len(files), size)
    for number, first in enumerate(jobs):
        lines = [line_of(path) for path in files[first:first + size]]
        write_if_new(output / "plan" / f"{name(number)}.list", head + "".join(lines))
    forget(output, len(jobs), config["retry_failed"])
    write_if_new(output / "plan.json", json.dumps({"jobs": len(jobs), "files": len(files)}) + "\n")


def jobs(config):
    """The number of jobs of the plan that was written."""
    return json.loads((pathlib.Path(config["output"]) / "plan.json").read_bytes())["jobs"]
