# SPDX-License-Identifier: MIT
"""The tests pass on a big-endian processor, on one of 32 bits, and whatever compiler and level built them."""
import pathlib
import re
import subprocess
import sys
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "script"


class OtherBuilds(unittest.TestCase):
    def summaries(self, *command):
        """Runs a script of the project; returns CTest's line "n% tests passed, ..." of every build."""
        run = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace")
        self.assertEqual(run.returncode, 0, run.stdout[-4000:] + run.stderr[-4000:])
        lines = re.findall(r".*% tests passed.*", run.stdout)
        print(*lines, sep="\n", file=sys.stderr)
        return lines

    def assert_all_passed(self, lines, builds):
        self.assertEqual(len(lines), builds)
        for line in lines:
            self.assertRegex(line, r"100% tests passed, 0 tests failed out of [1-9]\d+")

    def test_processors_of_either_byte_order_and_of_32_bits(self):
        for processor in ("s390x", "i686"):
            with self.subTest(processor):
                self.assert_all_passed(self.summaries(SCRIPT / "test-processors", processor), 1)

    def test_compilers_at_every_level(self):
        self.assert_all_passed(self.summaries(SCRIPT / "test-compilers"), 8)


if __name__ == "__main__":
    unittest.main()
