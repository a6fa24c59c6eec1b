#!/usr/bin/env python3
"""qxvtool md5 beside md5sum: whole files, and files whose digest was interrupted or killed and taken up again."""

import hashlib
import os
import random
import signal
import struct
import subprocess
import time
import unittest

import tool_case
from tool_case import ToolCase, judge, needs

SIZE = 24 << 20
ABC = "900150983cd24fb0d6963f7d28e17f72"  # RFC 1321, of "abc"


class Whole(ToolCase):
    def test_known_digest(self):
        self.write("abc", b"abc")
        self.assertEqual(self.answer("md5", "abc"), f"{ABC}  abc\n")
        self.assertEqual(self.json("md5", "abc", "abc"), [{"file": "abc", "md5": ABC}] * 2)

    @needs("md5sum")
    def test_md5sum_checks_our_lines(self):
        names = []
        for size in (0, 1, 63, 64, 65, (1 << 20) - 1, 1 << 20, (1 << 20) + 1, 3000000):
            names.append(self.write(f"file {size}", random.Random(size).randbytes(size)))
        self.write("sums", self.answer("md5", *names))
        done = subprocess.run(["md5sum", "--check", "--strict", "sums"], cwd=self.folder, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout.count(": OK")), (0, len(names)), done)

    def test_expectation(self):
        self.write("abc", b"abc")
        self.answer("md5", "abc", "--expect", ABC.upper())
        self.assertIn(f"abc: has the MD5 {ABC}, not {'0' * 32}", self.refusal("md5", "abc", "--expect", "0" * 32))
        self.refusal("md5", "abc", "--expect", "123", code=2)

    def test_ids_are_no_paths(self):
        self.write("abc", b"abc")
        for name in ("../x", "a/b", "a\\b", "c:x"):
            self.refusal("md5", "abc", "--resume", name, code=2)


class Interrupted(ToolCase):
    def setUp(self):
        super().setUp()
        self.data = random.Random(5).randbytes(SIZE)
        self.write("clip", self.data)
        self.digest = hashlib.md5(self.data).hexdigest()

    def start(self):
        """A run that would take six seconds."""
        return subprocess.Popen([*tool_case.PROGRAM, "md5", "clip", "--resume", "job", "--rate", "4"], cwd=self.folder, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment)

    def wait_for_state(self):
        """Until the first save, a second after the start."""
        deadline = time.monotonic() + 30
        path = self.path("job.MD5frag")
        while time.monotonic() < deadline and not (os.path.exists(path) and os.path.getsize(path) == 96):
            time.sleep(0.05)

    def saved_bytes(self):
        """What stands in the state: bytes digested, and how far the program was."""
        state = self.read("job.MD5frag")
        self.assertEqual(len(state), 96)
        bits, value = struct.unpack_from("<Q", state)[0], struct.unpack_from("<Q", state, 88)[0]
        self.assertEqual(bits // 8, value >> 16)
        return bits // 8

    def take_up(self):
        """The bytes that were digested before are changed now: who reads them again gets another digest."""
        done = self.saved_bytes()
        self.assertGreater(done, 0)
        self.assertLess(done, SIZE)
        with open(self.path("clip"), "r+b") as file:
            file.write(bytes(done))
        self.assertEqual(self.answer("md5", "clip", "--resume", "job"), f"{self.digest}  clip\n")
        self.assertFalse(os.path.exists(self.path("job.MD5frag")))

    def test_interrupted_and_taken_up(self):
        run = self.start()
        self.wait_for_state()
        run.send_signal(signal.SIGINT)  # Wine makes Ctrl-C of it
        out, err = run.communicate(timeout=20)
        self.assertEqual((run.returncode, out), (1, b""))
        self.assertRegex(err.decode(), r"^qxvtool: clip: interrupted at \d+ %; the same command takes it up again\n$")
        self.take_up()

    def test_killed_and_taken_up(self):
        run = self.start()
        self.wait_for_state()
        run.kill()
        run.communicate(timeout=20)
        time.sleep(0.5 if tool_case.IS_WINDOWS else 0)  # until Wine has let go of the file
        self.take_up()

    def test_the_state_of_another_file_is_refused(self):
        run = self.start()
        self.wait_for_state()
        run.kill()
        run.communicate(timeout=20)
        time.sleep(0.5 if tool_case.IS_WINDOWS else 0)
        self.write("other", self.data)
        self.assertIn("job.MD5frag: holds the state of another file than other", self.refusal("md5", "other", "--resume", "job"))
        self.write("clip", self.data + b"more")
        self.assertIn("one that has changed", self.refusal("md5", "clip", "--resume", "job"))
        self.assertTrue(os.path.exists(self.path("job.MD5frag")))

    def test_the_bar_at_a_terminal(self):
        if tool_case.IS_WINDOWS:
            self.skipTest("Wine makes a console of a whole terminal only, which a test has not")
        import pty
        ours, theirs = pty.openpty()
        done = subprocess.Popen([*tool_case.PROGRAM, "md5", "clip", "--rate", "30"], cwd=self.folder, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=theirs)
        os.close(theirs)
        shown = b""
        try:
            while piece := os.read(ours, 4096):
                shown += piece
        except OSError:  # the other end is closed
            pass
        out, _ = done.communicate(timeout=20)
        os.close(ours)
        self.assertEqual(out.decode(), f"{self.digest}  clip\n")
        lines = shown.decode().split("\r")
        self.assertGreater(len(lines), 4)
        self.assertRegex(lines[2], r"^clip +[█▏▎▍▌▋▊▉░]+ +\d+ % +\d+\.\d MiB/s +0:\d\d left$")
        self.assertEqual(lines[-2].strip(), "")  # taken away at the end


if __name__ == "__main__":
    tool_case.main()
