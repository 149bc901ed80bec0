# SPDX-License-Identifier: MIT
"""500 kills more of those in test_killed.py."""
import unittest

import test_killed


class KilledOften(test_killed.Killed):
    times = 167


if __name__ == "__main__":
    unittest.main()
