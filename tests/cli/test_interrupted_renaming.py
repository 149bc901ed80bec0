# SPDX-License-Identifier: MIT
"""A run that renames is killed at one of its moves, the next time at the next one: the report, which alone holds the old
names, has at every moment the lines of each file that was or is about to be moved or deleted."""
import os
import shutil
import subprocess
import unittest

import injected
from expected import sha1
from injected import Fault


class Interrupted(injected.InjectedCase):
    MOVES = "renameat2,rename,link,unlink"
    FILES = {f"{number:02}.txt": b"%d" % (number // 2) for number in range(40)}  # in pairs, so that some are deleted

    def run_killed(self, plan, option):
        """Renames the files with the report in a file. Returns its lines, and whether the run was killed."""
        shutil.rmtree(self.path("d"), ignore_errors=True)
        for name, content in self.FILES.items():
            self.write("d/" + name, content)
        os.ftruncate(self.log, 0)
        environment = {"LD_PRELOAD": injected.LIBRARY, "FYRN_FAULT": plan, "FYRN_FAULT_LOG": str(self.log)}
        with open(self.path("report"), "wb") as report:
            subprocess.run([self.program, "-hash=SHA1", option, "d"], cwd=self.scratch, env=environment, stdout=report,
                           stdin=subprocess.DEVNULL, pass_fds=[self.log], timeout=60, check=False)
        return self.read("report").decode().splitlines()[2:], os.fstat(self.log).st_size > 0

    def check_report(self, lines, claim):
        """Every name that is gone stands in the report with its digest; so does one that was about to go."""
        reported = dict(zip(lines[::2], lines[1::2]))
        gone = set(self.FILES) - set(self.names("d"))
        for name in gone:
            self.assertEqual(reported.get(name), "  " + sha1(self.FILES[name]), (claim, name))
        return len(reported) - len(gone)

    def test_no_old_name_is_lost(self):
        for option in ("-rename", "-renamedel"):
            for number in range(1, 200):
                plan = f"kill {self.MOVES} {number}"
                lines, killed = self.run_killed(plan, option)
                if not killed:
                    break
                self.assertEqual(self.check_report(lines, (plan, option)), 1)
            self.assertGreater(number, len(self.FILES))


if __name__ == "__main__":
    unittest.main()
