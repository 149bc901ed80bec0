#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lists that nobody should have written: no crash, no hang, bounded memory, and every line is accounted for."""
import os
import random
import re
import subprocess
import unittest

from checking import CheckCase, UNREAD, digest_of, warning
from program import INSTRUMENTED, PROGRAM, WINDOWS, native_only, posix_only

if not WINDOWS:
    import resource

TOTALS = {"malformed": r"WARNING: (\d+) lines? (?:is|are) improperly formatted",
          "unread": r"WARNING: (\d+) listed files? could not be read",
          "different": r"WARNING: (\d+) computed checksums? did NOT match"}


class Hostile(CheckCase):
    def totals(self, result):
        """How many lines were good, and how many each of the other things, as the run tells them."""
        errors = result.errors.decode(errors="surrogateescape")
        counts = {name: int(found[1]) if (found := re.search(pattern, errors)) else 0 for name, pattern in TOTALS.items()}
        counts["good"] = len(re.findall(rb": OK\n", result.output))
        self.assertEqual(len(re.findall(rb": FAILED\n", result.output)), counts["different"])
        self.assertEqual(len(re.findall(rb": FAILED open or read\n", result.output)), counts["unread"])
        return counts

    def test_cut_lines_are_all_accounted_for(self):
        self.write("a", b"1")
        digest = digest_of("sha256", b"1")
        for whole in (f"SHA256 (a) = {digest}", f"{digest}  a", f"a  {digest}", "\\" + f"{digest}  a\\\\", f"1  {digest}  a",
                      f"sha256:{digest}  a", "SIZE (a) = 1", "TAG (", "3 1 a", "a 1234abcd"):
            lines = [whole[:length] for length in range(1, len(whole) + 1) if whole[:length].strip()]
            self.write("list", "\n".join([f"{digest}  a", *lines, f"{digest}  a"]).encode())
            result = self.fyrnsum("-c", "list")
            with self.subTest(line=whole):
                self.assertEqual(sum(self.totals(result).values()), len(lines) + 2, result)

    def test_random_lines_are_all_accounted_for(self):
        self.write("a", b"1")
        digest = digest_of("sha256", b"1")
        pieces = [digest, digest[:-1], "  ", " ", " *", "\t", "a", "none", "(", ")", " = ", "SHA256 ", "MD5", "\\", "\\n", "=",
                  "6", "12345678", ",", "\x01", "\x1b[1m", "é", "==", "QUJD", ":", "/", "XXH3_", "SIZE", "%0A", "-"]
        source = random.Random(9)
        for _ in range(40):
            lines = ["".join(source.choices(pieces, k=source.randrange(1, 7))) for _ in range(50)]
            lines = [line for line in lines if line.strip() and line[0] not in "#;"]
            self.write("list", "\n".join([f"{digest}  a", *lines, f"{digest}  a"]).encode())
            result = self.fyrnsum("-c", "list")
            self.assertEqual(sum(self.totals(result).values()), len(lines) + 2, (lines, result))

    @posix_only
    def test_what_is_no_stored_file_is_not_read(self):
        os.mkfifo(self.path("fifo"))
        os.mkdir(self.path("dir"))
        digest = digest_of("sha256", b"")
        names = ("fifo", "dir", "/dev/zero", "/dev/null")
        self.write("list", "".join(f"{digest}  {name}\n" for name in names).encode())
        self.assert_check(["list"], 1, "fifo: FAILED open or read\ndir: FAILED open or read\n"
                          "/dev/zero: FAILED open or read\n/dev/null: OK\n",
                          "fyrnsum: fifo: Operation not supported\nfyrnsum: dir: Is a directory\n"
                          "fyrnsum: /dev/zero: Operation not supported\n" + warning(3, UNREAD), timeout=20)

    @posix_only
    def test_a_list_may_be_a_pipe_but_a_directory_is_none(self):
        self.write("a", b"1")
        line = f"{digest_of('sha256', b'1')}  a\n".encode()
        os.mkfifo(self.path("fifo"))
        with subprocess.Popen(["sh", "-c", "cat > fifo"], cwd=self.scratch, stdin=subprocess.PIPE) as writer:
            writer.stdin.write(line)
            writer.stdin.close()
            self.assert_check(["fifo"], 0, "a: OK\n", "", timeout=20)
        os.mkdir(self.path("dir"))
        self.assert_check(["dir"], 1, "", "fyrnsum: dir: read error\n")

    def test_a_list_that_names_itself(self):
        self.write("list", f"{digest_of('sha256', b'')}  list\n".encode())
        self.assert_check(["list"], 1, "list: FAILED\n", "fyrnsum: WARNING: 1 computed checksum did NOT match\n")
        line = f"{digest_of('sha256', b'')}  -\n".encode()
        self.assert_check(["-"], 1, "-: FAILED open or read\n-: FAILED open or read\n",
                          2 * "fyrnsum: -: standard input is the list\n" + warning(2, UNREAD), stdin=2 * line)

    def test_control_characters(self):
        digest = digest_of("sha256", b"1")
        lines = b"".join(b"%c\n%s  %c\n" % (code, digest.encode(), code) for code in range(1, 32) if code not in (9, 10, 13))
        self.write("list", lines)
        result = self.fyrnsum("-c", "list")
        self.assertEqual(self.totals(result), {"malformed": 28, "unread": 28, "different": 0, "good": 0})

    def test_cut_utf16(self):
        self.write("a", b"1")
        text = f"\ufeff{digest_of('sha256', b'1')}  a\nx".encode("utf-16-le")
        self.write("list", text[:-1])
        self.assert_check(["list"], 0, "a: OK\n", "fyrnsum: WARNING: 1 line is improperly formatted\n")
        self.write("list", b"\xff\xfe\x00")
        self.assert_check(["list"], 1, "", "fyrnsum: list: no properly formatted checksum lines found\n")

    def bounded(self, write, *options):
        """Checks what `write` writes into a pipe, with little memory at the program's disposal."""
        limit = (96 if "-j1" in options else 400) << 20 # a thread reserves more than it uses
        with subprocess.Popen([PROGRAM, "-c", *options], cwd=self.scratch, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit))) as process:
            write(process.stdin)
            output, errors = process.communicate(timeout=120)
        return process.returncode, output, errors

    @native_only
    @unittest.skipIf(INSTRUMENTED, "sanitizers take memory of their own")
    def test_long_lines_and_long_lists_take_bounded_memory(self):
        self.write("a", b"1")
        good = f"{digest_of('sha256', b'1')}  a\n".encode()

        def long_line(pipe):
            pipe.write(good)
            for _ in range(100):
                pipe.write(b"x" * (1 << 20))
            pipe.write(b"\n" + good)
        self.assertEqual(self.bounded(long_line, "-j1"),
                         (0, b"a: OK\na: OK\n", b"fyrnsum: WARNING: 1 line is improperly formatted\n"))

        def many_lines(pipe):
            pipe.write(good)
            for _ in range(100):
                pipe.write(b"0 x\n" * 100_000)
            pipe.write(good)
        for options in (("-j1",), ("-j1", "-a", "sha256"), ("-j2", "-a", "sha256")):
            self.assertEqual(self.bounded(many_lines, *options),
                             (0, b"a: OK\na: OK\n", b"fyrnsum: WARNING: 10000000 lines are improperly formatted\n"))

        def many_functions(pipe):
            pipe.write(good)
            for i in range(300_000):
                pipe.write(b"none%d (a) = 1234\n" % i)
        status, _, errors = self.bounded(many_functions, "-j1")
        self.assertEqual(status, 1)
        self.assertIn(b"unknown function 'none0', first in line 2\n", errors)
        self.assertLess(errors.count(b"\n"), 30)


if __name__ == "__main__":
    unittest.main()
