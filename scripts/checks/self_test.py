"""Shows each rule small trees, good and bad, and compares what it finds with what it should find.

A case is (what it shows, {path: text}, the findings as 'path:line', in any order). A rule without a good and a bad case fails too.
"""

import os
import stat
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)

from run import all_rules  # noqa: E402
from self_test_cases import CASES  # noqa: E402
from tree import Tree  # noqa: E402


def write(root, files):
    for path, text in files.items():
        full = os.path.join(root, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "w", encoding="utf-8") as file:
            file.write(text)
        if text.startswith("#!"):
            os.chmod(full, os.stat(full).st_mode | stat.S_IXUSR)


def main():
    rules = all_rules()
    wrong = []
    for name, rule in rules.items():
        cases = CASES.get(name, [])
        if not any(expected for _, _, expected in cases) or all(expected for _, _, expected in cases):
            wrong.append(f"{name}: needs a good and a bad case in self_test_cases.py")
        for title, files, expected in cases:
            with tempfile.TemporaryDirectory() as root:
                write(root, files)
                found = {f"{finding.path}:{finding.line}" for finding in rule.check(Tree(root))}
            if found != set(expected):
                wrong.append(f"{name}: {title}: expected {sorted(expected)}, found {sorted(found)}")
    wrong += [f"{name}: there is no such rule" for name in CASES if name not in rules]
    for line in wrong:
        print(f"self-test: {line}")
    if not wrong:
        print(f"self-test          ok  ({sum(len(cases) for cases in CASES.values())} trees for {len(rules)} rules)")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
