#!/usr/bin/env python3
"""Runs of the program on a machine that does not behave: limits, links, kills, company.

Usage: hostile_test.py PROGRAM DATAFILE [LIBRARY]

LIBRARY is that of refuse.cpp; without it, or where it cannot be used, the tests that need it are
skipped.
"""

import os
import pathlib
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, DATA = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
NO_FILTERS = 77  # status of a run under the library where the system lets no filter of calls in


def usable(library):
    """Whether runs can be made under the library on this machine."""
    run = subprocess.run(["true"], env=dict(os.environ, LD_PRELOAD=str(library)), check=False)
    return run.returncode != NO_FILTERS


LIBRARY = pathlib.Path(sys.argv[3]).resolve() if len(sys.argv) > 3 else None
LIBRARY = LIBRARY if LIBRARY and usable(LIBRARY) else None
ARGUMENTS = [PROGRAM, "-i", "d.txt", "-fst", "g", "p", "n=2", "-dist", "p", "POSA", "n=2",
             "-format", "im", "msvar"]
FIRST = "d.txt_KVAresult00"
needs_library = unittest.skipUnless(LIBRARY, "needs the preloaded library")


def tree(folder):
    """Content of each file, and where each link leads, by the path inside the folder."""
    found = {}
    for path in sorted(pathlib.Path(folder).rglob("*")):
        name = str(path.relative_to(folder))
        if path.is_symlink():
            found[name] = ("link", os.readlink(path))
        elif path.is_file():
            found[name] = path.read_bytes()
    return found


def results(folder, number=0):
    """The files of a numbered result folder."""
    return tree(pathlib.Path(folder, "d.txt_KVAresult%02d" % number))


class Hostile(unittest.TestCase):
    def setUp(self):
        self.place = tempfile.TemporaryDirectory()
        self.addCleanup(self.place.cleanup)
        self.home = pathlib.Path(self.place.name, "home")
        self.home.mkdir()
        self.data = self.home / "d.txt"
        self.data.write_bytes(DATA.read_bytes())
        self.outside = pathlib.Path(self.place.name, "outside")
        self.outside.mkdir()
        (self.outside / "precious").write_text("precious\n")

    def start(self, order=None, limits=(), **streams):
        """A run under an order to the library and limits of the system."""
        environment = dict(os.environ, LC_ALL="C")
        if LIBRARY:
            environment.update(LD_PRELOAD=str(LIBRARY), KVA_REFUSE=order or "none 0 0")

        def prepare():
            for limit, value in limits:
                resource.setrlimit(limit, (value, value))

        streams.setdefault("stdout", subprocess.PIPE)
        return subprocess.Popen(ARGUMENTS, cwd=self.home, env=environment, preexec_fn=prepare,
                                stdin=subprocess.DEVNULL, stderr=subprocess.STDOUT, **streams)

    def run_once(self, order=None, limits=()):
        """Status and console of a run, which has to end by itself."""
        with self.start(order, limits) as run:
            console, _ = run.communicate(timeout=60)
        return run.returncode, console.decode("latin-1")

    def whole(self):
        """The result files of an undisturbed run, which are then taken away."""
        status, _ = self.run_once()
        self.assertEqual(status, 1)
        files = results(self.home)
        self.clear()
        return files

    def clear(self):
        for folder in self.home.glob("d.txt_KVAresult*"):
            subprocess.run(["rm", "-rf", str(folder)], check=True)

    def assert_outside_untouched(self):
        self.assertEqual(tree(self.outside), {"precious": b"precious\n"})
        self.assertEqual(self.data.read_bytes(), DATA.read_bytes())

    # --- Limits ---------------------------------------------------------------------------

    def test_file_size_limit(self):
        whole = self.whole()
        for size in (0, 1, 100, 1000, 2000, 5000):
            with self.subTest(size=size):
                status, console = self.run_once(limits=[(resource.RLIMIT_FSIZE, size)])
                self.assertEqual(status, 1)
                self.assertIn("Cannot write result file", console)
                self.assertIn("File too large", console)
                for name, content in results(self.home).items():
                    self.assertLessEqual(len(content), size)
                    self.assertTrue(name == "KVA.log" or whole[name].startswith(content), name)
                self.clear()

    def test_few_descriptors(self):
        whole = self.whole()
        for number in range(3, 30):
            with self.subTest(number=number):
                status, console = self.run_once(limits=[(resource.RLIMIT_NOFILE, number)])
                if status == 127 or "error while loading" in console:
                    continue  # the loader itself had too few
                self.assertIn(status, (1, 255))
                if results(self.home) != whole:
                    told = console + results(self.home).get("KVA.log", b"").decode("latin-1")
                    self.assertTrue("Too many open files" in told or "Wrong Filename" in told, told)
                self.clear()

    @needs_library
    def test_disk_that_fills_up(self):
        whole = self.whole()
        for written in range(1, 60, 3):
            with self.subTest(written=written):
                status, console = self.run_once("write %d 28 on" % written)
                self.assertEqual(status, 1)
                if results(self.home) != whole:
                    self.assertIn("No space left on device", console)
                self.clear()

    # --- The console -------------------------------------------------------------------------

    def test_reader_of_the_console_goes_away(self):
        whole = self.whole()
        with self.start() as run:
            run.stdout.close()
            self.assertEqual(run.wait(timeout=60), 1)
        if LIBRARY:  # with a clock that stands still, the same bytes
            self.assertEqual(results(self.home), whole)
        self.assertEqual(results(self.home).keys(), whole.keys())

    def test_console_that_is_full(self):
        whole = self.whole()
        with open("/dev/full", "wb") as full, self.start(stdout=full) as run:
            self.assertEqual(run.wait(timeout=60), 1)
        self.assertEqual(results(self.home).keys(), whole.keys())

    # --- The data file -----------------------------------------------------------------------

    @needs_library
    def test_data_file_changes_between_the_passes(self):
        for change in ("cut", "grow", "drop"):
            with self.subTest(change=change):
                self.data.write_bytes(DATA.read_bytes())
                status, console = self.run_once("mkdir 1 0 %s %s" % (change, self.data))
                self.assertEqual(status, 1)
                if change == "drop":  # still open: read to its end
                    self.assertFalse(self.data.exists())
                    self.assertNotIn("Cannot read", console)
                else:
                    self.assertIn("Cannot read data file d.txt: ", console)
                self.clear()

    # --- Links -------------------------------------------------------------------------------

    @needs_library
    def test_links_in_place_of_folders(self):
        for number in range(1, 12):
            with self.subTest(number=number):
                status, console = self.run_once("mkdir %d 0 link %s" % (number, self.outside))
                self.assertIn(status, (1, 255), console)
                self.assert_outside_untouched()
                self.clear()
                for link in self.home.glob("d.txt_KVAresult*"):
                    link.unlink()

    @needs_library
    def test_links_in_place_of_files(self):
        for number in range(3, 70):
            with self.subTest(number=number):
                status, console = self.run_once(
                    "open %d 0 link %s" % (number, self.outside / "precious"))
                self.assertIn(status, (1, 255), console)
                self.assert_outside_untouched()
                self.clear()

    def test_link_in_place_of_the_next_result_folder(self):
        (self.home / FIRST).symlink_to(self.outside)
        status, _ = self.run_once()
        self.assertEqual(status, 1)
        self.assert_outside_untouched()
        self.assertIn("KVA.log", results(self.home, 1))

    # --- Matrices that do not fit --------------------------------------------------------------

    # 12000 individuals: the cells of a matrix take 12000 x 12000 / 2 x 4 bytes, 288 MB.
    MANY = "2\t\t\t2\t\n\t\t\t0\t\n\t\t\tL\tL2\n" + "A\td\t1\t100\t102\n" * 12000

    def run_many(self, options, limits=()):
        self.data.write_text(self.MANY)
        run = subprocess.run(
            [PROGRAM, "-i", "d.txt", *options], cwd=self.home, check=False, timeout=250,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            preexec_fn=lambda: [resource.setrlimit(limit, (size, size)) for limit, size in limits])
        files = results(self.home)
        self.clear()
        return run.returncode, run.stdout.decode("latin-1"), files

    def test_matrix_beyond_the_memory_is_refused_beforehand(self):
        _, _, others = self.run_many([])
        status, console, files = self.run_many(["-dist", "individual", "POSA"],
                                               [(resource.RLIMIT_AS, 250 << 20)])
        self.assertEqual(status, 1)
        line = "Distances of individuals are not computed: they take "
        told = [row for row in console.split("\n") if row.startswith(line)]
        self.assertEqual(len(told), 1, console)
        self.assertIn(told[0].encode() + b"\n", files.pop("KVA.log"))
        others.pop("KVA.log")
        self.assertEqual(files.keys(), others.keys())  # no folder of distances, all else

    def test_matrices_beyond_the_disk_are_refused_beforehand(self):
        # 12000 x 12000 x 9 bytes, and a hundred million replicates
        status, console, files = self.run_many(["-dist", "individual", "POSA", "n=100000000"])
        self.assertEqual(status, 1)
        self.assertIn("and 129600000000 MB on the disk", console)
        self.assertIn("Summary.xls", files)
        self.assertFalse([name for name in files if name.startswith("Distance_data")])

    # --- Kills and company -------------------------------------------------------------------

    def test_killed_at_random_times(self):
        whole = self.whole()
        begun = time.monotonic()
        self.whole()
        lasts = time.monotonic() - begun
        moments = random.Random(20261122)
        for number in range(200):
            with self.start(stdout=subprocess.DEVNULL) as run:
                time.sleep(moments.uniform(0, lasts))
                run.send_signal(signal.SIGKILL)
            if number % 20 == 19:
                taken = len(list(self.home.glob("d.txt_KVAresult*")))
                status, _ = self.run_once()
                self.assertEqual(status, 1)
                files = results(self.home, taken)
                self.assertEqual(files.keys(), whole.keys())
                self.assertTrue(not LIBRARY or files == whole)
        self.assert_outside_untouched()

    def test_two_processes_on_one_file(self):
        whole = self.whole()
        for _ in range(100):
            runs = [self.start(stdout=subprocess.DEVNULL) for _ in range(2)]
            self.assertEqual([run.wait(timeout=60) for run in runs], [1, 1])
            for number in range(2):
                files = results(self.home, number)
                self.assertEqual(files.keys(), whole.keys())
                self.assertTrue(not LIBRARY or files == whole)
            self.clear()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
