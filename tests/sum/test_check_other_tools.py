#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lists that other programs wrote just now: every file in them is found, and every changed one."""
import os
import shutil
import subprocess
import unittest

from checking import CheckCase, MALFORMED, warning
from program import LAUNCHER, WINDOWS

FYRN = os.environ.get("FYRN_PROGRAM", "")
FILES = {"a": b"alpha\n", "b c": b"beta" * 1000, "d": b"", "large": bytes(range(256)) * 2305, "x) = y": b"closing"}

# Each writes a list of the files "$@" to standard output.
COMMANDS = {
    "sha256sum": "sha256sum \"$@\"", "sha512sum, binary": "sha512sum -b \"$@\"", "md5sum with tags": "md5sum --tag \"$@\"",
    "sha1sum -z": "sha1sum -z \"$@\"", "b2sum": "b2sum \"$@\"", "b2sum of 256 bits": "b2sum -l 256 \"$@\"",
    "b2sum of 200 bits with tags": "b2sum -l 200 --tag \"$@\"", "cksum": "cksum \"$@\"", "cksum -a sm3": "cksum -a sm3 \"$@\"",
    "cksum -a sha384 untagged": "cksum -a sha384 --untagged \"$@\"", "cksum -a blake2b": "cksum -a blake2b -l 128 \"$@\"",
    "openssl": "openssl dgst \"$@\"", "openssl sha3": "openssl dgst -sha3-384 \"$@\"", "openssl -r": "openssl dgst -r \"$@\"",
    "openssl shake": "openssl dgst -shake256 \"$@\"", "openssl blake2": "openssl dgst -blake2b512 \"$@\"",
    "openssl sha512-256": "openssl dgst -sha512-256 \"$@\"",
    "shasum": "shasum \"$@\"", "shasum -a 512256": "shasum -a 512256 --tag \"$@\"", "shasum -a 384": "shasum -b -a 384 \"$@\"",
    "rhash SFV": "rhash --sfv -C \"$@\"", "rhash SHA-256": "rhash --sha256 \"$@\"", "rhash with tags": "rhash --bsd -M -W --sha3-224 \"$@\"",
    "rhash base64": "rhash --base64 --sha1 \"$@\"", "rhash upper case": "rhash --uppercase --tiger \"$@\"",
    "rhash md4": "rhash --md4 \"$@\"", "rhash RIPEMD-160": "rhash --bsd --ripemd160 \"$@\"",
    "rhash whirlpool": "rhash --whirlpool \"$@\"",
    "hashdeep": "hashdeep -l \"$@\"", "hashdeep of three": "hashdeep -l -c sha1,tiger,whirlpool \"$@\"",
    "sha256deep": "sha256deep -l \"$@\"", "md5deep with sizes": "md5deep -l -z \"$@\"",
    "b3sum": "b3sum \"$@\"", "xxhsum": "xxhsum \"$@\"", "xxhsum -H3": "xxhsum -H3 \"$@\"",
    "xxhsum with tags": "xxhsum -H2 --tag \"$@\"", "xxhsum -H0": "xxhsum -H0 \"$@\"", "xxhsum -H2": "xxhsum -H2 \"$@\"",
    "xxhsum in the opposite order": "xxhsum --little-endian \"$@\"",
    "xxhsum -H3 in the opposite order": "xxhsum -H3 --little-endian \"$@\"",
    "xxhsum -H0 in the opposite order": "xxhsum -H0 --tag --little-endian \"$@\"",
    "fyrn": "\"$FYRN_PROGRAM\" -hash=SHA2-256 \"$@\"",
    "fyrn, all paths and functions": "\"$FYRN_PROGRAM\" -verbosity=3 -hash=ALL \"$@\"",
}


@unittest.skipIf(WINDOWS or LAUNCHER, "compares with tools of this system")
class OtherTools(CheckCase):
    def setUp(self):
        super().setUp()
        for name, content in FILES.items():
            self.write(name, content)

    def lists(self):
        """The name of each command whose program is there, with what it wrote."""
        for name, command in COMMANDS.items():
            tool = command.split()[0]
            if tool == "\"$FYRN_PROGRAM\"":
                tool = FYRN
            if not shutil.which(tool):
                self.left_out.append(name)
                continue
            done = subprocess.run(["sh", "-c", command, "sh", *FILES], cwd=self.scratch, capture_output=True, check=True,
                                  env={**os.environ, "LC_ALL": "C"})
            yield name, done.stdout

    def test_every_file_in_every_list(self):
        self.left_out = []
        lists = dict(self.lists())
        self.assertGreater(len(lists), 10)
        for name, content in lists.items():
            self.write("list", content)
            result = self.fyrnsum("-c", "list")
            with self.subTest(list=name, content=content):
                self.assertEqual(result.status, 0, result)
                self.assertGreaterEqual(result.output.count(b": OK\n"), len(FILES))
                self.assertEqual(result.output.count(b": OK\n"), result.output.count(b"\n"))
                self.assertNotIn(b"WARNING", result.errors)
        self.write("b c", b"betA" * 1000)
        for name, content in lists.items():
            self.write("list", content)
            result = self.fyrnsum("-c", "list")
            with self.subTest(list=name, changed="b c"):
                self.assertEqual(result.status, 1)
                self.assertRegex(result.output.decode(), r"b c': FAILED\n")
                self.assertIn("did NOT match", result.errors.decode())
        if self.left_out:
            print("not tried, because a program is not there:", ", ".join(self.left_out))

    def test_lists_of_functions_that_are_not_known_lose_nothing(self):
        if not shutil.which("rhash"):
            self.skipTest("needs rhash")
        done = subprocess.run(["rhash", "--bsd", "--sha256", "--btih", "a", "d"], cwd=self.scratch, capture_output=True, check=True)
        self.write("list", done.stdout)
        self.assert_check(["list"], 1, "a: OK\nd: OK\n", "fyrnsum: list: unknown function 'BTIH', first in line 1\n"
                          + warning(2, MALFORMED))


if __name__ == "__main__":
    unittest.main()
