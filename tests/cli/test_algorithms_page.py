# SPDX-License-Identifier: MIT
"""docs/algorithms.md gives for every row the digests that the program prints. Its last section, about functions that
this program does not have, is checked with fyrnsum."""
import os
import re
import unittest

from launcher import SOURCE_DIRECTORY, ScratchCase

PAGE = os.path.join(SOURCE_DIRECTORY, "docs", "algorithms.md")
LINE = re.compile(r'^([A-Z0-9-]+) "(|abc)" ([0-9a-f]+)$', re.MULTILINE)


def digests_of_the_page():
    """Row names and digests in the order of the page, by message."""
    with open(PAGE, encoding="utf-8") as file:
        found = LINE.findall(file.read().partition("\n## Functions of fyrnsum")[0])
    return {message: [(name, digest) for name, of, digest in found if of == message] for message in ("", "abc")}


class AlgorithmsPage(ScratchCase):
    def test_it_lists_every_row_once_in_order(self):
        header = self.fyrn("-hash=ALL").lines[0].decode().removeprefix("Hashes: ")
        for message, digests in digests_of_the_page().items():
            with self.subTest(message=message):
                self.assertEqual([name for name, _ in digests], header.split())

    def test_its_digests_are_those_of_the_program(self):
        for message, digests in digests_of_the_page().items():
            self.write("file", message.encode())
            for name, digest in digests:
                with self.subTest(message=message, row=name):
                    self.assert_lines(self.fyrn(f"-hash={name}", "-verbosity=1", "file"),
                                      f"Hashes: {name} ", "", f"  {digest}")


if __name__ == "__main__":
    unittest.main()
