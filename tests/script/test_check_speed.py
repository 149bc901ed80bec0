# SPDX-License-Identifier: MIT
"""The check of speed sees a loss that stands, and takes nothing else for one."""
import importlib.util
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
CHECK = ROOT / "bench/check_speed.py"
FIGURES = ROOT / "docs/performance.md"

# Stands for the program that measures kernels: prints the next of the given lists of lines at each call.
RATIOS = """#!{python}
import pathlib
calls = pathlib.Path(__file__).parent / "calls"
calls.write_text(calls.read_text() + "x")
answers = {answers}
for line in answers[min(len(calls.read_text()), len(answers)) - 1]:
    print(line)
"""

RECORDS = """# A comment.

[Maker 1]
Tiger       bmi       2.00
Whirlpool   avx9      9.00

[Maker 2]
Tiger       bmi       8.00
"""

# Stands for a program that hashes: takes its time over a file that is not empty, and prints the MD5 digest.
HASHES = """#!/bin/sh
for file; do :; done
i=0
[ ! -s "$file" ] || while [ $i -lt {turns} ]; do i=$((i+1)); done
/usr/bin/md5sum < "$file" | /usr/bin/cut -c 1-32
"""


def check_module():
    found = importlib.util.spec_from_file_location("check_speed", CHECK)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


class CheckCase(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        (self.scratch / "records").write_text(RECORDS, encoding="ascii")
        (self.scratch / "calls").write_text("", encoding="ascii")
        (self.scratch / "peers").mkdir()
        self.fyrn = self.program("fyrn", HASHES.format(turns=5_000))
        self.program("peers/openssl", HASHES.format(turns=5_000))
        self.kernels(("Tiger bmi", 2.0), ("Tiger portable", 1.0))

    def program(self, name, text):
        path = self.scratch / name
        path.write_text(text, encoding="ascii")
        os.chmod(path, 0o755)
        return path

    def kernels(self, *tries):
        """The speeds that are measured, a list of (kernel, speed) a try; the first kernel is in use. Or one such list."""
        if isinstance(tries[0][0], str):
            tries = (tries,)
        answers = [[f"{kernel} 1.00 {1000 * speed}{'  in use' if i == 0 else ''}" for i, (kernel, speed) in enumerate(one)]
                   for one in tries]
        self.ratios = self.program("ratios", RATIOS.format(python=sys.executable, answers=answers))

    def check(self, *options, processor="Maker 3", fyrn=None):
        """Runs the check with one kernel, and MD5 as the only row. No other peers are found than those made here."""
        return subprocess.run(
            [sys.executable, "-B", CHECK, *options, "--processor", processor, "--size", "1", self.scratch / "records",
             FIGURES, self.ratios, fyrn or self.fyrn, "MD5"],
            check=False, capture_output=True, text=True, env={"PATH": str(self.scratch / "peers")})

    def calls(self):
        return len((self.scratch / "calls").read_text(encoding="ascii"))


class Kernels(CheckCase):
    def bmi(self, *speeds):
        self.kernels(*([("Tiger bmi", speed), ("Tiger portable", 1.0)] for speed in speeds))

    def test_the_recorded_ratio_passes_at_the_first_try(self):
        result = self.check(processor="Maker 1")
        self.assertEqual(result.returncode, 0, result)
        self.assertEqual(self.calls(), 1)

    def test_a_quarter_less_than_recorded_passes(self):
        self.bmi(1.51)
        self.assertEqual(self.check(processor="Maker 1").returncode, 0)

    def test_a_loss_that_stands_in_all_tries_fails(self):
        self.bmi(1.49)
        result = self.check(processor="Maker 1")
        self.assertEqual(result.returncode, 1)
        self.assertIn("SLOW", result.stdout)
        self.assertEqual(self.calls(), check_module().TRIES)

    def test_a_loss_that_passes_by_does_not_fail(self):
        self.bmi(1.0, 1.2, 1.9)
        self.assertEqual(self.check(processor="Maker 1").returncode, 0)
        self.assertEqual(self.calls(), 3)

    def test_records_of_other_kernels_are_passed_over_and_counted(self):
        self.assertIn("1 records are for kernels that are not in use here", self.check(processor="Maker 1").stdout)

    def test_records_of_another_processor_do_not_count(self):
        self.assertEqual(self.check(processor="Maker 2").returncode, 1)

    def test_on_any_processor_the_kernel_in_use_must_not_be_slower_than_the_one_behind_it(self):
        self.bmi(0.98)
        self.assertEqual(self.check().returncode, 0)
        self.bmi(0.96)
        self.assertEqual(self.check().returncode, 1)

    def test_nor_than_any_other(self):
        for others, status in (((1.02, 0.5), 0), ((1.04, 0.5), 1), ((0.5, 1.04), 1)):
            self.kernels(("Tiger sse", 1.0), ("Tiger bmi", others[0]), ("Tiger portable", others[1]))
            self.assertEqual(self.check().returncode, status, others)

    def test_a_kernel_that_suffers_most_from_other_programs_is_judged_by_its_quiet_moment(self):
        self.bmi(0.8, 0.8, 0.8, 0.8, 1.05, 0.8)
        self.assertEqual(self.check().returncode, 0)

    def test_one_quiet_moment_of_another_kernel_alone_does_not_fail(self):
        slow, quiet = [("Tiger bmi", 1.0), ("Tiger portable", 0.9)], [("Tiger bmi", 1.0), ("Tiger portable", 1.1)]
        self.kernels(quiet, slow, slow)
        self.assertEqual(self.check().returncode, 0)

    def test_recording_takes_the_best_of_all_tries(self):
        self.bmi(4.0, 3.0, 9.0, 5.0)
        self.assertEqual(self.check("--record").returncode, 0)
        text = (self.scratch / "records").read_text(encoding="ascii")
        self.assertTrue(text.startswith("# A comment.\n"))
        self.assertIn("[Maker 3]\nTiger       bmi       9.00\n", text)
        self.assertIn("[Maker 2]\nTiger       bmi       8.00\n", text)


class Commands(CheckCase):
    def test_programs_of_one_speed_pass(self):
        result = self.check()
        self.assertEqual(result.returncode, 0, result)
        self.assertRegex(result.stdout, r"(?m)^command MD5 .* times OpenSSL .* at least ")

    def test_a_program_that_fails_is_not_fast(self):
        result = self.check(fyrn="/bin/false")
        self.assertEqual(result.returncode, 1, result)
        self.assertIn("command MD5         FAILED", result.stdout)

    def test_a_program_that_does_nothing_is_not_fast(self):
        result = self.check(fyrn="/bin/true")
        self.assertEqual(result.returncode, 1, result)
        self.assertIn("WRONG", result.stdout)

    def test_a_wrong_digest_fails(self):
        self.program("fyrn", "#!/bin/sh\necho 900150983cd24fb0d6963f7d28e17f72\n")
        result = self.check()
        self.assertEqual(result.returncode, 1, result)
        self.assertIn("WRONG: 900150983cd24fb0d6963f7d28e17f72", result.stdout)

    def test_a_slow_program_fails(self):
        self.program("fyrn", HASHES.format(turns=20_000))
        result = self.check()
        self.assertEqual(result.returncode, 1, result)
        self.assertRegex(result.stdout, r"(?m)^command MD5 .* SLOW$")

    def test_every_peer_that_is_installed_counts(self):
        self.program("peers/rhash", HASHES.format(turns=500))
        result = self.check()
        self.assertEqual(result.returncode, 1, result)
        self.assertRegex(result.stdout, r"(?m)^command MD5 .* times OpenSSL .*[^W]$")
        self.assertRegex(result.stdout, r"(?m)^command MD5 .* times RHash .* SLOW$")

    def test_without_a_peer_nothing_is_shown(self):
        (self.scratch / "peers/openssl").unlink()
        result = self.check()
        self.assertEqual(result.returncode, 1, result)
        self.assertIn("no whole command was compared", result.stdout)

    def test_there_is_a_figure_for_every_comparison(self):
        module = check_module()
        figures = module.read_figures(FIGURES)
        for row in module.ROWS:
            for peer in row.peers:
                self.assertGreater(figures[row.name][peer], 0.8, (row.name, peer))


if __name__ == "__main__":
    unittest.main()
