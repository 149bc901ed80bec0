#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What decides about a whole list: its function, its name, the directory of its files, and how results are told."""
import hashlib
import os
import re
import shutil
import subprocess
import unittest

from checking import CheckCase, DIFFERENT, MALFORMED, UNREAD, crc32, digest_of, warning
from program import PROGRAM, native_only, posix_only


def shake128(data, size):
    return hashlib.shake_128(data).hexdigest(size)


def blake2b(data, size):
    return hashlib.blake2b(data, digest_size=size).hexdigest()


class Functions(CheckCase):
    def setUp(self):
        super().setUp()
        self.write("a", b"alpha")
        self.write("b", b"beta")

    def list_of(self, digest, *names):
        lines = "".join(f"{digest(self.read(name))}  {name}\n" for name in names or ("a", "b"))
        self.write("list", lines.encode())

    def test_a_guess_is_told_unless_it_is_the_common_function(self):
        for digest, told in ((lambda data: digest_of("sha3_384", data), "SHA3-384"),
                             (lambda data: blake2b(data, 64), "BLAKE2b"),
                             (lambda data: shake128(data, 16), "SHAKE128"),
                             (lambda data: digest_of("sha256", data), None),
                             (crc32, None)):
            self.list_of(digest)
            note = f"fyrnsum: list: nothing tells the function; the digests are of {told}\n" if told else ""
            with self.subTest(function=told):
                self.assert_check(["list"], 0, "a: OK\nb: OK\n", note)
                self.assert_check(["--status", "list"], 0, "", "")

    def test_the_first_file_that_can_be_read_decides(self):
        digests = [digest_of("sha3_256", self.read(name)) for name in "ab"]
        self.write("list", f"{digests[0]}  none\n{digests[0]}  a\n{digests[1]}  b\n".encode())
        self.assert_check(["list"], 1, "none: FAILED open or read\na: OK\nb: OK\n",
                          "fyrnsum: none: No such file or directory\n"
                          "fyrnsum: list: nothing tells the function; the digests are of SHA3-256\n" + warning(1, UNREAD))
        # Here it is not as listed, so that the common function stays.
        self.write("list", f"{digests[1]}  a\n{digests[1]}  b\n".encode())
        self.assert_check(["list"], 1, "a: FAILED\nb: FAILED\n", warning(2, DIFFERENT))

    def test_standard_input_is_read_once_for_all_functions(self):
        self.write("list", f"{digest_of('sha3_256', b'x')}  -\n".encode())
        self.assert_check(["list"], 0, "-: OK\n",
                          "fyrnsum: list: nothing tells the function; the digests are of SHA3-256\n", stdin=b"x")

    def test_the_name_of_the_list_tells_the_function(self):
        for name, digest in (("SHA3SUMS", lambda data: digest_of("sha3_512", data)),
                             ("manifest-sha3-224.txt", lambda data: digest_of("sha3_224", data)),
                             ("B2SUMS", lambda data: blake2b(data, 25)), ("a.blake2b", lambda data: blake2b(data, 32))):
            self.list_of(digest)
            os.rename(self.path("list"), self.path(name))
            with self.subTest(list=name):
                self.assert_check([name], 0, "a: OK\nb: OK\n", "")

    def test_named_functions_only(self):
        self.list_of(lambda data: digest_of("sha3_256", data))
        self.assert_check(["-a", "sha256", "list"], 1, "a: FAILED\nb: FAILED\n", warning(2, DIFFERENT))
        self.assert_check(["-a", "sha512", "list"], 1, "", "fyrnsum: list: no properly formatted checksum lines found\n")
        self.assert_check(["-a", "sha256,sha3-256", "list"], 0, "a: OK\nb: OK\n",
                          "fyrnsum: list: nothing tells the function; the digests are of SHA3-256\n")

    def test_several_digests_of_a_file_are_all_checked(self):
        head = "%%%% HASHDEEP-1.0\n%%%% size,md5,sha256,filename\n"
        md5, sha256 = (digest_of(name, b"alpha") for name in ("md5", "sha256"))
        other = digest_of("md5", b"other")
        for row, good in ((f"5,{md5},{sha256},a", True), (f"5,{other},{sha256},a", False), (f"5,{sha256[:32]},{sha256},a", False),
                          (f"5,{md5},{digest_of('sha256', b'other')},a", False), (f"6,{md5},{sha256},a", False)):
            self.write("list", (head + row + "\n").encode())
            with self.subTest(row=row):
                self.assert_check(["list"], 0 if good else 1, "a: OK\n" if good else "a: FAILED\n",
                                  "" if good else warning(1, DIFFERENT))
        self.write("list", (head + f"5,{other},{sha256},a\n").encode())
        self.assert_check(["-a", "sha256", "list"], 0, "a: OK\n", "")

    def test_sizes_are_checked_beside_digests(self):
        digest = digest_of("sha256", b"alpha")
        self.write("list", f"         5  {digest}  a\n         6  {digest}  a\nSIZE (a) = 5\nSIZE (a) = 6\n".encode())
        self.assert_check(["list"], 1, "a: OK\na: FAILED\na: OK\na: FAILED\n", warning(2, DIFFERENT))

    def test_an_unknown_function_is_told_and_no_success(self):
        digest = digest_of("sha256", b"alpha")
        self.write("list", f"SHA256 (a) = {digest}\nTTH (a) = {digest}\nTTH (b) = {digest}\nnone:{digest}  a\n".encode())
        self.assert_check(["list"], 1, "a: OK\n", "fyrnsum: list: unknown function 'TTH', first in line 2\n"
                          "fyrnsum: list: unknown function 'none', first in line 4\n" + warning(3, MALFORMED))

    @native_only
    def test_no_file_but_one_is_read_twice(self):
        if not shutil.which("strace"):
            self.skipTest("needs strace")
        wrong = digest_of("sha256", b"other")
        self.write("list", f"{wrong}  a\n{wrong}  b\n".encode())
        done = subprocess.run(["strace", "-f", "-e", "trace=openat", "-o", self.path("trace"), PROGRAM, "-c", "list"],
                              cwd=self.scratch, capture_output=True, check=False)
        if not os.path.exists(self.path("trace")) or b"ptrace" in done.stderr:
            self.skipTest("strace may not trace here")
        opened = re.findall(rb'openat\([^"]*"([ab])"', self.read("trace"))
        self.assertEqual(sorted(opened), [b"a", b"a", b"b"])


class Names(CheckCase):
    def test_records_that_end_with_nul_lose_no_file(self):
        self.write("a", b"1")
        self.write("b", b"2")
        self.write("list", self.fyrnsum("-z", "a", "b").output)
        self.assert_check(["list"], 0, "a: OK\nb: OK\n", "")

    def test_a_digest_alone_is_of_the_file_that_the_list_is_named_after(self):
        digest = digest_of("sha512", b"image")
        self.write("d/disk.iso", b"image")
        self.write("d/disk.iso.sha512", digest.encode())
        self.write("d/none", digest.encode())
        self.write("d/two.sha512", f"{digest}\n{digest}\n".encode())
        self.assert_check(["d/disk.iso.sha512"], 0, "d/disk.iso: OK\n", "")
        self.assert_check(["-C", "d", "d/disk.iso.sha512"], 0, "disk.iso: OK\n", "")
        nothing = "no properly formatted checksum lines found\n"
        self.assert_check(["d/none"], 1, "", f"fyrnsum: d/none: {nothing}")
        self.assert_check(["d/two.sha512"], 1, "", f"fyrnsum: d/two.sha512: {nothing}")
        self.assert_check(["-"], 1, "", f"fyrnsum: 'standard input': {nothing}", stdin=digest.encode())

    def test_names_are_relative_to_the_directory_that_is_named(self):
        self.write("x/y/a", b"1")
        self.write("x/-", b"1")
        digest = digest_of("sha256", b"1")
        self.write("list", f"{digest}  y/a\n{digest}  {self.path('x/y/a')}\n".encode())
        self.assert_check(["-C", "x", "list"], 0, f"y/a: OK\n{self.path('x/y/a')}: OK\n", "")
        self.assert_check(["--directory=none", "list"], 1, f"y/a: FAILED open or read\n{self.path('x/y/a')}: OK\n",
                          "fyrnsum: y/a: No such file or directory\n" + warning(1, UNREAD))

    def test_of_a_name_only_the_last_component(self):
        self.write("a", b"1")
        self.write("x/a", b"1")
        self.write("-", b"1")
        digest = digest_of("sha256", b"1")
        self.write("list", f"{digest}  /far/away/a\n{digest}  ./-\n".encode())
        self.assert_check(["--basename", "list"], 0, "/far/away/a: OK\n./-: OK\n", "")
        self.assert_check(["--basename", "-C", "x", "list"], 1, "/far/away/a: OK\n./-: FAILED open or read\n",
                          "fyrnsum: ./-: No such file or directory\n" + warning(1, UNREAD))

    def test_aligned_names(self):
        self.write("a", b"1")
        self.write(" b", b"2")
        self.write("b", b"3")
        self.write("list", f"{digest_of('md5', b'1')}     a\n{digest_of('md5', b'2')}   b\n".encode())
        self.assert_check(["list"], 0, "a: OK\n' b': OK\n", "")

    def test_percent_codes_belong_to_bags(self):
        self.write("100%", b"1")
        self.write("100%25", b"2")
        lines = f"{digest_of('sha256', b'1')}  100%25\n".encode()
        self.write("manifest-sha256.txt", lines)
        self.assert_check(["manifest-sha256.txt"], 1, "100%25: FAILED\n", warning(1, DIFFERENT))
        self.write("bagit.txt")
        self.assert_check(["manifest-sha256.txt"], 0, "100%: OK\n", "")
        self.write("list", lines)
        self.assert_check(["list"], 1, "100%25: FAILED\n", warning(1, DIFFERENT))

    @posix_only
    def test_no_escape_sequence_reaches_a_terminal(self):
        names = ["\x1b]0;title\x07", "a\u202eb", "\udcff", "it's", "a\rb", "\u00e9"]
        for name in names:
            self.write(name, b"1")
        lines = b"".join(digest_of("md5", b"1").encode() + b"  " + os.fsencode(name) + b"\n" for name in names)
        self.write("list", lines)
        result = self.fyrnsum("-c", "list")
        self.assertEqual(result.status, 0)
        self.assertEqual(result.output.count(b": OK\n"), len(names))
        self.assertFalse(set(result.output) & (set(range(32)) - {10}))
        self.assertNotIn("\u202e".encode(), result.output)
        self.assertNotIn(b"\xff", result.output)
        self.assertIn("\u00e9: OK\n".encode(), result.output)
        # A shell reads the names back.
        shown = [line.removesuffix(b": OK") for line in result.output.splitlines()]
        read = subprocess.run(["bash", "-c", b"printf '%s\\0' " + b" ".join(shown)], capture_output=True, check=True).stdout
        self.assertEqual(read.split(b"\0")[:-1], [os.fsencode(name) for name in names])

    @posix_only  # Windows says of a name with a quotation mark that it is invalid
    def test_results_as_json(self):
        self.write("a", b"1")
        self.write("list", (f"{digest_of('md5', b'1')}  a\n{digest_of('md5', b'2')}  a\n"
                            f"{digest_of('md5', b'2')}  \"n\n").encode())
        self.assert_check(["--json", "list"], 1, '{"path":"a","result":"OK"}\n{"path":"a","result":"FAILED"}\n'
                          '{"path":"\\"n","result":"FAILED open or read"}\n',
                          "fyrnsum: '\"n': No such file or directory\n" + warning(1, UNREAD) + warning(1, DIFFERENT))

    def test_jobs_change_nothing(self):
        lines = []
        for i in range(300):
            data = os.urandom(i * 7 % 900)
            self.write(f"f{i}", data)
            lines.append(["x", f"{digest_of('sha256', data)}  f{i}", f"{digest_of('sha256', b'')}  f{i}",
                          f"{digest_of('md5', data)}  f{i}", f"{digest_of('md5', data)}  none{i}"][i % 5])
        self.write("list", "\n".join(lines).encode())
        one = self.fyrnsum("-c", "-w", "-j1", "list")
        self.assertEqual(one.output.count(b"\n"), 240)
        for jobs in ("-j2", "-j7"):
            self.assertEqual(self.fyrnsum("-c", "-w", jobs, "list"), one)


if __name__ == "__main__":
    unittest.main()
