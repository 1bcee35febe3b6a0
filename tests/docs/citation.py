"""The references of CITATION.cff, written as the documents and the report write them."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]


def references():
    """Of each reference its authors, the first one alone where there are more, and all behind them."""
    text = (ROOT / "CITATION.cff").read_text().split("\nreferences:\n")[1]
    return [_written(entry) for entry in re.split(r"^  - type: ", text, flags=re.M)[1:]]


def _written(entry):
    names = re.findall(r'^ +- family-names: "(.*)"\n +given-names: "(.*)"$', entry, flags=re.M)
    field = dict(re.findall(r'^ +([\w-]+): "?(.*?)"?$', entry, flags=re.M))
    if "journal" in field:
        pages = field["start"] + ("-" + field["end"] if "end" in field else "")
        where = "%s %s:%s" % (field["journal"], field["volume"], pages)
    else:
        where = field.get("name", field.get("notes"))  # of the publisher; of what it is in
    authors = [" ".join(name) for name in names]
    return ", ".join(authors), authors[0], "(%s). %s. %s." % (field["year"], field["title"], where)


def without_letter(text):
    """A reference without the letter of its year: "(1995)" for "(1995a)"."""
    return re.sub(r"\((\d{4})[ab]\)", r"(\1)", text)
