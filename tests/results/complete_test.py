#!/usr/bin/env python3
"""Every number in the sheets of the end-to-end expectations is in the long table, and no other.

Usage: complete_test.py --tidy PROGRAM

The sheets are read here in a naive way of their own: cells that look like numbers, and where that is
not enough by their place in the line. Sheet by sheet, with docs/results-table.md as the key, the
values are compared with those of the table, each as often as it stands there. Every row must name
what it belongs to.
"""

import argparse
import collections
import csv
import fnmatch
import io
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
END_TO_END = ROOT / "tests" / "end_to_end"
sys.path.insert(0, str(END_TO_END))
import sections  # noqa: E402
import store  # noqa: E402

NUMBER = re.compile(r" *(-?\d+(\.\d+)?|-?nan|-?inf|n\.d\.|n\.s\.)$")
NEVER_NEGATIVE = {"Het exp RD", "Var", "VarRD", "Var repeatRD"}  # columns of SumGrp*.xls


# Cells


def value(cell):
    """A cell as the table has it."""
    text = cell.strip(" ")
    if text in ("n.d.", "n.s.") or re.match(r"-32767(\.0+)?$", text):
        return ""
    return {"nan": "NaN", "-nan": "NaN", "inf": "Inf", "-inf": "-Inf"}.get(text, text)


def not_negative(cell):
    return "" if re.match(r"-.*[1-9]", cell) else value(cell)


def split(line):
    """The cells of a line, without the empty one behind a last tab."""
    return (line[:-1] if line.endswith("\t") else line).split("\t")


def numbers_in(lines):
    return [value(cell) for line in lines for cell in line.split("\t") if NUMBER.match(cell)]


# Sheets, as lines, to their values


def table(lines):
    """A label in front of each row; heads begin and end with a tab."""
    rows = [line for line in lines if not (line.startswith("\t") and line.endswith("\t"))]
    return [value(cell) for line in rows for cell in split(line)[1:] if cell not in ("Gst", "Gst'")]


def numbers_of_alleles(lines):
    return [not_negative(cell) for cell in table(lines)]


def richness(lines):
    return ["" if cell == "500000.000000" else cell for cell in table(lines)]


def alleles(lines):
    pairs = [split(line)[1:] for line in lines[1:]]
    return [cell for cells in pairs for cell in cells[1::2] if cell]


def long_sheet(lines, never_negative):
    heads = lines[0].split("\t")
    names = sum(head.startswith(("Locus name", "Pop.name")) for head in heads)
    heads = heads[names:] + [""] * 1000
    return [
        not_negative(cell) if head in never_negative else value(cell)
        for line in lines[1:] for head, cell in zip(heads, split(line)[names:])
    ]


def below(rows):
    """The cells below the diagonal of rows of cells."""
    return [value(cell) for i, row in enumerate(rows) for cell in row[:i]]


def above(rows):
    return [value(cell) for i, row in enumerate(rows) for cell in row[i + 1:]]


def last_cells(line, count):
    """Labels may hold blanks, so the cells count from the right."""
    return [cell for cell in line.rstrip(";").split(" ") if cell][-count:] if count else []


def matrices(lines):
    found = []
    if lines[:1] == ["#NEXUS"]:
        count = int(re.search(r"ntax=(\d+)", "\n".join(lines))[1])
        first = lines.index("matrix") + 1
        return below([last_cells(line, count) for line in lines[first:first + count]])
    while lines:
        count = int(lines[0])
        found += below([last_cells(line, count) for line in lines[1:1 + count]])
        lines = lines[count + 2:]
    return found


def square(lines):
    return [line.split("\t")[1:] for line in lines if "\t" in line]


def limits(lines):
    return ["" if cell in ("100000.000000", "-100000.000000") else cell
            for cell in below(square(lines[1:]))]


def p_values(lines):
    middle = lines.index("P-values:")
    p = square(lines[middle:])
    return below(square(lines[:middle])) + below(p) + above(p)


def beta(lines):
    rows = square(lines[1:])
    return below(rows) + [value(row[i]) for i, row in enumerate(rows)]


def with_sentences(*patterns):
    """Cells that are numbers, and the numbers in sentences of some lines."""
    def read(lines):
        found = [match.groups() for line in lines for pattern in patterns
                 if (match := re.match(pattern, line))]
        return numbers_in(lines) + [number for groups in found for number in groups]
    return read


def report(lines):
    found = re.findall(r"[<>](\d+)", "\n".join(lines[3:5]))
    for line in lines[6:]:
        remarks = line.split("\t", 1)[1]
        found += ["1"] if remarks == "monomorphic" else re.findall(r"-?\d+", remarks)
    return found


READERS = [
    ("Allelecount/*.xls", alleles),
    ("Single_data/AllelicRichness.xls", richness),
    ("Single_data/*.xls", table),
    ("Errorreport.txt", report),
    ("Summary.xls", lambda lines: long_sheet(lines, {"Var repeatRD"})),
    ("Group_data/SumGrp*.xls", lambda lines: long_sheet(lines, NEVER_NEGATIVE)),
    ("Group_data/*.xls", table),
    ("Distance_data/*.txt", matrices),
    ("Distance_data/*.xls", numbers_in),
    ("F-Statistic/F*_WC84.txt", matrices),
    ("F-Statistic/FST_WC84-pValue.xls", p_values),
    ("F-Statistic/*_MEAN.xls", lambda lines: below(square(lines[1:]))),
    ("F-Statistic/FST_WC84_[UO]G.xls", limits),
    ("F-Statistic/Fst_per_locus.xls", numbers_in),
    ("F-Statistic/GlobFst.xls", with_sentences(r"Number of permutations is: (\d+)$")),
    ("F-Statistic/LocusFHeterogeneity.xls",
     with_sentences(r"Analysis takes (\d+) Loci out of (\d+) Loci", r"KVA \w+ (\d+) replikas")),
    ("F-Statistic/Beta_POP.xls", beta),
    ("Resampling_data/AlleleRangeMean.xls", table),
    ("Resampling_data/*Allele*.xls", numbers_of_alleles),
    ("Resampling_data/*.xls", table),
]
LEFT_OUT = ["KVA.log", "Formats&Data/*", "F-Statistic/Betaij_POP.txt"]


def reader_of(name):
    return next((read for pattern, read in READERS if fnmatch.fnmatchcase(name, pattern)), None)


# What a row must name: statistic, and the columns that are filled


PLACES = [
    (r"allele_(count|frequency)|.*_draw", {"population1", "locus", "replicate"}),
    (r"summary_allele_frequency|.*_range", {"population1", "locus", "replicate"}),
    (r"permutations_.*|heterogeneity_.*|report_limit_.*|.*_(ratios|means)", set()),
    (r"f.._global_heterogeneity", {"replicate"}),
    (r"(f..|gst|gst_prime)_global(_p)?", set()),
    (r".*_global_locus(_p)?|gst.*|report_.*|allelic_richness_reference", {"locus"}),
    (r"distance_.*_locus", {"population1", "population2", "locus", "replicate"}),
    (r"fst_pairwise_locus", {"population1", "population2", "locus"}),
    (r"distance_.*|.*_pairwise_(thinned|heterogeneity)",
     {"population1", "population2", "replicate"}),
    (r".*_pairwise.*", {"population1", "population2"}),
    (r"beta_population", {"population1"}),
    (r".*", {"population1", "locus"}),
]
EMPTY_NAMES = {"garbage", "name_cells", "path_names", "two_headers_crlf"}


def misplaced(rows):
    for row in rows:
        wanted = next(columns for name, columns in PLACES if re.fullmatch(name, row["statistic"]))
        found = {key for key, text in row.items() if text} - {"statistic", "value"}
        if found != wanted:
            yield "%s names %s instead of %s" % (row["statistic"], found, wanted)


# Trees


def sheets_of_statistics():
    """Statistic to the patterns of its sheets, from the page."""
    page = (ROOT / "docs" / "results-table.md").read_text(encoding="utf-8")
    return {
        statistic: tuple(re.findall(r"`([^`]+)`", sheets))
        for statistic, sheets in re.findall(r"^\| `(\w+)` \| (`[^|]+`) \|", page, re.MULTILINE)
    }


def rows_of(tidy, folder):
    """The rows of a folder's table, and what the program says of its sheets."""
    run = subprocess.run([str(tidy), str(folder)], capture_output=True, check=False)
    text = run.stdout.decode("latin-1")
    rows = csv.DictReader(io.StringIO(text, newline=""), delimiter="\t")
    return list(rows), run.stderr.decode("latin-1").splitlines()


def expected_values(tree, patterns):
    found = collections.Counter()
    for name, data in tree.items():
        if any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns):
            text = data.decode("latin-1")
            found.update(reader_of(name)(text.removesuffix("\n").split("\n") if text else []))
    return found


def faults_of_tree(case, tree, tidy, sheets):
    with tempfile.TemporaryDirectory() as folder:
        for name, data in tree.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
        rows, said = rows_of(tidy, folder)
    by_sheets = collections.defaultdict(collections.Counter)
    for row in rows:
        by_sheets[sheets[row["statistic"]]][row["value"]] += 1
    faults = said
    groups = set(sheets.values())
    for patterns in groups:  # sheets that hold several statistics, statistics of several sheets
        together = [other for other in groups if set(other) & set(patterns)]
        names = {name for other in together for name in other}
        found = sum((by_sheets[other] for other in together), collections.Counter())
        wanted = expected_values(tree, names)
        if found != wanted:
            faults.append("%s: in the table alone %s, in the sheet alone %s" % (
                " ".join(patterns), dict(found - wanted), dict(wanted - found)))
    if case not in EMPTY_NAMES:
        faults += sorted(set(misplaced(rows)))
    return len(rows), faults


def trees():
    """The result folders of all expectations: case, and path to bytes."""
    for case in store.cases_in(END_TO_END / "expected"):
        runs = collections.defaultdict(dict)
        for name, data in store.load(END_TO_END / "expected", case).items():
            if sections.is_result_file(name) and not name.startswith(sections.WORK + "/"):
                run = sections.RUN.match(name)
                runs[run[1] if run else "1"][sections.in_run(name)] = data
        for tree in runs.values():
            yield case, tree


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("--tidy", type=pathlib.Path, required=True)
    tidy = arguments.parse_args().tidy.resolve()
    sheets = sheets_of_statistics()
    total, wrong, seen = 0, 0, set()
    for case, tree in trees():
        known = {name: data for name, data in tree.items()
                 if not any(fnmatch.fnmatchcase(name, left) for left in LEFT_OUT)}
        if not known:
            continue
        seen.update(pattern for pattern, _ in READERS
                    for name in known if fnmatch.fnmatchcase(name, pattern))
        count, faults = faults_of_tree(case, known, tidy, sheets)
        total += count
        for fault in faults:
            print("%s: %s" % (case, fault))
        wrong += len(faults)
    for pattern, _ in READERS:
        if pattern not in seen:
            print("no expectation has a sheet %s" % pattern)
            wrong += 1
    print("%d rows compared" % total)
    return 1 if wrong or not total else 0


if __name__ == "__main__":
    sys.exit(main())
