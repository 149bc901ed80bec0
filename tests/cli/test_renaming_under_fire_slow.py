# SPDX-License-Identifier: MIT
"""Ten thousand files are renamed, and the program killed 200 times in each of four ways; two programs rename the same
files for 50 rounds."""
import unittest

import launcher
from under_fire import UnderFireCase


@launcher.posix_only
class UnderFireAtLength(UnderFireCase):
    FILES, KILLS, ROUNDS = 10_000, 200, 50

    def test_killed_while_renaming(self):
        self.kill_in_one_directory("-rename", self.FILES, self.KILLS)

    def test_killed_while_renaming_or_deleting(self):
        self.kill_in_one_directory("-renamedel", self.FILES, self.KILLS)

    def test_killed_while_moving_to_another_file_system(self):
        self.kill_between_file_systems("-rename", self.FILES, self.KILLS)

    def test_killed_while_moving_or_deleting(self):
        self.kill_between_file_systems("-renamedel", self.FILES, self.KILLS)

    def test_two_at_once(self):
        for option in ("-rename", "-renamedel"):
            self.race(option, 1000, self.ROUNDS // 2)


if __name__ == "__main__":
    unittest.main()
