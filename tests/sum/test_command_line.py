# SPDX-License-Identifier: MIT
"""Options and complaints, under the program's own name and those of the tools, which are asked for the answers."""
import os
import subprocess
import unittest

from program import TOOLS, SumCase, native_only, posix_only

# Command lines that end without reading anything but the null device. Those of newer versions than the system's tools
# are in the unit tests.
LIKE_GNU = """
md5sum -c --tag x
md5sum --status x
md5sum --foo
md5sum --foo=1
md5sum -Q
md5sum --s
md5sum --t
md5sum --ta=1
md5sum --check=x
md5sum -c -b x
md5sum -c -t x
md5sum -c --tag --text x
md5sum --tag --text x
md5sum --text --tag /dev/null
md5sum -bt --tag /dev/null
md5sum -b /dev/null
md5sum --b /dev/null
md5sum -t /dev/null -b
md5sum -- -x
md5sum -h
md5sum --status --warn --quiet --strict --ignore-missing x
md5sum --warn --quiet --strict x
md5sum --quiet --strict x
md5sum --strict x
md5sum --wa x
md5sum -zc --warn
md5sum -bcz
md5sum /dev/null -
md5sum -z /dev/null nope
md5sum nope.txt no:pe 'no pe' it's ~x a#b
sha1sum /tmp nope
b2sum --tag -c -z
b2sum -l
b2sum -l 520
b2sum -l 521
b2sum -l -1
b2sum -l +8 /dev/null
b2sum -l 8k
b2sum -l 0x10
b2sum -l 99999999999999999999999
b2sum -l 16 --tag /dev/null
b2sum -l 512 --tag /dev/null
b2sum -l 0 --tag /dev/null
b2sum --l=8 /dev/null
cksum -a
cksum -l
cksum --length
cksum -a md5 -l 7 x
cksum -l 7 -a md5 x
cksum -a bsd --status x
cksum --zero --check
cksum -z x
cksum --untagged x
cksum -a md5 -a sha1 /dev/null
sum -x
sum -s /dev/null
sum -rs /dev/null
sum -s -r /dev/null
sum --sy /dev/null
sum /tmp
"""


class LikeGnu(SumCase):
    @posix_only
    @native_only
    def test_complaints_and_statuses_are_those_of_the_tools(self):
        environment = {**os.environ, "LC_ALL": "C"}
        for line in LIKE_GNU.strip().splitlines():
            tool, *arguments = line.split(" ")
            theirs = subprocess.run([tool, *arguments], cwd=self.scratch, env=environment, capture_output=True,
                                    stdin=subprocess.DEVNULL, check=False)
            with self.subTest(line):
                self.check(self.tool(tool, *arguments), theirs.stdout, theirs.stderr, theirs.returncode)


class Pages(SumCase):
    def test_help_names_the_tool_and_goes_to_standard_output(self):
        for tool in TOOLS:
            result = self.tool(tool, "--help") if os.name == "posix" else self.fyrnsum("--help")
            self.assertEqual((result.status, result.errors), (0, b""))
            self.assertIn(tool.encode() if os.name == "posix" else b"fyrnsum", result.output.splitlines()[0])

    def test_lines_of_the_help_fit_a_terminal(self):
        lines = self.fyrnsum("--help").output.decode().splitlines()
        self.assertEqual([line for line in lines if len(line) > 80], [])

    def test_the_version_is_that_of_the_library(self):
        self.assertRegex(self.fyrnsum("--version").output.decode(), r"\Afyrnsum \(fyrn\) \d+\.\d+\.\d+\n\Z")

    def test_functions_are_listed_and_each_name_works(self):
        lines = self.fyrnsum("--list-functions").output.decode().splitlines()
        self.assertGreaterEqual(len(lines), 43)
        for line in lines:
            name, bits, full = line.split()
            result = self.fyrnsum("-a", name, "--json", stdin=b"")
            self.assertEqual(result.status, 0, line)
            self.assertIn(f'"{name}":'.encode(), result.output)
            self.assertEqual(self.fyrnsum("-a", full, "--json", stdin=b""), result)
            self.assertEqual(len(self.fyrnsum("-a", name, "--raw", stdin=b"").output) * 8, int(bits), line)

    def test_debug_names_kernels(self):
        result = self.fyrnsum("--debug", "-j1", "-a", "md5,sha512", stdin=b"")
        self.assertEqual(result.status, 0)
        self.assertRegex(result.errors.decode(), r"\Afyrnsum: MD5: kernel \S.*\nSHA512: kernel \S.*\njobs: 1\n\Z")

    def test_no_environment_changes_a_line(self):
        self.write("f", b"x")
        plain = self.fyrnsum("f", "--tag", "-z")
        self.assertEqual(self.fyrnsum("f", "--tag", "-z", env={**os.environ, "POSIXLY_CORRECT": "1", "LC_ALL": "de_DE"}),
                         plain)


class Progress(SumCase):
    def test_it_is_shown_on_standard_error_when_asked_for(self):
        self.write("large", b"x" * 5000000)
        result = self.fyrnsum("--progress", "large")
        self.assertEqual(result.status, 0)
        self.assertRegex(result.errors.decode(), r"\Alarge  1/1 file  \d+\.\d KiB of 4\.7 MiB.*\n\Z")
        self.assertEqual(self.fyrnsum("--no-progress", "large").errors, b"")
        self.assertEqual(self.fyrnsum("large").errors, b"")


if __name__ == "__main__":
    unittest.main()
