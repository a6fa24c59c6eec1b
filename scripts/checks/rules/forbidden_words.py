"""The project speaks for itself: it names no requirement papers, no numbered sections of them and no folder of one machine.

The words are put together from pieces, so that this file holds none of them.
"""

import re

from tree import CODE_FOLDERS, CODE_SUFFIXES, Finding

PURPOSE = "no mention of requirement papers, their section numbers, working files or one machine's folders"

WORDS = re.compile("|".join([
    r"\bPart" + r"s? [0-9]+(\.[0-9]+)?\b",
    "spec" + r"\.md",
    r"\bthe " + r"spec(ification)?\b",
    "left to the " + "implementer",
    "seed " + "document",
    r"\.\./" + "shared/",
    "/wo" + "rk/",
    "/tmp/" + "env",
    "before-" + "stop",
    "DEVEL" + r"OPERS\.md",
]), re.IGNORECASE)
HAZARD = re.compile(r"\b(?:A0|[0-9]{1,2}\.[0-9])-[0-9]{1,2}\b")  # in code only: elsewhere it is a package's version
NAMES = re.compile("spec" + r"\.md|part[_-]?[0-9]+[._-][0-9]", re.IGNORECASE)


def check(tree):
    for path in tree.paths:
        if path.startswith(".ci/"):
            continue
        if NAMES.search(path):
            yield Finding(path, 1, "name the file by what is in it")
        is_code = path.split("/")[0] in CODE_FOLDERS and path.endswith(CODE_SUFFIXES)
        for number, line in enumerate(tree.lines(path), 1):
            hit = WORDS.search(line) or (HAZARD.search(line) if is_code else None)
            if hit:
                yield Finding(path, number, f"'{hit.group(0)}': say what the thing is and why, in the project's own words")
