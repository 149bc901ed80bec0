#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""docs/algorithms.md gives for every function the digests that the program prints."""
import os
import re
import unittest

from program import SOURCE_DIRECTORY, SumCase

PAGE = os.path.join(SOURCE_DIRECTORY, "docs", "algorithms.md")
LINE = re.compile(r'^([A-Z0-9/-]+) "(|abc)" ([0-9a-f]+)$', re.MULTILINE)


class AlgorithmsPage(SumCase):
    def setUp(self):
        super().setUp()
        with open(PAGE, encoding="utf-8") as file:
            self.digests = LINE.findall(file.read())

    def test_it_lists_every_function_with_both_messages(self):
        listed = self.fyrnsum("--list-functions").output.decode().splitlines()
        names = [name for name, message, _ in self.digests if message == ""]
        self.assertEqual(names, [name for name, message, _ in self.digests if message == "abc"])
        self.assertEqual(len(names), len(set(names)))
        for name in names:
            with self.subTest(name):
                self.assertTrue(any(name in line.split() for line in listed), listed)

    def test_its_digests_are_those_of_the_program(self):
        for name, message, digest in self.digests:
            self.write("file", message.encode())
            with self.subTest(message=message, function=name):
                printed = self.fyrnsum("--untagged", "-a", name, "file").output.decode().split()[0]
                if name in ("CKSUM", "SUM-BSD", "SUM-SYSV"):
                    printed = f"{int(printed):0{len(digest)}x}"
                self.assertEqual(printed, digest)


if __name__ == "__main__":
    unittest.main()
