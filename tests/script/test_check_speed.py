# SPDX-License-Identifier: MIT
"""The check of speed sees a loss that stands, and takes nothing else for one."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "bench/check_speed.py"

# Stands for the program that measures kernels: prints the next of the given lists of ratios at each call.
RATIOS = """#!/usr/bin/env python3
import pathlib
calls = pathlib.Path(__file__).parent / "calls"
calls.write_text(calls.read_text() + "x")
answers = {answers}
for line in answers[min(len(calls.read_text()), len(answers)) - 1]:
    print(line)
"""

RECORDS = """# A comment.

[Maker 1]
kernel  Tiger       bmi       2.00
kernel  Whirlpool   avx9      9.00

[Maker 2]
kernel  Tiger       bmi       8.00
"""


class CheckSpeed(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        (self.scratch / "records").write_text(RECORDS, encoding="ascii")
        (self.scratch / "calls").write_text("", encoding="ascii")

    def check(self, *answers, processor="Maker 1", options=(), behind=()):
        """Runs the check with these ratios of Tiger's kernel to the portable one, one a call, and no rows."""
        lines = [[f"Tiger bmi {ratio} 500", *behind, "Tiger portable 1.00 250"] for ratio in answers]
        program = self.scratch / "ratios"
        program.write_text(RATIOS.format(answers=lines), encoding="ascii")
        os.chmod(program, 0o755)
        return subprocess.run([sys.executable, "-B", CHECK, *options, "--processor", processor, self.scratch / "records",
                               program, "true", "true"], check=False, capture_output=True, text=True)

    def calls(self):
        return len((self.scratch / "calls").read_text(encoding="ascii"))

    def test_the_recorded_ratio_passes_at_the_first_try(self):
        self.assertEqual(self.check(2.0).returncode, 0)
        self.assertEqual(self.calls(), 1)

    def test_a_quarter_less_passes(self):
        self.assertEqual(self.check(1.51).returncode, 0)

    def test_a_loss_that_stands_in_three_tries_fails(self):
        result = self.check(1.49)
        self.assertEqual(result.returncode, 1)
        self.assertIn("LOST", result.stdout)
        self.assertEqual(self.calls(), 3)

    def test_a_loss_that_passes_by_does_not_fail(self):
        self.assertEqual(self.check(1.0, 1.2, 1.9).returncode, 0)

    def test_records_of_other_kernels_are_passed_over_and_counted(self):
        self.assertIn("1 records are for kernels that are not in use here", self.check(2.0).stdout)

    def test_records_of_another_processor_do_not_count(self):
        self.assertEqual(self.check(2.0, processor="Maker 2").returncode, 1)

    def test_on_an_unknown_processor_a_kernel_must_not_be_slower_than_the_portable_one(self):
        self.assertEqual(self.check(1.0, processor="Maker 3").returncode, 0)
        self.assertEqual(self.check(0.7, processor="Maker 3").returncode, 1)

    def test_on_an_unknown_processor_a_kernel_must_not_be_slower_than_one_that_it_is_preferred_to(self):
        behind = ["Tiger sse 2.00 500"]
        self.assertEqual(self.check(1.6, processor="Maker 3", behind=behind).returncode, 0)
        self.assertEqual(self.check(1.4, processor="Maker 3", behind=behind).returncode, 1)

    def test_recording_takes_the_middle_of_three_tries(self):
        self.assertEqual(self.check(4.0, 3.0, 9.0, processor="Maker 3", options=["--record"]).returncode, 0)
        text = (self.scratch / "records").read_text(encoding="ascii")
        self.assertTrue(text.startswith("# A comment.\n"))
        self.assertIn("[Maker 3]\nkernel  Tiger       bmi       4.00\n", text)
        self.assertIn("[Maker 2]\nkernel  Tiger       bmi       8.00\n", text)


if __name__ == "__main__":
    unittest.main()
