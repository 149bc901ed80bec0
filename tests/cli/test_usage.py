# SPDX-License-Identifier: MIT
"""The text that is printed when no hash function is selected."""
import re
import unittest

import launcher


class Usage(launcher.ScratchCase):
    def golden(self, invocation):
        with open(f"{launcher.SOURCE_DIRECTORY}/tests/data/usage.txt", "rb") as file:
            return file.read().replace(b"%s", invocation)

    def check_usage(self, *arguments):
        result = self.fyrn(*arguments)
        output = result.output.replace(b"\r\n", b"\n")
        body, banner = output[:-1].rsplit(b"\n", 1)
        self.assertEqual(body, self.golden(launcher.shown(launcher.PROGRAM).encode()))
        self.assertRegex(banner, rb"^fyrn \d+\.\d+\.\d+ \(\d{4}-\d\d-\d\d\)$")
        self.assertTrue(output.endswith(b")\n"))

    def test_no_arguments(self):
        self.check_usage()

    def test_only_targets(self):
        self.write("a.txt", b"abc")
        self.check_usage("a.txt", "nothing", "*")

    def test_only_unknown_hash_names(self):
        self.check_usage("-hash=", "-hash=MD55", "-hash=MD", "-hash= MD5", "-hash=ALL ")

    def test_other_options_select_nothing(self):
        self.check_usage("-rename", "-subdirs", "-verbosity=3", "-poly16=0x1021", "-salt=a", "-salttype=both")

    def test_files_are_not_touched(self):
        self.write("a.txt", b"abc")
        self.check_usage("-rename", "a.txt")
        self.assertEqual(self.names(), ["a.txt"])

    def test_banner_is_the_version_of_this_source(self):
        with open(f"{launcher.SOURCE_DIRECTORY}/VERSION", encoding="ascii") as file:
            version = file.readline().strip()
        self.assertRegex(self.fyrn().output, rb"\nfyrn " + re.escape(version.encode()) + rb" \(")

    def test_not_printed_for_an_unknown_option(self):
        result = self.fyrn("-hash=MD5", "-unknown", "-verbosity=9", "-hash=none")
        self.assert_lines(result, "Hashes: MD5 ", "")


if __name__ == "__main__":
    unittest.main()
