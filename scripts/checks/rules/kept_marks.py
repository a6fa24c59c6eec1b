"""Behaviour kept on purpose: each mark has its test, each such test has its mark."""

import re

from tree import Finding

PURPOSE = "every KEPT mark names the test that pins it, every test of a ...Kept suite is named by a mark"

TEST = re.compile(r"^[ \t]*(?:TYPED_)?TEST(?:_F|_P)?\s*\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
NAME = r"[A-Za-z_]\w*\.[A-Za-z_]\w*"
PINNED = re.compile(rf"Pinned by ((?:{NAME})(?:(?:, and |, | and )(?:{NAME}))*)")


def marks(lines):
    """(line, text) of every mark: from the word to the next mark or to the end of its comment, folded into one line."""
    start, words = 0, []
    for number, line in enumerate(lines + [""], 1):
        comment = re.search(r"//+[/!<]*(.*)$|^\s*/?\*+(.*?)(?:\*/)?$|/\*+(.*)$", line)
        text = next((group for group in comment.groups() if group is not None), "") if comment else ""
        begins = re.search(r"\bKEPT\b.*", text)
        if start and (begins or not comment or (line[:comment.start()].strip() and not begins)):
            yield start, " ".join(" ".join(words).split())
            start, words = 0, []
        if begins:
            start, words = number, [begins.group(0)]
        elif start:
            words.append(text)


def check(tree):
    tests = {}
    for path in tree.code("tests"):
        text = tree.text(path)
        for match in TEST.finditer(text):
            tests[f"{match.group(1)}.{match.group(2)}"] = (path, text.count("\n", 0, match.start()) + 1)
    pinned = set()
    for path in tree.code("include", "src", "tools"):
        for line, text in marks(tree.lines(path)):
            if not text.startswith("KEPT: "):
                yield Finding(path, line, "write the mark as 'KEPT: what happens (why). Pinned by Suite.Test.'")
            named = PINNED.search(text)
            if not named:
                yield Finding(path, line, "end the mark with 'Pinned by Suite.Test.'")
                continue
            for name in re.findall(NAME, named.group(1)):
                pinned.add(name)
                if name not in tests:
                    yield Finding(path, line, f"no test {name}: write it, or mend the name")
                elif not name.split(".")[0].endswith("Kept"):
                    yield Finding(path, line, f"{name}: its suite's name should end in Kept")
    for name, (path, line) in tests.items():
        if name.split(".")[0].endswith("Kept") and name not in pinned:
            yield Finding(path, line, f"no KEPT mark names {name}: mark the line of the source that it pins")
