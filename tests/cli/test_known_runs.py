# SPDX-License-Identifier: MIT
"""Runs of the whole program whose digests are known (tests/data/known_runs.txt)."""
import hashlib
import os
import unittest

from expected import ROWS
from launcher import SOURCE_DIRECTORY, ScratchCase

PATH = os.path.join(SOURCE_DIRECTORY, "tests", "data", "known_runs.txt")
OPTIONS = ("poly16", "poly32", "poly64")


class Run:
    """One case of the file: what to hash, the options, and (name, digest) in the order of output."""

    def __init__(self, lines):
        self.options = []
        self.salt = None
        self.digests = []
        for line in lines:
            key, _, value = line.partition(" ")
            if key == "case":
                self.name = line
            elif key == "file":
                self.content = content(value)
            elif key == "salt":
                self.salt = content(value)
            elif key == "salttype":
                self.options.append("-salttype=" + value)
            elif key in OPTIONS:
                self.options.append(f"-{key}=0x{value}")
            elif key == "hash":
                self.options += ["-hash=" + name for name in value.split(",")]
            else:
                self.digests.append((key, value))


def content(label_and_length):
    """The bytes of a file that is given by label and length."""
    label, length = label_and_length.split(" ")
    return hashlib.shake_128(label.encode()).digest(int(length))


def runs():
    with open(PATH, encoding="ascii") as file:
        blocks = file.read().split("\n\n")
    return [Run(block.splitlines()) for block in blocks if block.startswith("case ")]


class KnownRuns(ScratchCase):
    def test_the_file_holds_79_runs_with_400_digests_or_more_of_all_functions(self):
        self.assertEqual(len(runs()), 79)
        self.assertGreaterEqual(sum(len(run.digests) for run in runs()), 400)
        self.assertEqual({name for run in runs() for name, _ in run.digests}, set(ROWS))

    def test_every_run_prints_the_known_digests(self):
        for run in runs():
            with self.subTest(run.name):
                self.write("file", run.content)
                if run.salt is not None:
                    self.write("salt", run.salt)
                    run.options.append("-salt=salt")
                result = self.fyrn("-verbosity=1", *run.options, "file")
                header = "Hashes: " + "".join(name + " " for name, _ in run.digests)
                self.assert_lines(result, header, "", *("  " + digest for _, digest in run.digests))


if __name__ == "__main__":
    unittest.main()
