# SPDX-License-Identifier: MIT
"""The program runs on processors without the newer instructions and prints the same: under an emulator of several."""
import os
import platform
import random
import shutil
import subprocess
import unittest

from expected import ROWS
from launcher import INSTRUMENTED, PROGRAM, ScratchCase, posix_only

EMULATOR = "qemu-x86_64"

# From the first 64-bit processors with SSE2 to one with AVX2 and BMI but without SHA instructions, and such as differ in
# one feature, among them systems that do not keep the registers of AVX. The emulator has no AVX-512.
MODELS = ("qemu64,-pni,-cx16", "core2duo", "Penryn", "Nehalem", "Westmere", "SandyBridge", "Haswell,-bmi1,-bmi2",
          "Haswell,-bmi1", "Haswell,-bmi2", "Haswell,-avx2", "Haswell,-avx", "Haswell,-xsave", "Haswell,-pclmulqdq",
          "Haswell", "Skylake-Server")

# The C library takes BMI for granted where there is AVX2, and would crash by itself.
ENVIRONMENT = {**os.environ, "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2"}


@posix_only
@unittest.skipIf(INSTRUMENTED, "sanitizers do not run under the emulator")
@unittest.skipUnless(platform.machine() == "x86_64", "for 64-bit x86 processors")
@unittest.skipUnless(shutil.which(EMULATOR), f"{EMULATOR} is not installed")
class OldProcessors(ScratchCase):
    def emulated(self, model, *arguments):
        return subprocess.run([EMULATOR, "-cpu", model, PROGRAM, *arguments], cwd=self.scratch, check=False,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=300, env=ENVIRONMENT)

    def test_every_model_prints_what_this_machine_prints(self):
        content = random.Random(20240229).randbytes(70_000)
        self.write("some", content)
        self.write("tiny", content[:3])
        self.write("none")
        arguments = ("-hash=all", "some", "tiny", "none")
        expected = self.fyrn(*arguments)
        self.assertEqual(len(expected.lines), 2 + 3 * (1 + len(ROWS)))
        for model in MODELS:
            with self.subTest(model=model):
                done = self.emulated(model, *arguments)
                self.assertEqual(done.returncode, 0)
                self.assertEqual(done.stdout, expected.output)


if __name__ == "__main__":
    unittest.main()
