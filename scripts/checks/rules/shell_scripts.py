"""Shell scripts are read by the shell, and by shellcheck where it is installed, before anybody runs them."""

import re
import shutil
import subprocess
import sys

from tree import Finding

SOURCED = "SC1090,SC1091,SC2154"  # it cannot follow a file whose name is computed, nor know what that file sets
PIECE = ["-s", "bash", "-e", "SC2034,SC2148"]  # a file without #! is sourced by another one, which uses what is set here

PURPOSE = "shell scripts pass bash -n and shellcheck"


def is_shell(tree, path):
    first = tree.text(path)[:80].split("\n")[0]
    return path.endswith(".sh") or re.match(r"#!.*\b(ba|da)?sh\b", first) is not None


def check(tree):
    scripts = [path for path in tree.paths if is_shell(tree, path)]
    if not scripts:
        return
    unreadable = set()
    for path in scripts:
        shell = "bash" if "bash" in tree.lines(path)[0] else "sh"
        run = subprocess.run([shell, "-n", path], cwd=tree.root, text=True, capture_output=True)
        if run.returncode != 0:
            line = re.search(r"(?:line )?(\d+):", run.stderr)
            yield Finding(path, int(line.group(1)) if line else 1, run.stderr.strip().split("\n")[0])
            unreadable.add(path)
    if not shutil.which("shellcheck"):
        print("shell-scripts: shellcheck is not installed, only the syntax was looked at", file=sys.stderr)
        return
    sound = [path for path in scripts if path not in unreadable]
    if not sound:
        return
    whole = [path for path in sound if tree.text(path).startswith("#!")]
    for paths, options in ((whole, []), ([path for path in sound if path not in whole], PIECE)):
        if not paths:
            continue
        run = subprocess.run(["shellcheck", "-x", "-e", SOURCED, *options, "-f", "gcc", *paths], cwd=tree.root, text=True,
                             capture_output=True)
        for path, line, text in re.findall(r"^(.+?):(\d+):\d+: (.*)$", run.stdout, re.MULTILINE):
            yield Finding(path, int(line), text)
