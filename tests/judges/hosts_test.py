#!/usr/bin/env python3
"""Addresses of hosts beside getent(1), which asks the same name service."""

import shutil
import socket
import subprocess
import sys
import unittest

SUBJECT = ""
HOSTS = ["localhost", "LOCALHOST", socket.gethostname(), "127.0.0.1", "10.1.2.3", "255.255.255.255", "127.1", "1.2.3.4.5",
         "no-such-host.invalid", "two words", "-", "x" * 64, "x" * 300, "x" * 2000]


def hosts_of_this_computer():
    """What /etc/hosts names."""
    names = []
    with open("/etc/hosts", encoding="utf-8", errors="replace") as file:
        for line in file:
            names += line.split("#")[0].split()[1:]
    return names


def getent(host):
    done = subprocess.run(["getent", "ahostsv4", host], capture_output=True, timeout=60, check=False)
    lines = done.stdout.decode().splitlines()
    return "1 " + lines[0].split()[0] if done.returncode == 0 and lines else "0 "


class Hosts(unittest.TestCase):
    def test_every_host_has_the_address_that_getent_says(self):
        hosts = HOSTS + [name for name in hosts_of_this_computer() if name.isascii()]
        done = subprocess.run([SUBJECT], input="\n".join(hosts).encode(), capture_output=True, timeout=110, check=True)
        answers = done.stdout.decode().splitlines()
        self.assertEqual(len(answers), len(hosts))
        self.assertIn("1 127.0.0.1", answers)
        for host, answer in zip(hosts, answers):
            with self.subTest(host=host[:80]):
                self.assertEqual(answer, getent(host))


if __name__ == "__main__":
    if shutil.which("getent") is None:
        print("skipped: not installed here: getent")
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
