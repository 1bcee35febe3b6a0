#!/usr/bin/env python3
"""Runs the commands that the documents show and compares what comes with what they show.

Usage: commands_test.py KVA KVATOOL [PAGE...]      default: all pages

A fenced block that begins with "$ " is run by bash in a folder that holds the example data, the same one for
all blocks of a page. A command goes on in lines that begin with "> ", and where its line ends with "\\"; the
lines up to the next "$ " are what it prints, standard error with it. A line "..." stands for any lines,
"..." at the end of a line for any rest.
Words behind the language of a fence:

    needs=a,b     programs and R packages (r:adegenet) that the block needs; without them it is skipped
    file=NAME     the block is the file NAME, written into the folder

Exit status 77 if nothing but skipped blocks is left.
"""

import difflib
import functools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^```(\w*)[ ]*(.*)$")
TIMEOUT = 300  # seconds for a command; a build without optimisation is slow
SKIPPED = 77


def pages():
    fixed = [ROOT / "README.md", ROOT / "r" / "README.md", ROOT / "examples" / "README.md"]
    return fixed + sorted((ROOT / "docs").glob("*.md"))


class Block:
    """A fenced block: where it stands, the words of its fence, its lines."""

    def __init__(self, page, line, words):
        self.page, self.line, self.lines = page, line, []
        self.options = dict((word.split("=", 1) + [""])[:2] for word in words.split())

    def place(self):
        return "%s:%d" % (self.page.relative_to(ROOT), self.line)

    def runs(self):
        return bool(self.lines) and self.lines[0].startswith("$ ")


def blocks(page):
    found, open_block = [], None
    for number, line in enumerate(page.read_text().splitlines(), 1):
        fence = FENCE.match(line)
        if open_block is None and fence:
            open_block = Block(page, number, fence.group(2))
        elif open_block is not None and line == "```":
            found.append(open_block)
            open_block = None
        elif open_block is not None:
            open_block.lines.append(line)
    return found


def steps(lines):
    """The commands of a block, each with the lines that it shows."""
    found, goes_on = [], False
    for line in lines:
        if goes_on or (line.startswith("> ") and not found[-1][1]):
            found[-1][0] += "\n" + (line[2:] if line.startswith("> ") else line)
        elif line.startswith("$ "):
            found.append([line[2:], []])
        else:
            found[-1][1].append(line)
            continue
        goes_on = line.endswith("\\")
    return found


def fits(shown, came):
    """Whether the lines that came are those shown, where "..." stands for what is left out."""
    if not shown:
        return not came
    if shown[0] == "...":
        return any(fits(shown[1:], came[i:]) for i in range(len(came), -1, -1))
    if not came:
        return False
    first, line = shown[0], came[0].rstrip()
    same = line.startswith(first[:-3]) if first.endswith("...") else line == first.rstrip()
    return same and fits(shown[1:], came[1:])


@functools.cache
def have(need):
    if need.startswith("r:"):
        code = "quit(status = !requireNamespace('%s', quietly = TRUE))" % need[2:]
        return have("Rscript") and subprocess.run(
            ["Rscript", "-e", code], check=False, stderr=subprocess.DEVNULL).returncode == 0
    return shutil.which(need) is not None


class PageRun:
    """The blocks of a page, one after the other in a folder of its own."""

    def __init__(self, folder, environment):
        self.folder, self.environment = folder, environment
        self.commands = self.failures = 0
        self.skipped = []

    def told(self, block, what, shown, came):
        self.failures += 1
        print("%s: %s" % (block.place(), what))
        for line in difflib.unified_diff(shown, came, "shown", "came", lineterm="", n=2):
            print("    " + line)

    def file(self, block):
        text = "".join(line + "\n" for line in block.lines)
        (self.folder / block.options["file"]).write_text(text)

    def run(self, block):
        lacks = [need for need in block.options.get("needs", "").split(",")
                 if need and not have(need)]
        if lacks:
            self.skipped.append("%s, which needs %s" % (block.place(), " ".join(lacks)))
            return
        folder = self.folder
        for command, shown in steps(block.lines):
            self.commands += 1
            told = subprocess.run(
                ["bash", "-c", command + "\nstatus=$?; pwd >&9; exit $status"], cwd=folder,
                env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT, timeout=TIMEOUT, check=False, pass_fds=[9])
            os.lseek(9, 0, os.SEEK_SET)
            folder = pathlib.Path(os.read(9, 4096).decode().strip() or folder)
            os.ftruncate(9, 0)
            os.lseek(9, 0, os.SEEK_SET)
            came = told.stdout.decode(errors="replace").splitlines()
            if not fits(shown, came):
                self.told(block, command, shown, came)


def run_page(page, programs):
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place).resolve()
        for data in (ROOT / "examples").iterdir():
            if data.is_file():
                shutil.copy(data, folder)
        shutil.copytree(ROOT / "examples", folder / "examples")
        environment = dict(os.environ, LC_ALL="C.UTF-8", HOME=str(folder),
                           PATH=os.pathsep.join([*programs, str(ROOT / "tests" / "docs"),
                                                 os.environ["PATH"]]))
        run = PageRun(folder, environment)
        for block in blocks(page):
            if "file" in block.options:
                run.file(block)
            elif block.runs():
                run.run(block)
    print("%s: %d commands, %d differ, %d blocks skipped" % (
        page.relative_to(ROOT), run.commands, run.failures, len(run.skipped)))
    for why in run.skipped:
        print("  skipped: " + why)
    return run


def main():
    programs = {str(pathlib.Path(program).resolve().parent) for program in sys.argv[1:3]}
    wanted = [pathlib.Path(page).resolve() for page in sys.argv[3:]] or pages()
    with tempfile.TemporaryFile() as where:
        os.dup2(where.fileno(), 9)  # the folder that a command ends in
        runs = [run_page(page, programs) for page in wanted]
    commands, skipped = sum(run.commands for run in runs), sum(len(run.skipped) for run in runs)
    print("all pages: %d commands, %d blocks skipped" % (commands, skipped))
    if any(run.failures for run in runs):
        sys.exit(1)
    sys.exit(SKIPPED if skipped and not commands else 0)


if __name__ == "__main__":
    main()
