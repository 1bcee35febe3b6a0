#!/usr/bin/env python3
"""What cmake --install puts where, and a program built on the installed library.

The tree is installed, moved elsewhere and compared with a list. examples/library is built there twice,
by find_package and by pkg-config, and its numbers are those of kvatool run with the same seed.

Usage: install_test.py --build FOLDER --config TYPE --generator NAME --compiler PATH --flags FLAGS
           --shared ON|OFF [--kvatool PATH]
"""

import argparse
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DATA = ROOT / "examples" / "testdata.dat"
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]
DOC = "share/doc/kva/"

ARGUMENTS = None
SCRATCH = None
PREFIX = None


def call(*command, **options):
    """Its standard output; the test fails with all that it said where it fails."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError("%s:\n%s" % (shlex.join(map(str, command)), done.stdout))
    return done.stdout


def install(prefix, **environment):
    call("cmake", "--install", ARGUMENTS.build, "--config", ARGUMENTS.config, "--prefix", prefix,
         env={**os.environ, **environment})


def tree(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*")
                  if not path.is_dir())


def version():
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"\bproject\(kva\s+VERSION (\S+)", text).group(1)


def expected_tree():
    programs = ["kva", "kvatool"] if ARGUMENTS.kvatool else ["kva"]
    files = ["include/kva/kva.h", "lib/pkgconfig/kva.pc"]
    files += ["lib/libkva.so", "lib/libkva.so." + version().split(".")[0], "lib/libkva.so." + version()] \
        if ARGUMENTS.shared == "ON" else ["lib/libkva.a"]
    files += ["lib/cmake/kva/" + name for name in (
        "kvaConfig.cmake", "kvaConfigVersion.cmake", "kvaTargets.cmake",
        "kvaTargets-%s.cmake" % ARGUMENTS.config.lower())]
    for program in programs:
        files += ["bin/" + program, "share/man/man1/%s.1" % program,
                  "share/bash-completion/completions/" + program,
                  "share/zsh/site-functions/_" + program]
    files += [DOC + name for name in ("README.md", "CHANGELOG.md")]
    files += [DOC + "LICENSE"] if (ROOT / "LICENSE").exists() else []
    files += [DOC + page.relative_to(ROOT).as_posix() for page in (ROOT / "docs").rglob("*")
              if page.suffix in (".md", ".png", ".svg")]
    files += [DOC + "examples/" + name for name in (
        "README.md", "onecolumn.txt", "testdata.dat", "library/CMakeLists.txt", "library/main.cpp")]
    return sorted(files)


class Tree(unittest.TestCase):
    maxDiff = None

    def test_is_the_expected_one(self):
        self.assertEqual(tree(PREFIX), expected_tree())

    def test_goes_to_the_stage_that_is_named(self):
        stage = SCRATCH / "stage"
        install("/opt/kva", DESTDIR=str(stage))
        self.assertEqual(tree(stage / "opt" / "kva"), expected_tree())

    def test_names_no_folder_of_the_build(self):
        for name in ("lib/pkgconfig/kva.pc", "lib/cmake/kva/kvaConfig.cmake",
                     "lib/cmake/kva/kvaTargets.cmake"):
            text = (PREFIX / name).read_text(encoding="utf-8")
            self.assertNotIn(str(ROOT), text, name)
            self.assertNotIn(str(ARGUMENTS.build), text, name)


class Version(unittest.TestCase):
    def test_is_that_of_the_project(self):
        text = (PREFIX / "lib/cmake/kva/kvaConfigVersion.cmake").read_text(encoding="utf-8")
        self.assertIn('set(PACKAGE_VERSION "%s")' % version(), text)
        if ARGUMENTS.kvatool:
            self.assertEqual(call(PREFIX / "bin" / "kvatool", "--version"),
                             "kvatool %s\n" % version())

    def test_stands_in_no_source(self):
        for path in [*(ROOT / "src").rglob("*.cpp"), *(ROOT / "src").rglob("*.h")]:
            self.assertNotIn('"%s"' % version(), path.read_text(encoding="utf-8"), path)


class Example(unittest.TestCase):
    """examples/library, as it is installed."""

    def built_by_cmake(self):
        build = SCRATCH / "by_cmake"
        call("cmake", "-S", PREFIX / DOC / "examples/library", "-B", build, "-G", ARGUMENTS.generator,
             "-DCMAKE_CXX_COMPILER=" + ARGUMENTS.compiler, "-DCMAKE_PREFIX_PATH=%s" % PREFIX,
             "-DCMAKE_CXX_FLAGS=" + " ".join([*STRICT, ARGUMENTS.flags]))
        call("cmake", "--build", build)
        return build / "fst"

    def built_by_pkg_config(self):
        tool = shutil.which("pkg-config")
        if tool is None:
            self.skipTest("no pkg-config")
        folder = SCRATCH / "by_pkg_config"
        folder.mkdir()
        environment = {**os.environ, "PKG_CONFIG_PATH": str(PREFIX / "lib/pkgconfig")}
        self.assertEqual(call(tool, "--modversion", "kva", env=environment).strip(), version())
        words = shlex.split(call(tool, "--cflags", "--libs", "kva", env=environment))
        call(ARGUMENTS.compiler, "-std=c++17", *STRICT, *shlex.split(ARGUMENTS.flags),
             PREFIX / DOC / "examples/library/main.cpp", "-o", folder / "fst", *words)
        return folder / "fst"

    def printed(self, program):
        """What the program prints; it leaves nothing in its folder."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=SCRATCH))
        environment = {**os.environ, "LD_LIBRARY_PATH": str(PREFIX / "lib")}
        text = call(program, DATA, cwd=folder, env=environment)
        self.assertEqual(os.listdir(folder), [])
        return text

    def numbers_of_kvatool(self):
        """The same text, from the files of kvatool run."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=SCRATCH)) / "results"
        call(ARGUMENTS.kvatool, "run", DATA, "-o", folder, "--fst", "pairs", "--permutations", 1000,
             "--seed", 1, "--quiet")
        sheet = (folder / "F-Statistic/FST_WC84.txt").read_text(encoding="utf-8")
        rows = [line.split() for line in sheet.splitlines()[1:] if line]
        names = [row[0] for row in rows]
        tests = json.loads((folder / "run.json").read_text(encoding="utf-8"))["tests"]
        p = {frozenset((test["population1"], test["population2"])): test["p"]
             for test in tests if test["statistic"] == "fst_pairwise"}
        lines = ["Fst", *("\t".join(row) for row in rows), "p"]
        for a in names:
            lines.append("\t".join([a] + ["nan" if a == b else "%.5f" % p[frozenset((a, b))]
                                          for b in names]))
        return "\n".join(lines) + "\n"

    def test_built_by_find_package_has_the_numbers_of_kvatool(self):
        text = self.printed(self.built_by_cmake())
        self.assertEqual(text.splitlines()[0], "Fst")
        if not ARGUMENTS.kvatool:
            self.skipTest("no kvatool")
        self.assertEqual(text, self.numbers_of_kvatool())

    def test_built_by_pkg_config_has_the_numbers_of_kvatool(self):
        text = self.printed(self.built_by_pkg_config())
        if not ARGUMENTS.kvatool:
            self.skipTest("no kvatool")
        self.assertEqual(text, self.numbers_of_kvatool())

    def test_tells_of_a_file_that_is_not_there(self):
        program = SCRATCH / "by_cmake" / "fst"
        if not program.exists():
            program = self.built_by_cmake()
        environment = {**os.environ, "LD_LIBRARY_PATH": str(PREFIX / "lib")}
        done = subprocess.run([program, "nowhere.dat"], capture_output=True, text=True, check=False,
                              env=environment)
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (1, "", "cannot read 'nowhere.dat': No such file or directory\n"))


def main():
    global ARGUMENTS, SCRATCH, PREFIX
    parser = argparse.ArgumentParser()
    for name in ("build", "config", "generator", "compiler", "shared"):
        parser.add_argument("--" + name, required=True)
    parser.add_argument("--flags", default="")
    parser.add_argument("--kvatool", default="")
    ARGUMENTS = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        SCRATCH = pathlib.Path(scratch)
        install(SCRATCH / "installed")
        PREFIX = (SCRATCH / "installed").rename(SCRATCH / "moved")
        result = unittest.main(argv=sys.argv[:1], exit=False).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
