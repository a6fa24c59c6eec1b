"""What the tests of qxvtool share: a folder of its own for each, runs of the program with the exit code checked, JSON answers.

Each test file is called with the program's path, and for a cross-built one with what comes before it to run it.
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = []
IS_WINDOWS = False


def needs(*programs):
    """Leaves a test out, with its reason, where a judge is not installed."""
    missing = [program for program in programs if shutil.which(program) is None]
    return unittest.skipIf(missing, "not installed here: " + ", ".join(missing))


def judge(*arguments, data=b""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=60, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')[:500]}")
    return done.stdout


class ToolCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.environment = dict(os.environ)

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, data):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(data if isinstance(data, bytes) else data.encode())
        return name

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def run_tool(self, *arguments, code=0):
        """(standard output, standard error) of a run in the test's folder."""
        done = subprocess.run([*PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, timeout=100, check=False,
                              cwd=self.folder, env=self.environment)
        out, err = done.stdout.decode("utf-8"), done.stderr.decode("utf-8", errors="replace")
        self.assertEqual(done.returncode, code, f"{arguments}: {out[:500]} {err[:500]}")
        return out, err

    def answer(self, *arguments, code=0):
        return self.run_tool(*arguments, code=code)[0]

    def json(self, *arguments, code=0):
        return json.loads(self.answer(*arguments, "--json", code=code))

    def refusal(self, *arguments, code=1):
        """The words of a run that must fail. They name the program; nothing but them was printed."""
        out, err = self.run_tool(*arguments, code=code)
        self.assertEqual(out, "", arguments)
        self.assertTrue(err.startswith("qxvtool"), err)
        return err


def main():
    global IS_WINDOWS
    program, *emulator = sys.argv[1:]
    PROGRAM[:] = [*emulator, program]
    IS_WINDOWS = bool(emulator)
    unittest.main(argv=sys.argv[:1], module="__main__", verbosity=2)
