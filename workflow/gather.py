#!/usr/bin/env python3
"""The pieces of all jobs of a batch, laid behind one head; its failures and its summary.

Usage: gather.py OUTPUT SUFFIX SETTINGS

Pieces are copied as they are, in the order of the data files: pieces that are gzipped make a gzipped
table of many members, as gzip itself, R and Python read it.
"""

import gzip
import json
import os
import pathlib
import shutil
import sys

import plan

BLOCK = 1 << 20


def write_table(file, pieces, columns):
    head = ("\t".join(columns) + "\n").encode()
    unfinished = file.with_name(file.name + ".unfinished")
    with open(unfinished, "wb") as out:
        out.write(gzip.compress(head, mtime=0) if file.suffix == ".gz" else head)
        for piece in pieces:
            with open(piece, "rb") as rows:
                shutil.copyfileobj(rows, out, BLOCK)
    os.replace(unfinished, file)


def write_text(file, lines):
    unfinished = file.with_name(file.name + ".unfinished")
    unfinished.write_text("".join(line + "\n" for line in lines), encoding="utf-8",
                          errors="surrogateescape")
    os.replace(unfinished, file)


def failure_lines(told):
    yield "data\tjob\tmessage"
    for number, job in enumerate(told):
        for failed in job["failed"]:
            yield f"{failed['data']}\t{plan.name(number)}\t{' '.join(failed['message'].split())}"


def summary_lines(told, table):
    total = {key: sum(job[key] for job in told) for key in ("files", "done", "rows", "cpu_seconds")}
    failed = total["files"] - total["done"]
    yield f"data files: {total['files']}"
    yield f"done: {total['done']}"
    yield f"failed: {failed}" + (", see failures.txt" if failed else "")
    yield f"jobs: {len(told)}"
    yield f"rows: {total['rows']}"
    yield f"bytes of {table.name}: {table.stat().st_size}"
    yield f"CPU seconds of the jobs: {total['cpu_seconds']:.1f}"


def main():
    output, suffix, settings = pathlib.Path(sys.argv[1]), sys.argv[2], json.loads(sys.argv[3])
    jobs = json.loads((output / "plan.json").read_bytes())["jobs"]
    parts = output / "parts"
    table = output / ("table" + suffix)
    write_table(table, [parts / (plan.name(k) + suffix) for k in range(jobs)], settings["columns"])
    told = [json.loads((parts / f"{plan.name(k)}.json").read_bytes()) for k in range(jobs)]
    write_text(output / "failures.txt", failure_lines(told))
    write_text(output / "summary.txt", summary_lines(told, table))


if __name__ == "__main__":
    main()
