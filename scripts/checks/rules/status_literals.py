"""Status codes stand once."""

import re

from tree import Finding, without_comments

PURPOSE = "status codes are written out in src/foundation/status.h only (tests write the literal)"

LITERAL = re.compile(r"\b0[xX]8960[0-9A-Fa-f]{4}")
ALLOWED = re.compile(r"src/foundation/status\.h|include/qxv/(image|registry|dictionary)\.h|tests/.*")


def check(tree):
    for path in tree.code():
        if ALLOWED.fullmatch(path):
            continue
        code = without_comments(tree.text(path), strings_too=True)
        for number, line in enumerate(code.split("\n"), 1):
            literal = LITERAL.search(line)
            if literal:
                yield Finding(path, number, f"{literal.group(0)}: name it in src/foundation/status.h and use the name")
