# SPDX-License-Identifier: MIT
"""The runs on record in tests/data/runs.txt, of which the head explains the format."""
import hashlib
import os
import unittest

import launcher
from expected import ROWS


class Run:
    """One case on record: the options, the two files, and the digest by function name, in order."""

    def __init__(self, block):
        self.files = {}
        self.arguments = []
        self.digests = {}
        for line in block.splitlines():
            self.take(*line.split(" "))

    def take(self, key, *values):
        if key == "case":
            self.number = values[0]
        elif key in ("file", "salt"):
            label, length = values
            self.files[key] = hashlib.shake_128(label.encode()).digest(int(length))
            if key == "salt":
                self.arguments.append("-salt=salt")
        elif key == "hash":
            self.arguments += ["-hash=" + name for name in values[0].split(",")]
        elif key == "salttype":
            self.arguments.append("-salttype=" + " ".join(values))
        elif key.startswith("poly"):
            self.arguments.append(f"-{key}=0x" + " ".join(values))
        else:
            self.digests[key] = values[0]


def runs_on_record():
    with open(os.path.join(launcher.SOURCE_DIRECTORY, "tests", "data", "runs.txt"), encoding="ascii") as file:
        blocks = file.read().strip().split("\n\n")
    return [Run(block) for block in blocks if not block.startswith("#")]


class RunsOnRecord(launcher.ScratchCase):
    def test_every_run_prints_its_digests(self):
        runs = runs_on_record()
        self.assertEqual(len(runs), 79)
        self.assertEqual({name for run in runs for name in run.digests}, set(ROWS))
        for run in runs:
            for name, content in run.files.items():
                self.write(name, content)
            with self.subTest(case=run.number, arguments=run.arguments):
                result = self.fyrn(*run.arguments, "-verbosity=1", "file")
                self.assert_lines(result, "Hashes: " + "".join(name + " " for name in run.digests), "",
                                  *("  " + digest for digest in run.digests.values()))


if __name__ == "__main__":
    unittest.main()
