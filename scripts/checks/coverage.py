"""Reads what llvm-cov exports on standard input.

    coverage.py --table ROOT                a Markdown table: lines, branches and functions a folder
    coverage.py --missed-functions ROOT     the functions that were never called, with their source
"""

import collections
import json
import os
import subprocess
import sys


def folder_of(path, root):
    parts = os.path.relpath(path, root).split("/")
    return "/".join(parts[:2])


def percent(covered, count):
    return f"{100 * covered / count:.1f} %" if count else "-"


def print_table(export, root):
    sums = collections.defaultdict(lambda: [0] * 6)
    for file in export["data"][0]["files"]:
        counts = [file["summary"][kind][what] for kind in ("lines", "branches", "functions") for what in ("covered", "count")]
        for name in (folder_of(file["filename"], root), "all"):
            sums[name] = [a + b for a, b in zip(sums[name], counts)]
    print("| folder | lines | of | branches | of | functions | of |")
    print("|---|---|---|---|---|---|---|")
    for name in sorted(sums, key=lambda name: (name == "all", name)):
        lines, all_lines, branches, all_branches, functions, all_functions = sums[name]
        label = name if name == "all" else f"`{name}`"
        print(f"| {label} | {percent(lines, all_lines)} | {all_lines} | {percent(branches, all_branches)} | {all_branches} "
              f"| {percent(functions, all_functions)} | {all_functions} |")


def print_missed_functions(export, root):
    called, seen = set(), {}
    for function in export["data"][0]["functions"]:
        place = (os.path.relpath(function["filenames"][0], root), function["regions"][0][0])  # one place, however many instances
        if function["count"]:
            called.add(place)
        seen.setdefault(place, function["name"].split(":")[-1])
    missed = sorted(place for place in seen if place not in called and place[0].startswith(("src/", "include/")))
    names = subprocess.run(["c++filt"], input="".join(seen[place] + "\n" for place in missed), text=True, capture_output=True,
                           check=True).stdout.splitlines()
    for (path, line), name in zip(missed, names):
        print(f"{path}:{line}: {name}")


def main(what, root):
    export = json.load(sys.stdin)
    (print_table if what == "--table" else print_missed_functions)(export, root)


if __name__ == "__main__":
    main(*sys.argv[1:])
