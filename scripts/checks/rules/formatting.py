"""clang-format has the last word on blanks and line breaks."""

import concurrent.futures
import os
import re
import shutil
import subprocess

from tree import Finding

PURPOSE = "clang-format-14 would change nothing"


def check(tree):
    paths = tree.code()
    if not paths:
        return
    if not shutil.which("clang-format-14"):
        yield Finding(".clang-format", 1, "clang-format-14 is not installed, scripts/setup installs it")
        return
    workers = os.cpu_count()
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        runs = pool.map(lambda part: subprocess.run(["clang-format-14", "--dry-run", "--Werror", *part], cwd=tree.root,
                                                    text=True, capture_output=True),
                        [part for part in (paths[start::workers] for start in range(workers)) if part])
    reported = set()
    for run in runs:
        for path, line in re.findall(r"^(.+?):(\d+):\d+: error: code should be clang-formatted", run.stderr, re.MULTILINE):
            if path not in reported:  # the first place of a file is enough, one command mends them all
                reported.add(path)
                yield Finding(path, int(line), f"clang-format-14 -i {path}")
        if run.returncode != 0 and not reported:
            yield Finding(".clang-format", 1, f"clang-format-14 failed: {run.stderr.strip()[:300]}")
