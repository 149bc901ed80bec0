# SPDX-License-Identifier: MIT
"""The rounds that the Keccak kernel for AVX-512 is made of are those that script/keccak-rounds prints."""
import pathlib
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROUNDS = ROOT / "hash" / "kernels" / "Keccak_X86Avx512Rounds.h"


class KeccakRounds(unittest.TestCase):
    def test_the_file_is_what_the_script_prints(self):
        done = subprocess.run([sys.executable, ROOT / "script" / "keccak-rounds"], capture_output=True, text=True,
                              check=True)
        self.assertEqual(done.stderr, "")
        self.assertEqual(ROUNDS.read_text(encoding="utf-8"), done.stdout)


if __name__ == "__main__":
    unittest.main()
