#!/usr/bin/env python3
"""The completions name every option, keyword and subcommand that the programs know.

Usage: completions_test.py SOURCEFOLDER [KVATOOL]

The options of kva are those of src/control/cczkva.cpp, their keywords those of its manual page; what
kvatool knows is read from its help. bash is asked for completions itself, zsh for its view of the
syntax where it is installed.
"""

import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(sys.argv[1]).resolve()
TOOL = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else None
FOLDER = ROOT / "completions"


def kva_options():
    text = (ROOT / "src" / "control" / "cczkva.cpp").read_text()
    table = text.split("kOptions[] = {")[1].split("};")[0]
    return re.findall(r'\{"(-\w+)"', table)


def kva_keywords():
    """Option to its keywords by the manual page, without those of a single letter."""
    keywords, option = {}, None
    for line in (ROOT / "man" / "kva.1").read_text().splitlines():
        if line.startswith(".It Fl "):
            option = "-" + line.split()[2]
        elif line.startswith(".It Cm ") and option:
            words = re.sub(r" Ns Ar \w+", "", line[len(".It Cm "):]).split(" , ")
            keywords.setdefault(option, []).extend(word for word in words if len(word) > 1)
        elif line.startswith(".Cm ") and option == "-format":
            keywords.setdefault(option, []).append(line.split()[1])
        elif line.startswith(".Sh "):
            option = None
    return keywords


def tool_help(*command):
    """The options and subcommands that a help names."""
    told = subprocess.run([TOOL, *command, "--help"], capture_output=True, text=True, check=True)
    parts = told.stdout.split("\nSubcommands:\n")
    options = []
    for names in re.findall(r"^  (-\S+)", parts[0], re.MULTILINE):
        options += names.split(",")
    commands = re.findall(r"^  ([a-z]\S*)", parts[1].split("\n\n")[0], re.MULTILINE) \
        if len(parts) > 1 else []
    return options, commands


def bash_completions(program, *words):
    """What bash offers for the last word."""
    line = " ".join([program, *words])
    script = """
        source {file}
        COMP_WORDS=({words}) COMP_CWORD={last} COMP_LINE={line} COMP_POINT={point}
        _{program}
        printf '%s\\n' "${{COMPREPLY[@]}}"
    """.format(file=shlex.quote(str(FOLDER / (program + ".bash"))),
               words=" ".join(shlex.quote(word) for word in (program, *words)), last=len(words),
               line=shlex.quote(line), point=len(line), program=program)
    told = subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=True,
                          cwd=ROOT / "examples")
    return told.stdout.split()


def words_of(file):
    return set(re.findall(r"[-\w=]+", (FOLDER / file).read_text()))


class Kva(unittest.TestCase):
    def test_bash_offers_all_options(self):
        options = kva_options()
        self.assertGreater(len(options), 5)
        self.assertEqual(sorted(bash_completions("kva", "")), sorted(options))
        self.assertEqual(sorted(bash_completions("kva", "-i", "x", "-")), sorted(options))

    def test_bash_offers_all_keywords(self):
        keywords = kva_keywords()
        self.assertEqual(set(keywords), {"-dist", "-fst", "-hetrange", "-format"})
        for option, words in keywords.items():
            self.assertEqual(sorted(set(bash_completions("kva", option, ""))), sorted(set(words)))

    def test_bash_completes_values_behind_an_equals_sign(self):
        self.assertEqual(bash_completions("kva", "-fst", "HW=Y"), ["YES"])

    def test_bash_offers_files(self):
        self.assertEqual(bash_completions("kva", "-i", "one"), ["onecolumn.txt"])

    def test_zsh_names_them_all(self):
        known = words_of("_kva")
        for word in kva_options() + sum(kva_keywords().values(), []):
            self.assertIn(word, known)


@unittest.skipIf(TOOL is None, "kvatool is not built")
class KvaTool(unittest.TestCase):
    def test_bash_offers_all_subcommands(self):
        _, commands = tool_help()
        self.assertTrue({"check", "import"} <= set(commands))
        self.assertEqual(sorted(bash_completions("kvatool", "")), sorted(commands))

    def test_bash_offers_all_options(self):
        for command in [()] + [(name,) for name in tool_help()[1]]:
            options, _ = tool_help(*command)
            self.assertIn("--help", options)
            self.assertEqual(sorted(bash_completions("kvatool", *command, "-")), sorted(options))

    def test_bash_offers_the_formats(self):
        told = subprocess.run([TOOL, "import", "x", "-o", "y", "--format", "none"],
                              capture_output=True, text=True, check=False).stderr
        known = re.search(r"\(known: (.*?)\)", told).group(1).split(", ")
        self.assertEqual(sorted(bash_completions("kvatool", "import", "--format", "")),
                         sorted(known))

    def test_bash_offers_files(self):
        self.assertEqual(bash_completions("kvatool", "check", "one"), ["onecolumn.txt"])

    def test_zsh_names_them_all(self):
        known = words_of("_kvatool")
        _, commands = tool_help()
        for word in commands + sum((tool_help(*c)[0] for c in [()] + [(n,) for n in commands]), []):
            self.assertIn(word, known)


    def test_manual_page_names_them_all(self):
        page = (ROOT / "man" / "kvatool.1").read_text()
        known = set(re.findall(r"\bFl (-\S+)", page))
        for name in tool_help()[1]:
            self.assertIn(".Ss kvatool %s\n" % name, page)
            for option in tool_help(name)[0]:
                if option.startswith("--"):
                    self.assertIn(option[1:], known)


class Syntax(unittest.TestCase):
    def test_zsh_reads_them(self):
        if shutil.which("zsh") is None:
            self.skipTest("zsh is not installed")
        for name in ("_kva", "_kvatool"):
            subprocess.run(["zsh", "-n", FOLDER / name], check=True)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
