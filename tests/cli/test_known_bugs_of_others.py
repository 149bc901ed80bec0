# SPDX-License-Identifier: MIT
"""Mistakes that other programs of this kind are known for, each with a test named after it. Those of single hash
functions are in tests/crypto/KnownBugs_test.cpp; messages of 4 GiB and more in test_load_slow.py."""
import os
import unittest

import launcher
from expected import EMPTY_MD5, crc32, md5, sha1


@launcher.posix_only
class KnownBugsOfOthers(launcher.ScratchCase):
    def test_a_directory_that_yields_the_digest_of_nothing(self):
        os.mkdir(self.path("d"))
        os.symlink("d", self.path("link"))
        for argument in ("d", "d/", "link", "d/.", ".", "*"):
            result = self.fyrn("-hash=MD5", "-hash=SHA1", argument)
            self.assert_lines(result, "Hashes: MD5 SHA1 ", "")

    def test_a_directory_as_salt_that_is_the_salt_of_nothing(self):
        os.mkdir(self.path("d"))
        self.write("a", b"abc")
        result = self.fyrn("-hash=MD5", "-salt=d", "-salttype=both", "a")
        self.assert_lines(result, "Hashes: MD5 ", "", "a", "  " + md5(b"abc"))

    def test_an_unreadable_file_that_yields_the_digest_of_nothing(self):
        os.chmod(self.write("a", b"abc"), 0)
        result = self.fyrn_unprivileged("-hash=MD5", "-hash=SHA1", "a")
        self.assertNotIn(EMPTY_MD5.encode(), result.output)
        self.assert_lines(result, "Hashes: MD5 SHA1 ", "", "a", "  ")

    def test_stale_output_after_an_error(self):
        """Rows that print a line for every file print the digest before it: deliberate, and no other digest."""
        self.write("a", b"abc")
        os.chmod(self.write("b", b"b"), 0)
        self.write("c", b"c")
        result = self.fyrn_unprivileged("-hash=CRC-32", "-hash=SHA1", "a", "b", "c")
        self.assert_lines(result, "Hashes: CRC-32 SHA1 ", "",
                          "a", "  " + crc32(b"abc"), "  " + sha1(b"abc"),
                          "b", "  " + sha1(b"abc"),
                          "c", "  " + crc32(b"c"), "  " + sha1(b"c"))

    def test_descriptor_exhaustion_in_deep_trees(self):
        depths = range(60)
        for depth in depths:
            self.write("t/" + "d/" * depth + f"{depth}.txt", b"%d" % depth)
        result = launcher.in_shell('ulimit -n 8; "$@"', "-hash=MD5", "-subdirs", "t", directory=self.scratch)
        self.check_quiet_success(result)
        self.assertEqual(sorted(result.lines[3::2]), sorted(b"  " + md5(b"%d" % depth).encode() for depth in depths))


if __name__ == "__main__":
    unittest.main()
