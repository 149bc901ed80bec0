# SPDX-License-Identifier: MIT
"""The polynomial options: four hex digits in swapped byte order, and 0xFFFF for the wider functions."""
import unittest

import launcher
from expected import crc16, crc32, crc64

CONTENT = b"123456789"


class Polynomials(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        self.write("a", CONTENT)

    def digests(self, *options):
        lines = self.fyrn("-hash=CRC-16", "-hash=CRC-32", "-hash=CRC-64", "-verbosity=1", *options, "a").lines
        return [line.decode().strip() for line in lines[2:]]

    def check(self, options, polynomial16=None, polynomial32=None, polynomial64=None):
        """Checks all three CRCs; a width without a polynomial must have its defaults."""
        expected = [
            crc16(CONTENT) if polynomial16 is None else crc16(CONTENT, polynomial16),
            crc32(CONTENT) if polynomial32 is None else crc32(CONTENT, polynomial32, 0xFFFF),
            crc64(CONTENT) if polynomial64 is None else crc64(CONTENT, polynomial64, 0xFFFF),
        ]
        self.assertEqual(self.digests(*options), expected, options)

    def test_defaults_are_the_catalogue_checks(self):
        self.assertEqual(self.digests(), ["b4c8", "cbf43926", "b90956c775a41001"])

    def test_the_first_two_bytes_are_swapped(self):
        self.check(["-poly16=0xa001"], polynomial16=0x01A0)
        self.check(["-poly16=0x8408"], polynomial16=0x0884)
        self.check(["-poly16=0x0580"], polynomial16=0x8005)
        self.check(["-poly32=0xedb88320"], polynomial32=0xB8ED)
        self.check(["-poly64=0xd800000000000000"], polynomial64=0x00D8)
        self.check(["-poly64=0x000000000000001b"], polynomial64=0)

    def test_later_digits_are_neither_read_nor_checked(self):
        self.check(["-poly32=0xedb8zzzz"], polynomial32=0xB8ED)
        self.check(["-poly64=0xd800, whatever!!"], polynomial64=0x00D8)

    def test_case_does_not_matter(self):
        self.check(["-POLY16=0XA0Bc"], polynomial16=0xBCA0)
        self.check(["-poly32=0xEDB8\u00e4\u00f6\u00fc!"], polynomial32=0xB8ED)

    def test_a_value_of_another_length_is_ignored(self):
        for value in ("", "A0", "a00", "a0010", "a001 "):
            self.check(["-poly16=0x" + value])
        for value in ("", "edb8", "edb8832", "edb883200"):
            self.check(["-poly32=0x" + value])
        for value in ("", "d800", "edb88320", "d80000000000000", "d8000000000000000"):
            self.check(["-poly64=0x" + value])

    def test_a_value_with_another_character_among_the_four_is_ignored(self):
        for value in ("a0g1", "g001", "0g00", "a00/", "a00:", "a00@", "a00G", "a00`", " 001", "+001", "0x00",
                      "\uff11001"):
            self.check(["-poly16=0x" + value])
        self.check(["-poly32=0xxedb8832"])
        self.check(["-poly64=0x-000000000000000"])

    def test_the_prefix_must_be_complete(self):
        self.check(["-poly16=a001", "-poly16=0", "-poly16", "-poly=0xa001", "poly16=0xa001"])

    def test_the_last_usable_value_of_each_width_wins(self):
        self.check(["-poly16=0x1021", "-poly32=0x04c11db7", "-poly16=0x8408", "-poly16=0xzzzz"],
                   polynomial16=0x0884, polynomial32=0xC104)

    def test_widths_do_not_touch_each_other(self):
        self.check(["-poly16=0x1021"], polynomial16=0x2110)
        self.check(["-poly64=0x0102030405060708"], polynomial64=0x0201)

    @launcher.posix_only
    def test_the_argument_is_still_looked_up_as_a_target(self):
        self.write("-poly16=0xa001", b"named like an option")
        result = self.fyrn("-hash=CRC-16", "-poly16=0xa001")
        self.assert_lines(result, "Hashes: CRC-16 ", "", "-poly16=0xa001",
                          "  " + crc16(b"named like an option", 0x01A0))


if __name__ == "__main__":
    unittest.main()
