"""What the tests of kvatool report share: the page of the example, and a page taken apart.

tables: id to Table, with heads (texts), derived (columns that the report works out) and rows, each a
list of the whole texts of its cells.
"""

import html.parser
import pathlib
import subprocess

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent.parent / "examples"
PERMUTATIONS, REPLICATES = 999, 100  # of the example


def call(program, *words, folder):
    return subprocess.run([program, *map(str, words)], cwd=folder, stdin=subprocess.DEVNULL,
                          capture_output=True, check=False)


def run(tool, folder, name, data, *words):
    """The result folder `name` of data."""
    told = call(tool, "run", data, "-o", name, "--seed", 1, "-q", *words, folder=folder)
    assert told.returncode == 0, told.stderr
    return folder / name


def report(tool, folder, *words):
    """The page that a report prints."""
    told = call(tool, "report", *words, folder=folder)
    assert (told.returncode, told.stderr) == (0, b""), told.stderr
    return told.stdout.decode("utf-8")


def report_of_example(tool, folder):
    """The page of examples/testdata.dat with everything; its result folders are all and boot."""
    data = EXAMPLES / "testdata.dat"
    run(tool, folder, "all", data, "--fst", "pairs,global", "--permutations", PERMUTATIONS,
        "--distances", "population:DAN,CAS", "--distances", "individual:DAN", "--het-range", 50)
    run(tool, folder, "boot", data, "--distances", "population:DAN", "--bootstrap", REPLICATES)
    return report(tool, folder, "all", "--bootstrap", "boot", "--measure", "dan")


class Table:
    def __init__(self):
        self.heads, self.derived, self.rows, self.box = [], [], [], False

    def column(self, head):
        """The cells of a column, from top to bottom."""
        return [row[self.heads.index(head)] for row in self.rows]

    def sheet_columns(self):
        """The heads of the columns that a sheet prints."""
        return [head for head, derived in zip(self.heads, self.derived) if not derived]


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.tables, self.notes, self.tags, self.ids = {}, [], set(), []
        self.texts = {}  # id of a p or pre to its text
        self.sections, self.attributes = {}, []
        self._table = self._cell = self._note = self._exact = self._text = None
        self._derived, self._section = False, None
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        self.tags.add(tag)
        self.attributes += attrs.items()
        if "id" in attrs:
            self.ids.append(attrs["id"])
        if tag == "section":
            self._section = attrs["id"]
            self.sections[self._section] = ""
        elif tag == "table":
            self._table = self.tables[attrs["id"]] = Table()
        elif tag == "tr" and self._table:
            self._table.rows.append([])
        elif tag in ("td", "th") and self._table:
            self._cell, self._exact = "", attrs.get("data-v")
            self._derived = "derived" in attrs.get("class", "").split()
        elif tag == "input":
            self._table.box = True
        elif tag in ("p", "pre") and ("id" in attrs or attrs.get("class") == "note"):
            self._text, self._note = attrs.get("id"), ""

    def handle_endtag(self, tag):
        if tag in ("td", "th") and self._table:
            table, text = self._table, self._cell if self._exact is None else self._exact
            table.rows[-1].append(text)
            if len(table.rows) == 1:
                table.heads.append(text.removesuffix(" †"))
                table.derived.append(self._derived)
            self._cell = None
        elif tag == "table":
            self._table.rows.pop(0)
            self._table = None
        elif tag in ("p", "pre") and self._note is not None:
            if self._text:
                self.texts[self._text] = self._note
            else:
                self.notes.append(self._note)
            self._note = None
        elif tag == "section":
            self._section = None

    def handle_data(self, data):
        if self._cell is not None:
            self._cell += data
        if self._note is not None:
            self._note += data
        if self._section:
            self.sections[self._section] += data
