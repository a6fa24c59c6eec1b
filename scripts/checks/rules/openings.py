"""How a source begins: its name and purpose, the include guard, its own header."""

import os
import re

from tree import Finding, includes, without_comments

PURPOSE = "a source opens with '// name - purpose', #pragma once, and its own header as the first include"


def own_headers(tree, path):
    """The headers that a source implements, if any."""
    folder, name = os.path.split(path)
    stem = re.sub(r"(_win|_posix)?\.cpp$", "", name)
    stems = {stem, name[:-len(".cpp")]}
    candidates = [f"{folder}/{each}.h" for each in sorted(stems)]
    if path.startswith("src/"):
        candidates += [f"include/qxv/{stem}.h"]
    return [candidate for candidate in candidates if tree.exists(candidate)]


def check(tree):
    for path in tree.code():
        name = os.path.basename(path)
        if not re.match(rf"// {re.escape(name)} - \S", tree.lines(path)[0]):
            yield Finding(path, 1, f"begin with '// {name} - what it is'")
        if path.endswith(".h"):
            for number, line in enumerate(without_comments(tree.text(path)).split("\n"), 1):
                if line.strip():
                    if line.strip() != "#pragma once":
                        yield Finding(path, number, "put #pragma once before all else")
                    break
            else:
                yield Finding(path, 1, "#pragma once is missing")
        if path.endswith(".cpp"):
            own = own_headers(tree, path)
            first = next(includes(tree.text(path)), None)
            if own and not (first and any(f"/{header}".endswith("/" + first[1]) for header in own)):
                yield Finding(path, first[0] if first else 1, f"include {' or '.join(own)} first, so that it is seen to stand alone")
