#!/usr/bin/env python3
"""gdb_printers_test.py SUBJECT PRINTERS - drives gdb over the subject program and compares what the printers show."""

import subprocess
import sys

EXPECTED = {
    "text": '"say \\"h\u00e9\\"" (visible length 8, length word 8, capacity word 128, slot 128)',
    "reused": '"short" (visible length 5, length word 5, capacity word 1024, slot 128)',
    "cut": '"abc" (visible length 3, length word 6, capacity word 128, slot 128)',
    "numbers": "CQXArray of size 1, allocated 10, grow-by 10 = {7}",
    "id": "0123ABCD-4567-89EF-5158-0102030405FE",
    "texts": "CQXArray of size 2, allocated 5, grow-by 0 = "
    '{"one" (visible length 3, length word 3, capacity word 128, slot 128), '
    '"two" (visible length 3, length word 3, capacity word 128, slot 128)}',
}


def main():
    subject, printers = sys.argv[1:]
    command = ["gdb", "-nx", "-batch", "-ex", "set style enabled off", "-ex", "set print address off", "-ex", "set width 0"]
    command += ["-ex", "source " + printers, "-ex", "break Stop", "-ex", "run"]
    for name in EXPECTED:
        command += ["-ex", 'printf "@@%s="' % name, "-ex", "output " + name, "-ex", 'printf "\\n"']
    run = subprocess.run(command + [subject], capture_output=True, text=True, encoding="utf-8", timeout=120)
    shown = dict(line[2:].split("=", 1) for line in run.stdout.splitlines() if line.startswith("@@"))
    failures = 0
    for name, expected in EXPECTED.items():
        got = shown.get(name, "nothing shown")
        if got != expected:
            print("%s: shown %r, expected %r" % (name, got, expected))
            failures += 1
    if failures:
        print(run.stdout, run.stderr, sep="\n")
    print("%d values compared, %d differ" % (len(EXPECTED), failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
