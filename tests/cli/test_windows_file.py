# SPDX-License-Identifier: MIT
"""What Windows reads in the program's file before it runs: kind, protections, version and manifest."""
import struct
import unittest

import launcher

CONSOLE = 3
PROTECTIONS = {"random address, 64 bits of it": 0x20, "random address": 0x40, "data is not executed": 0x100}


@launcher.windows_only
class ProgramFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(launcher.PROGRAM, "rb") as file:
            cls.content = file.read()
        header = struct.unpack_from("<I", cls.content, 0x3C)[0]
        cls.optional_header = header + 24

    def test_it_is_a_64_bit_program_for_the_console(self):
        self.assertEqual(struct.unpack_from("<H", self.content, self.optional_header)[0], 0x20B)
        self.assertEqual(struct.unpack_from("<H", self.content, self.optional_header + 68)[0], CONSOLE)

    def test_it_is_protected(self):
        flags = struct.unpack_from("<H", self.content, self.optional_header + 70)[0]
        for name, bit in PROTECTIONS.items():
            self.assertTrue(flags & bit, name)

    def test_it_bears_the_version_of_this_source(self):
        with open(f"{launcher.SOURCE_DIRECTORY}/VERSION", encoding="ascii") as file:
            version = file.readline().strip()
        for key in ("FileVersion", "ProductVersion"):
            start = self.content.index((key + "\0").encode("utf-16-le"))
            shown = self.content[start:start + 80].decode("utf-16-le", "replace").removeprefix(key).lstrip("\0")
            self.assertEqual(shown.split("\0")[0], version)
        major, minor, patch = (int(number) for number in version.split("."))
        fixed = self.content.index(struct.pack("<II", 0xFEEF04BD, 0x10000))
        for offset in (8, 16):
            self.assertEqual(struct.unpack_from("<II", self.content, fixed + offset),
                             (major << 16 | minor, patch << 16))

    def test_the_manifest_asks_for_no_rights_and_changes_neither_code_page_nor_path_lengths(self):
        start = self.content.index(b"<assembly ")
        manifest = self.content[start:self.content.index(b"</assembly>", start)].decode()
        self.assertIn('level="asInvoker"', manifest)
        for setting in ("activeCodePage", "longPathAware"):
            self.assertNotIn(setting, manifest)

    def test_no_other_manifest_is_in_it(self):
        self.assertEqual(self.content.count(b"</assembly>"), 1)


if __name__ == "__main__":
    unittest.main()
