#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lists that GNU's tools read: outputs, messages, totals and statuses are those of the tools of this system."""
import hashlib
import itertools
import shutil
import subprocess
import unittest

import program

A, B = b"one\n", b"two\n" * 300
SHA_A, SHA_B = (hashlib.sha256(data).hexdigest() for data in (A, B))
MD5_A = hashlib.md5(A).hexdigest()
B2_A = hashlib.blake2b(A).hexdigest()
B2_256_A = hashlib.blake2b(A, digest_size=32).hexdigest()

# For sha256sum. The names in them are shown alike by all versions.
LISTS = {
    "good": f"{SHA_A}  a\n{SHA_B}  b\n",
    "wrong": f"{SHA_B}  a\n{SHA_B}  b\n",
    "all wrong": f"{SHA_B}  a\n{SHA_A}  b\n",
    "missing": f"{SHA_A}  a\n{SHA_A}  none\n",
    "all missing": f"{SHA_A}  none\n{SHA_A}  nothing\n",
    "missing and wrong": f"{SHA_A}  none\n{SHA_B}  a\n",
    "missing and malformed": f"{SHA_A}  none\nx\n",
    "a directory": f"{SHA_A}  a\n{SHA_A}  dir\n",
    "below a file": f"{SHA_A}  a\n{SHA_A}  a/b\n",
    "malformed": f"x\n{SHA_A}  a\n\ny z\n",
    "only malformed": "x\ny\n",
    "empty": "",
    "blank lines": f"\n\n{SHA_A}  a\n\n",
    "only blank lines": "\n\n",
    "comments": f"# one\n{SHA_A}  a\n#{SHA_A}  none\n # not one\n",
    "carriage returns": f"{SHA_A}  a\r\n{SHA_B}  b\r\n",
    "no final line end": f"{SHA_A}  a\n{SHA_B}  b",
    "upper case": f"{SHA_A.upper()}  a\n",
    "star": f"{SHA_A} *a\n{SHA_B}  b\n",
    "one blank": f"{SHA_A} a\n{SHA_B} b\n",
    "two blanks, then one": f"{SHA_A}  a\n{SHA_B} b\n",
    "one letter": f"{SHA_A} a\n{SHA_A} none\n",
    "tab": f"{SHA_A}\ta\n{SHA_B}\tb\n",
    "indented": f"  {SHA_A}  a\n\t{SHA_B}  b\n",
    "name alone": "a\n",
    "digest alone": f"{SHA_A}\n{SHA_B}  b\n",
    "digest and blank": f"{SHA_A} \n{SHA_B}  b\n",
    "digest too short": f"{SHA_A[1:]}  a\n{SHA_B}  b\n",
    "digest too long": f"{SHA_A}0  a\n{SHA_B}  b\n",
    "no digits": f"{SHA_A[:-1]}g  a\n{SHA_B}  b\n",
    "bad escape": f"\\{SHA_A}  a\\x\n{SHA_B}  b\n",
    "cut escape": f"\\{SHA_A}  a\\\n{SHA_B}  b\n",
    "needless escape": f"\\{SHA_A}  a\n",
    "tags": f"SHA256 (a) = {SHA_A}\nSHA256 (b) = {SHA_B}\n",
    "tags without blanks": f"SHA256(a)= {SHA_A}\n",
    "tags with many blanks": f"SHA256 (a)  =  {SHA_A}\n",
    "tags and not": f"SHA256 (a) = {SHA_A}\n{SHA_B}  b\n",
    "two blanks in a tag": f"SHA256  (a) = {SHA_A}\nSHA256 (b) = {SHA_B}\n",
    "lower case tag": f"sha256 (a) = {SHA_A}\nSHA256 (b) = {SHA_B}\n",
    "another tag": f"MD5 (a) = {MD5_A}\nSHA256 (b) = {SHA_B}\n",
    "only another tag": f"MD5 (a) = {MD5_A}\n",
    "cut tags": f"SHA256\nSHA256 \nSHA256 (\nSHA256 (a\nSHA256 (a)\nSHA256 (a) =\nSHA256 (a) = 1\nSHA256 (b) = {SHA_B}\n",
    "blank after a tagged digest": f"SHA256 (a) = {SHA_A} \nSHA256 (b) = {SHA_B}\n",
    "other lists": f"a E8B7BE43\n1 2 a\nsha256:{SHA_A}  a\n; {SHA_A}  a\n{SHA_B}  b\n",
}

# What cannot be the same under the name fyrnsum, because more is read there.
READ_BY_FYRNSUM_ONLY = {"two blanks in a tag", "lower case tag", "other lists", "one letter"}

MODES = [(), ("--quiet",), ("--status",), ("--strict",), ("--warn",), ("-w", "--status"), ("--status", "--warn"),
         ("--quiet", "--warn"), ("--warn", "--quiet"), ("--ignore-missing",), ("--ignore-missing", "--quiet"),
         ("--ignore-missing", "--status"), ("--ignore-missing", "--strict", "--warn")]


def gnu(name):
    """The tool of this system, if it is GNU's."""
    path = shutil.which(name)
    if not path:
        return None
    version = subprocess.run([path, "--version"], capture_output=True, check=False).stdout
    return path if b"GNU coreutils" in version else None


@unittest.skipIf(program.WINDOWS or program.LAUNCHER, "compares with tools of this system")
@unittest.skipUnless(gnu("sha256sum") and gnu("cksum") and gnu("b2sum"), "needs GNU coreutils")
class AsGnu(program.SumCase):

    def setUp(self):
        super().setUp()
        self.write("a", A)
        self.write("b", B)
        self.write("dir/file")

    def compare(self, tool, *arguments, own=None, **options):
        """The same from the tool, from this program under its name and, if `own` options are given, under its own."""
        expected = program.run_command([gnu(tool), *arguments], directory=self.scratch, env={"LC_ALL": "C"}, **options)
        # The tool names itself as it was called.
        expected.errors = expected.errors.replace(gnu(tool).encode() + b":", tool.encode() + b":")
        self.assertEqual(self.tool(tool, *arguments, **options), expected)
        if own is not None:
            expected.errors = expected.errors.replace(tool.encode() + b":", b"fyrnsum:")
            self.assertEqual(self.fyrnsum(*own, *arguments, **options), expected)

    def test_lists_and_modes(self):
        for (name, text), mode in itertools.product(LISTS.items(), MODES):
            self.write("list", text.encode())
            own = None if name in READ_BY_FYRNSUM_ONLY else ("-a", "sha256")
            with self.subTest(list=name, mode=mode):
                self.compare("sha256sum", "-c", *mode, "list", own=own)

    def test_standard_input(self):
        for name in ("good", "malformed", "only malformed", "all missing"):
            for mode in ((), ("--warn",), ("--ignore-missing",)):
                for operands in ((), ("-",)):
                    with self.subTest(list=name, mode=mode, operands=operands):
                        self.compare("sha256sum", "-c", *mode, *operands, own=("-a", "sha256"), stdin=LISTS[name].encode())

    def test_several_lists(self):
        for name in ("good", "wrong", "malformed"):
            self.write(name, LISTS[name].encode())
        self.write("x y", b"")
        for lists in (("good", "wrong"), ("good", "none", "good"), ("dir", "good"), ("x y", "good"), ("good", "malformed")):
            for mode in ((), ("--strict", "--warn")):
                with self.subTest(lists=lists, mode=mode):
                    self.compare("sha256sum", "-c", *mode, *lists, own=("-a", "sha256"))

    def test_standard_input_among_the_files(self):
        self.write("list", f"{SHA_A}  -\n{SHA_B}  b\n".encode())
        self.compare("sha256sum", "-c", "list", own=("-a", "sha256"), stdin=A)

    def test_digests_of_b2sum_have_any_length(self):
        self.write("list", f"{B2_A}  a\n{B2_256_A}  a\nBLAKE2b (a) = {B2_A}\nBLAKE2b-256 (a) = {B2_256_A}\n"
                           f"{B2_A}0  a\n{B2_A[1:]}  a\n{B2_A}00  a\n".encode())
        for mode in ((), ("--warn",), ("-l", "256"), ("-l", "256", "--warn")):
            with self.subTest(mode=mode):
                self.compare("b2sum", "-c", *mode, "list")

    def test_tags_tell_cksum_the_function(self):
        self.write("list", f"MD5 (a) = {MD5_A}\nSHA256 (b) = {SHA_B}\nBLAKE2b-256 (a) = {B2_256_A}\nSHA256 (a) = {SHA_B}\n"
                           f"{SHA_A}  a\n3 4 a\nNONE (a) = {MD5_A}\nCRC (a) = 12345678\n".encode())
        for mode in ((), ("--strict",), ("-a", "sha256"), ("-a", "md5", "--warn"), ("-a", "sha256", "--strict")):
            with self.subTest(mode=mode):
                self.compare("cksum", "-c", *mode, "list")

    def test_the_oldest_checksums_have_no_lists(self):
        self.write("list", b"3 4 a\n")
        for name in ("crc", "bsd", "sysv"):
            self.compare("cksum", "-a", name, "-c", "list")


if __name__ == "__main__":
    unittest.main()
