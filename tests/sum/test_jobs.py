#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Any number of jobs gives the same bytes in the same order."""
import hashlib
import os
import random
import unittest

from program import SumCase, native_only, posix_only

COUNT = 300


class Jobs(SumCase):
    def setUp(self):
        super().setUp()
        self.random = random.Random(20261121)
        self.contents = {}
        for number in range(COUNT):
            size = self.random.choice((0, 1, 64, 1000, self.random.randrange(70_000), self.random.randrange(400_000)))
            self.contents[f"d{number % 7}/f{number:03}"] = self.random.randbytes(size)
        for name, content in self.contents.items():
            self.write(name, content)
        self.names = sorted(self.contents)

    def lines(self, function):
        return "".join(f"{hashlib.new(function, self.contents[name]).hexdigest()}  {name}\n" for name in self.names)

    def test_every_number_of_jobs_prints_the_same_lines(self):
        for function in ("md5", "sha1", "sha256", "sha512", "sha3_256", "blake2b"):
            for jobs in (1, 2, 16, 64):
                with self.subTest(function=function, jobs=jobs):
                    self.check(self.fyrnsum("-a", function, f"-j{jobs}", *self.names), self.lines(function))

    def test_several_functions_come_from_one_reading_in_their_order(self):
        expected = "".join(f"{tag} ({name}) = {hashlib.new(function, self.contents[name]).hexdigest()}\n"
                           for name in self.names
                           for tag, function in (("SHA512", "sha512"), ("MD5", "md5")))
        for jobs in (1, 3):
            self.check(self.fyrnsum("-a", "sha512,md5", f"-j{jobs}", *self.names), expected)

    def test_files_that_cannot_be_read_keep_their_place(self):
        names = [part for name in self.names for part in (name, name + ".gone")]
        errors = "".join(f"fyrnsum: {name}.gone: No such file or directory\n" for name in self.names)
        for jobs in (1, 16):
            with self.subTest(jobs=jobs):
                self.check(self.fyrnsum("-a", "md5", f"-j{jobs}", *names), self.lines("md5"), errors, status=1)

    @posix_only
    def test_a_pipe_among_the_files_is_read_to_its_end(self):
        os.mkfifo(self.path("pipe"))
        for jobs in (1, 4):
            with self.subTest(jobs=jobs):
                child = os.fork()
                if child == 0:
                    with open(self.path("pipe"), "wb") as pipe:
                        pipe.write(b"x" * 1_000_000)
                    os._exit(0)
                names = [*self.names[:20], "pipe", *self.names[20:]]
                lines = self.lines("md5").splitlines(True)
                lines.insert(20, f"{hashlib.md5(b'x' * 1_000_000).hexdigest()}  pipe\n")
                self.check(self.fyrnsum("-a", "md5", f"-j{jobs}", *names), "".join(lines))
                os.waitpid(child, 0)

    def test_more_jobs_than_there_can_be_threads_are_no_error(self):
        self.check(self.fyrnsum("-a", "md5", "-j4000000000", *self.names), self.lines("md5"))

    @posix_only
    @native_only
    def test_the_file_that_cannot_be_read_to_its_end_is_told(self):
        names = [*self.names[:5], "/proc/self/mem", *self.names[5:]]
        for jobs in (1, 8):
            result = self.fyrnsum("-a", "md5", f"-j{jobs}", *names)
            self.check(result, self.lines("md5"), "fyrnsum: /proc/self/mem: Input/output error\n", status=1)


if __name__ == "__main__":
    unittest.main()
