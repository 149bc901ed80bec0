# SPDX-License-Identifier: MIT
"""A list of a million entries takes at most 300 bytes of memory for each, whatever becomes of them."""
import os
import subprocess
import unittest

from program import PROGRAM, SumCase, native_only, posix_only

ENTRIES = 1_000_000


@posix_only
@native_only
class LongLists(SumCase):
    def test_memory_of_an_audit(self):
        os.mkdir(self.path("tree"))
        self.write("tree/first", b"")
        with open(self.path("LIST"), "w", encoding="ascii") as file:
            for number in range(ENTRIES):
                file.write(f"{number:064x}  tree/directory-{number // 1000:04}/folder/file-name-{number:07}.jpg\n")
        with subprocess.Popen([PROGRAM, "--audit=LIST", "tree"], cwd=self.scratch, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE) as process:
            said = process.stderr.read()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual((process.returncode, said), (1, b"fyrnsum: 0 OK; 1 NEW; 1000000 MISSING\n"))
        self.assertLess(usage.ru_maxrss * 1024 / ENTRIES, 300)


if __name__ == "__main__":
    unittest.main()
