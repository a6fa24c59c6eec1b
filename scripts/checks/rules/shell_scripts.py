"""Shell scripts are read by the shell, and by shellcheck where it is installed, before anybody runs them."""

import re
import shutil
import subprocess
import sys

from tree import Finding

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
    run = subprocess.run(["shellcheck", "-x", "-e", "SC1091", "-f", "gcc", *sound], cwd=tree.root, text=True, capture_output=True)
    for path, line, text in re.findall(r"^(.+?):(\d+):\d+: (.*)$", run.stdout, re.MULTILINE):
        yield Finding(path, int(line), text)
