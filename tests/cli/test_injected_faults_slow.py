# SPDX-License-Identifier: MIT
"""Ten thousand injected faults: no crash, no hang, no lost or wrong file."""
import errno
import os
import random
import shutil
import tempfile
import time
import unittest

from injected import CONTENTS, SEED, Fault, InjectedCase
from test_other_file_systems import second_file_system

TOTAL = 10_000


class TenThousandFaults(InjectedCase):
    def setUp(self):
        super().setUp()
        self.started = time.monotonic()
        print(f"seed {SEED}")
        self.generator = random.Random(SEED)

    def report(self):
        seconds = time.monotonic() - self.started
        print(f"{self.injected} faults in {self.runs} runs, {seconds:.0f} s")

    def repeat(self, check, share):
        """Checks until this share of the faults is made. A storm of hundreds in one run counts as one."""
        faults = 0
        while faults < share:
            before = self.injected
            check()
            faults += 1 if self.injected > before else 0
        self.report()

    def test_while_hashing(self):
        plans = self.random_plans(self.generator)
        self.repeat(lambda: self.check_report(next(plans)), TOTAL * 3 // 10)

    def test_while_renaming(self):
        plans = self.random_plans(self.generator)
        self.repeat(lambda: self.check_renaming(next(plans), self.generator.choice(("-rename", "-renamedel"))),
                    TOTAL * 3 // 10)

    def test_while_files_vanish_shrink_and_turn_into_others(self):
        def check():
            kind = self.generator.choice(("vanish", "truncate", "swap"))
            victim = self.generator.choice(["s", "s/t"] if kind == "swap" else list(CONTENTS))
            call = self.generator.choice(("any", "open", "read", "stat", "chdir"))
            fault = Fault(f"{kind} {call} {self.generator.randint(1, 60)} {self.path('d', victim)}", victim=victim)
            if self.generator.random() < 0.5:
                self.check_report(fault)
            else:
                self.check_renaming(fault, self.generator.choice(("-rename", "-renamedel")))
        self.repeat(check, TOTAL * 2 // 10)

    def test_while_moving(self):
        """Calls of the move fail. What "-renamedel" then deletes it deletes on purpose: only "-rename" keeps all."""
        place = second_file_system(self.scratch) or self.scratch
        other = tempfile.mkdtemp(prefix="fyrn-", dir=place)
        self.addCleanup(shutil.rmtree, other, ignore_errors=True)

        def check():
            call = self.generator.choice(("renameat2", "renameat2,link", "renameat2,rename", "unlink", "write", "fsync",
                                          "fchown", "stat", "open"))
            error = self.generator.choice((errno.EINVAL, errno.ENOSYS, errno.EXDEV, errno.EPERM, errno.ENOSPC,
                                           errno.EROFS, errno.EIO, errno.EEXIST, errno.EDQUOT))
            if call in ("stat", "open"):
                error = errno.EIO
            count = self.generator.choice((1, 1, 2, 1000))
            if call not in ("stat", "open", "renameat2") and self.generator.random() < 0.7:
                # Such calls are reached only where the first way of renaming is not open.
                call, error, count = f"renameat2,{call}", self.generator.choice((errno.EXDEV, errno.EINVAL)), 1000
            fault = Fault(f"fail {call} {self.generator.randint(1, 12)} {count} {error}")
            if self.generator.random() < 0.5:
                self.check_renaming(fault, "-rename")
            else:
                self.check_renaming(fault, "-rename", directory=other)
                for name in os.listdir(other):
                    os.unlink(os.path.join(other, name))
        self.repeat(check, TOTAL * 2 // 10)


if __name__ == "__main__":
    unittest.main()
