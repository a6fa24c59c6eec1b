"""Runs the rules over the tree and prints what they find. Usage: run.py [--list | rule ...]"""

import importlib
import os
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)

from tree import Tree  # noqa: E402  (the folder must be on the path first)

ALLOWED = "scripts/checks/allowed.txt"


def all_rules():
    """Name -> module, by the files in rules/. A module has PURPOSE and check(tree), which yields findings."""
    names = sorted(name[:-3] for name in os.listdir(os.path.join(HERE, "rules")) if name.endswith(".py"))
    return {name.replace("_", "-"): importlib.import_module("rules." + name) for name in names}


def read_allowed(tree):
    """{(rule, path): line number} of the exceptions, each 'rule path reason'; and the lines that give no reason."""
    allowed, broken = {}, []
    if tree.exists(ALLOWED):
        for number, line in enumerate(tree.lines(ALLOWED), 1):
            if line.strip() and not line.startswith("#"):
                words = line.split(None, 2)
                if len(words) == 3:
                    allowed[words[0], words[1]] = number
                else:
                    broken.append(f"{ALLOWED}:{number}: write 'rule path reason'")
    return allowed, broken


def main(arguments):
    rules = all_rules()
    if arguments == ["--list"]:
        for name, rule in rules.items():
            print(f"{name:18} {rule.PURPOSE}")
        return 0
    unknown = [name for name in arguments if name not in rules]
    if unknown:
        print(f"no such rule: {' '.join(unknown)}; scripts/check --list names them", file=sys.stderr)
        return 2
    tree = Tree(os.path.join(HERE, "..", ".."))
    chosen = arguments or list(rules)
    allowed, problems = read_allowed(tree)
    used = set()
    for name in chosen:
        start = time.monotonic()
        found = []
        for finding in rules[name].check(tree):
            if (name, finding.path) in allowed:
                used.add((name, finding.path))
            else:
                found.append(f"{finding} [{name}]")
        print(f"{name:18} {'ok' if not found else f'{len(found)} to mend'}  ({time.monotonic() - start:.1f} s)", flush=True)
        problems += found
    problems += [f"{ALLOWED}:{line}: take this line out, nothing needs it any more"
                 for key, line in allowed.items() if key[0] in chosen and key not in used]
    problems += [f"{ALLOWED}:{line}: there is no rule '{key[0]}'" for key, line in allowed.items() if key[0] not in rules]
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
