"""The sections of an outcome: their names, their order, and those of a tree of files.

| Section | Bytes |
|---|---|
| `status` | the exit status; negative: the number of the signal that ended the program |
| `console` | all that went to standard output |
| `standard error` | all that went there; it is not there where that is nothing, as it should be |
| `work/`, `./`, `Single_data/` | the names in a folder, one a line, folders with a "/" |
| `KVA.log`, `Single_data/Hetexp.xls` | a result file |

An empty folder has no section. A name is a path in the result folder. Where several result folders
are not empty, "#2 " stands in front of the names in the second one. Other folders begin with
"work/", the working folder.
"""

import os
import pathlib
import re

WORK = "work"
HEAD = ("status", "console", "standard error")
RESULT_FOLDER = re.compile(r".*_KVAresult\d\d+$")
RUN = re.compile(r"#(\d+) ")


# Names


def is_result_file(name):
    return name not in HEAD and not name.endswith("/")


def in_run(name):
    """The name without the number of the run."""
    return RUN.sub("", name, count=1) if RUN.match(name) else name


def order(name):
    """A key to sort by: the head, the working folder, then run by run the folders and the files."""
    if name in HEAD:
        return (HEAD.index(name),)
    run = RUN.match(name)
    number = int(run[1]) if run else 0 if name.startswith(WORK + "/") else 1
    return (len(HEAD), number, is_result_file(name), name)


# A tree of files


def of_tree(tree):
    """The sections of places (to a file's bytes, or None for a folder)."""
    listings = {}
    for place, data in tree.items():
        folder, _, name = place.rpartition("/")
        listings.setdefault(folder, []).append(name + ("/" if data is None else ""))
    listings.pop("", None)  # the working folder alone; all else there is a fault

    filled = [place for place in sorted(listings) if result_folder(place) == place]
    result = {
        name_of(place, filled) + "/": b"".join(os.fsencode(n) + b"\n" for n in sorted(names))
        for place, names in listings.items()
    }
    for place, data in tree.items():
        if data is not None:
            result[name_of(place, filled)] = data
    return result


def result_folder(place):
    """The result folder that a place is or lies in; None if there is none."""
    parts = pathlib.PurePosixPath(place).parts
    for i, part in enumerate(parts, 1):
        if RESULT_FOLDER.match(part):
            return "/".join(parts[:i])
    return None


def name_of(place, result_folders):
    own = result_folder(place)
    if own is None:
        return place
    number = result_folders.index(own) + 1
    return ("" if number == 1 else "#%d " % number) + (place[len(own) + 1:] or ".")
