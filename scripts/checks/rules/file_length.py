"""A file that one reads in a sitting."""

from tree import Finding

PURPOSE = "sources have at most 400 lines"

LIMIT = 400
SUFFIXES = (".h", ".cpp", ".inc", ".py", ".sh", ".cmake", "CMakeLists.txt")


def check(tree):
    for path in tree.paths:
        if path.endswith(SUFFIXES):
            count = tree.text(path).count("\n")
            if count > LIMIT:
                yield Finding(path, LIMIT + 1, f"{count} lines: split it by what it does, or give the reason in scripts/checks/allowed.txt")
