#!/usr/bin/env python3
"""Runs the parity program, keeps its lines for the comparison of the systems, and sees to it that no exported name is left out.

    parity_test.py LINES PROGRAM [EMULATOR]     LINES is written: one line a family, its sets and its digest
"""

import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
ABI = os.path.join(os.path.dirname(HERE), "abi")
sys.path.insert(0, ABI)

from check_exports import read_table  # noqa: E402  (the folder must be on the path first)
from exported_names import demangle, output, spell  # noqa: E402

LEAST_SETS = 20000


def left_out(program):
    """Exported names that the program does not take from the library, without those that exceptions.txt gives a reason for."""
    taken = {line.split()[0].split("@")[0] for line in output("nm", "-D", "--undefined-only", "--format=posix", program).splitlines()}
    called = set(demangle(sorted(taken)))
    copied = {line.split()[0].split("@")[0] for line in output("nm", "-D", "--defined-only", "--format=posix", program).splitlines()}
    called |= set(demangle(sorted(copied)))  # data of the library that the loader moves into the program
    names = [name for name in read_table(os.path.join(ABI, "exports.txt")) if not name.startswith("vtable for ")]
    exceptions = dict(line.split(" | ", 1) for line in read_table(os.path.join(HERE, "exceptions.txt")))
    unnamed = {name for name, reason in exceptions.items() if reason.startswith("not named: ")}
    problems = [f"exceptions.txt: {name}: not exported" for name in exceptions if name not in names]
    for name in names:
        if spell(name, "linux") in called:
            if name in unnamed:
                problems.append(f"exceptions.txt: {name}: is called; take the line out")
        elif name not in unnamed:
            problems.append(f"{name}: exported, but not called: call it in its family, or give a reason in exceptions.txt")
    return problems


def main(lines_path, program, *emulator):
    with tempfile.TemporaryDirectory() as folder:
        drive_form = "Z:" + folder.replace("/", "\\") + "\\"
        environment = {**os.environ, "QXV_REGISTRY": os.path.join(folder, "registry.sqlite"), "QXV_ACP": "1252"}
        done = subprocess.run([*emulator, program, drive_form], env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              timeout=280, check=False)
    text = done.stdout.decode().replace("\r\n", "\n")
    print(text, end="")
    problems = [] if done.returncode == 0 else [f"the program gave {done.returncode}"]
    sets = sum(int(count) for count in re.findall(r"^\S+ +(\d+) sets  [0-9a-f]{16}$", text, re.MULTILINE))
    if sets < LEAST_SETS:
        problems.append(f"{sets} sets of arguments; {LEAST_SETS} are wanted")
    if not emulator:
        problems += left_out(program)
    for problem in problems:
        print(problem)
    with open(lines_path, "w", encoding="ascii") as file:
        file.write(text if not problems else "the run failed\n")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
