"""The store of expectations: a readable file for each case, exact to the byte.

expected/<case>.txt is a row of sections. A head line names one, its bytes follow:

    === console
    Read Loci/Pop Information!
    === Single_data/Hetexp.xls
            LocA    LocB
    === as in plain
    Group_data/Vargroup.xls
    Group_data/VarRDgroup.xls = Group_data/Vargroup.xls

The last ones are lists of sections that read as in another case (or in the same one), there under
their own name or the one behind " = ". So no section is written out twice: one with the bytes of
another of the same folder is listed, unless it has a single line or none. A name that begins with
"#2 " is of the second run of a case; in a list it reads as in the first, if no " = " follows.

Lines stand as they are, with their tabs. A byte that is neither tab nor printable ASCII, a
backslash, a blank at the end of a line and the first "=" of a line that begins with "===" read
\\xHH. A backslash at the end of a line says that there is no line end. A section without lines has
no bytes.
"""

import collections
import os
import re

from sections import in_run

HEAD = "=== "
AS_IN = "as in "
UNDER = " = "

Reference = collections.namedtuple("Reference", "case name")  # a section that reads the same


class Malformed(Exception):
    """A file of the store that cannot be read."""


# Bytes as lines


def _code(found):
    return "\\x%02x" % ord(found[0])


def _escaped(text):
    return re.sub(r"[^\t\x20-\x5b\x5d-\x7e]", _code, text)


def _unescaped(text):
    if re.search(r"\\(?!x[0-9a-f]{2})", text):
        raise Malformed("a backslash that is no \\xHH: %s" % text)
    return re.sub(r"\\x(..)", lambda found: chr(int(found[1], 16)), text)


def lines_of(data):
    """The lines that stand for some bytes."""
    *lines, rest = data.decode("latin-1").split("\n")
    lines = [re.sub(r" $|^=(?===)", _code, _escaped(line)) for line in lines]
    if rest:
        lines.append(re.sub(r"^=(?===)", _code, _escaped(rest)) + "\\")
    return lines


def bytes_of(lines):
    """The bytes that lines stand for."""
    text = "".join(_unescaped(line[:-1]) if line.endswith("\\") else _unescaped(line) + "\n"
                   for line in lines)
    return text.encode("latin-1")


# Names as lines; none looks like a list's head, a section's head or " = "


def _name_line(name):
    text = _escaped(os.fsencode(name).decode("latin-1"))
    return re.sub(r"^a(?=s in )|^=(?===)|(?<= )=| $", _code, text)


def _name(line):
    return os.fsdecode(_unescaped(line).encode("latin-1"))


def _folder(name):
    return in_run(name).rpartition("/")[0]


# A file: parse(layout(sections)) == sections


def layout(sections):
    """The text of a case; a section is a name with its bytes or with a Reference."""
    text = []
    lists = {}
    for name, value in sections.items():
        if isinstance(value, Reference):
            under = "" if value.name == in_run(name) else UNDER + _name_line(value.name)
            lists.setdefault(value.case, []).append(_name_line(name) + under)
        else:
            text += [HEAD + _name_line(name), *lines_of(value)]
    for case, names in lists.items():
        text += [HEAD + AS_IN + case, *names]
    return "".join(line + "\n" for line in text)


def parse(text):
    """The sections of a text; Malformed if it is none."""
    parts = []
    for line in text.split("\n")[:-1]:
        if line.startswith(HEAD):
            parts.append((line[len(HEAD):], []))
        elif parts and not line.startswith("==="):
            parts[-1][1].append(line)
        else:
            raise Malformed("no section begins here: %s" % line)
    if not text.endswith("\n"):
        raise Malformed("the last line has no end")
    sections = []
    for head, lines in parts:
        if head.startswith(AS_IN):
            for line in lines:
                name, under, other = line.partition(UNDER)
                name = _name(name)
                other = _name(other) if under else in_run(name)
                sections.append((name, Reference(head[len(AS_IN):], other)))
        else:
            sections.append((_name(head), bytes_of(lines)))
    if len(sections) != len(dict(sections)):
        raise Malformed("a name stands twice")
    return dict(sections)


# All files


def _file(folder, case):
    return folder / (case + ".txt")


def _read(folder, case):
    file = _file(folder, case)
    try:
        return parse(file.read_bytes().decode("ascii"))
    except OSError as fault:
        raise Malformed("%s: %s" % (file.name, fault.strerror)) from fault
    except (UnicodeDecodeError, Malformed) as fault:
        raise Malformed("%s: %s" % (file.name, fault)) from fault


def load(folder, case):
    """What is expected of a case: name of a section to its bytes."""
    texts = {}

    def sections_of(case):
        if case not in texts:
            texts[case] = _read(folder, case)
        return texts[case]

    def data_at(case, name, steps):
        found = sections_of(case).get(name)
        if isinstance(found, bytes):
            return found
        if found is None or found in steps:
            raise Malformed("%s.txt: no bytes behind %s" % (case, name))
        return data_at(*found, steps | {found})

    return {name: data_at(case, name, frozenset()) for name in sections_of(case)}


def cases_in(folder):
    return sorted(file.stem for file in folder.glob("*.txt"))


def layout_all(outcomes):
    """The texts of many cases (case to sections), each section written out in the first of them."""
    known = {}  # folder and bytes to the places of all sections with them
    texts = {}
    for case, sections in outcomes.items():
        laid = {}
        for name, data in sections.items():
            twins = known.setdefault((_folder(name), data), [])
            shared = twins and len(lines_of(data)) > 1
            laid[name] = _nearest(twins, case, name) if shared else data
            twins.append(Reference(case, name))
        texts[case] = layout(laid)
    return texts


def _nearest(twins, case, name):
    """The first of the same name in whichever run, else of the same case, else of all."""
    same_name = [twin for twin in twins if in_run(twin.name) == in_run(name)]
    same_case = [twin for twin in twins if twin.case == case]
    return (same_name or same_case or twins)[0]


def save(folder, texts):
    """Writes the texts that differ from those in the folder; gives the names of changed files.

    Files of other cases are removed.
    """
    folder.mkdir(exist_ok=True)
    changed = []
    for case in cases_in(folder):
        if case not in texts:
            _file(folder, case).unlink()
            changed.append(case + ".txt (removed)")
    for case, text in texts.items():
        file = _file(folder, case)
        data = text.encode("ascii")
        if not file.exists() or file.read_bytes() != data:
            file.write_bytes(data)
            changed.append(file.name)
    return changed
