"""Every public header compiles alone, as an application written in C++17 sees it."""

import concurrent.futures
import glob
import os
import re
import shutil
import subprocess
import sys

from tree import Finding

PURPOSE = "every public header compiles alone as C++17, with both compilers for both systems"

WARNINGS = ["-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-Wconversion", "-Werror"]


def clang_for_windows():
    """clang with the headers of mingw's GCC, which it does not find by itself; None when a part is not installed."""
    gcc = sorted(glob.glob("/usr/lib/gcc/x86_64-w64-mingw32/*-posix"))
    clang = sorted(glob.glob("/usr/lib/llvm-14/lib/clang/*/include"))
    if not gcc or not clang or not shutil.which("clang++-14"):
        return None
    folders = [gcc[-1] + "/include/c++", gcc[-1] + "/include/c++/x86_64-w64-mingw32", clang[-1], "/usr/x86_64-w64-mingw32/include"]
    return ["clang++-14", "--target=x86_64-w64-windows-gnu", "-nostdinc", "-nostdinc++"] + \
        [word for folder in folders for word in ("-isystem", folder)]


def compilers():
    """(what it is, command or None when it is not installed)"""
    yield "g++ for Linux", ["g++"] if shutil.which("g++") else None
    yield "clang++ for Linux", ["clang++-14"] if shutil.which("clang++-14") else None
    mingw = "x86_64-w64-mingw32-g++-posix"
    yield "g++ for Windows", [mingw] if shutil.which(mingw) else None
    yield "clang++ for Windows", clang_for_windows()


def compile_alone(tree, header, label, command):
    """Nothing, or the first error, at its place when that is in one of our headers."""
    text = f'#include "{header[len("include/"):]}"\n'
    done = subprocess.run(command + WARNINGS + ["-I", "include", "-x", "c++", "-"], input=text, text=True, cwd=tree.root,
                          capture_output=True)
    if done.returncode == 0:
        return None
    error = re.search(r"^(.*?):(\d+):(?:\d+:)? (?:fatal )?error: (.*)$", done.stderr, re.MULTILINE)
    if error and tree.exists(error.group(1)):
        return Finding(error.group(1), int(error.group(2)), f"{header} does not compile alone ({label}): {error.group(3)}")
    return Finding(header, 1, f"does not compile alone ({label}): {error.group(0) if error else done.stderr.strip()[:300]}")


def check(tree):
    jobs = []
    for label, command in compilers():
        if command is None:
            print(f"headers-alone: {label} is not installed, that combination was not looked at", file=sys.stderr)
        else:
            jobs += [(header, label, command) for header in tree.public_headers()]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = pool.map(lambda job: compile_alone(tree, *job), jobs)
    yield from sorted({finding for finding in results if finding})
