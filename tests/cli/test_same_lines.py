# SPDX-License-Identifier: MIT
"""The Windows program prints the lines of the native one."""
import os
import random
import subprocess
import unittest

import launcher
from expected import ROWS

EXTENSIONS = ("", ".txt", ".jpg", ".tar.gz", ".c", ".b")
BORDERS = (0, 1, 55, 56, 63, 64, 65, 111, 112, 127, 128, 129, 135, 136, 511, 512, 513, 4095, 4096, 4097)
FILES = 500


@launcher.windows_only
class SameLines(launcher.ScratchCase):
    SEED = 20261121

    def setUp(self):
        super().setUp()
        print(f"seed {self.SEED}")
        generator = random.Random(self.SEED)
        for number in range(FILES):
            directory = generator.choice(("tree", "tree/deep", "tree/deep/er", "tree/Other Directory", "tree/z.z"))
            name = "".join(generator.choice("aBcDeF_-09 ") for _ in range(generator.randrange(1, 9))).strip()
            length = generator.choice((*BORDERS, generator.randrange(20_000), generator.randrange(3_000)))
            self.write(f"{directory}/{name}{number}{generator.choice(EXTENSIONS)}", generator.randbytes(length))
        self.write("tree/deep/large", generator.randbytes(2_100_000))  # longer than every read buffer
        self.write("salt", generator.randbytes(100))

    def native(self, *arguments):
        done = subprocess.run([os.environ["FYRN_NATIVE_PROGRAM"], *arguments], cwd=self.scratch, check=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, timeout=120)
        return launcher.Result(0, done.stdout, b"").lines

    def test_of_500_files_by_all_functions(self):
        lines = self.fyrn("-hash=ALL", "-subdirs", "tree", timeout=1500).lines
        self.assertEqual(len(lines), 2 + (FILES + 1) * (1 + len(ROWS)))
        self.assertEqual(lines, self.native("-hash=ALL", "-subdirs", "tree"))

    def test_with_salt_polynomials_and_without_names(self):
        arguments = ("-hash=ALL", "-salt=salt", "-salttype=both", "-poly16=0x1021", "-poly32=0x04c11db7",
                     "-poly64=0x000000000000001b", "-verbosity=1", os.path.join("tree", "*.jpg"))
        lines = self.fyrn(*arguments).lines
        self.assertGreater(len(lines), 2 + 10 * len(ROWS))
        self.assertEqual(lines, self.native(*arguments))


if __name__ == "__main__":
    unittest.main()
