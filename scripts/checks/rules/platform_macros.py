"""Asking the preprocessor for the system is the business of a few files."""

import re

from tree import Finding, without_comments

PURPOSE = "the system is asked for by #if only in types.h, export.h, host.h, src/os and the tests beside them"

MACRO = re.compile(r"\b(_WIN32|_WIN64|WIN32|__linux__|__linux|__unix__|__MINGW32__|__MINGW64__)\b")
ALLOWED = re.compile(r"include/qxv/(types|export|host)\.h|src/os/.*|tests/(support|os|abi)/.*")


def check(tree):
    for path in tree.code():
        if ALLOWED.fullmatch(path):
            continue
        for number, line in enumerate(without_comments(tree.text(path)).split("\n"), 1):
            macro = MACRO.search(line) if re.match(r"\s*#", line) else None
            if macro:
                yield Finding(path, number, f"{macro.group(1)}: let src/os answer, in one file a system")
