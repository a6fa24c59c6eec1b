"""A source that no CMakeLists.txt names is never built, and a test that is not built never fails."""

import re

from tree import Finding

PURPOSE = "every source, test, benchmark and fuzz driver is listed in a CMakeLists.txt; _win and _posix come in pairs"


def words(tree, path):
    text = "\n".join(line.split("#")[0] for line in tree.lines(path)) if tree.exists(path) else ""
    return set(re.split(r'[\s()";]+', text))


def os_families(tree, path):
    text = "\n".join(line.split("#")[0] for line in tree.lines(path)) if tree.exists(path) else ""
    return {word for call in re.findall(r"qxv_os_sources\(([^)]*)\)", text) for word in call.split()}


def listed(tree, path):
    """Whether a CMakeLists.txt of its folder or of one above names it, by its path from there."""
    parts = path.split("/")
    for depth in range(len(parts) - 1, 0, -1):
        lists = "/".join(parts[:depth]) + "/CMakeLists.txt"
        name = "/".join(parts[depth:])
        family = re.fullmatch(r"(.*)_(?:win|posix)\.cpp", name)
        if name in words(tree, lists) or (family and family.group(1) in os_families(tree, lists)):
            return True
    return False


def check(tree):
    for path in tree.code():
        if not path.endswith(".cpp"):
            continue
        if not listed(tree, path):
            yield Finding(path, 1, "name it in the CMakeLists.txt of its folder")
        half = re.fullmatch(r"(.*)_(win|posix)\.cpp", path) if path.startswith("src/") else None
        if half:
            other = f"{half.group(1)}_{'posix' if half.group(2) == 'win' else 'win'}.cpp"
            if not tree.exists(other):
                yield Finding(path, 1, f"{other} is missing: each family is written for both systems")
