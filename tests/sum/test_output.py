# SPDX-License-Identifier: MIT
"""Where lines go: files that appear when complete, writing that fails, runs side by side."""
import hashlib
import os
import re
import signal
import subprocess
import time
import unittest

from program import LAUNCHER, PROGRAM, SumCase, native_only, posix_only

EMPTY = hashlib.sha256(b"").hexdigest()


class Output(SumCase):
    def test_a_list_appears_under_its_name(self):
        self.write("f")
        self.check(self.fyrnsum("-o", "LIST", "f"), "")
        self.assertEqual(self.read("LIST"), f"{EMPTY}  f\n".encode())
        self.assertEqual(sorted(os.listdir(self.scratch)), ["LIST", "f"])

    def test_one_reading_makes_one_list_for_each_function(self):
        self.write("f", b"x")
        self.check(self.fyrnsum("-a", "md5,sha512,blake2b-256", "-o", "manifest-{alg}.txt", "f"), "")
        for name, digest in (("md5", hashlib.md5(b"x")), ("sha512", hashlib.sha512(b"x")),
                             ("blake2b-256", hashlib.blake2b(b"x", digest_size=32))):
            self.assertEqual(self.read(f"manifest-{name}.txt"), f"{digest.hexdigest()}  f\n".encode())

    def test_the_list_is_no_part_of_the_tree(self):
        self.write("f")
        for _ in range(2): # new, and in place of the first
            self.check(self.fyrnsum("-r", ".", "-o", "LIST"), "")
            self.assertEqual(self.read("LIST"), f"{EMPTY}  ./f\n".encode())
            for name in ("LIST.state", "LIST~", "LIST.resume", ".fyrnsum-a1B2c3"): # what other runs leave
                self.write(name)

    @posix_only
    def test_links_and_rights_of_a_list_stay_as_is_usual(self):
        self.write("f")
        self.write("kept/LIST", b"old")
        os.chmod(self.path("kept/LIST"), 0o600)
        os.symlink("kept/LIST", self.path("link"))
        self.check(self.fyrnsum("-o", "link", "f"), "")
        self.assertTrue(os.path.islink(self.path("link")))
        self.assertEqual(self.read("kept/LIST"), f"{EMPTY}  f\n".encode())
        self.assertEqual(os.stat(self.path("kept/LIST")).st_mode & 0o777, 0o600)
        self.check(self.fyrnsum("-o", "new", "f"), "")
        mask = os.umask(0o022)
        os.umask(mask)
        self.assertEqual(os.stat(self.path("new")).st_mode & 0o777, 0o666 & ~mask)

    @posix_only
    def test_a_device_is_written_to_as_it_is(self):
        self.write("f")
        self.check(self.fyrnsum("-o", "/dev/null", "f"), "")
        result = self.fyrnsum("-o", "/dev/stdout", "f")
        self.check(result, f"{EMPTY}  f\n")

    def test_a_list_that_cannot_be_made_is_told(self):
        self.write("f")
        self.check(self.fyrnsum("-o", "none/LIST", "f"), "", "fyrnsum: none/LIST: No such file or directory\n", 1)

    def test_trouble_with_a_file_still_completes_the_list(self):
        self.write("f")
        self.check(self.fyrnsum("-o", "LIST", "none", "f"), "", "fyrnsum: none: No such file or directory\n", 1)
        self.assertEqual(self.read("LIST"), f"{EMPTY}  f\n".encode())

    @posix_only
    @native_only
    def test_a_run_that_is_killed_leaves_nothing(self):
        self.write("LIST", b"old")
        os.mkfifo(self.path("pipe"))
        self.write("f")
        with subprocess.Popen([PROGRAM, "-o", "LIST", "f", "pipe"], cwd=self.scratch) as process:
            writer = os.open(self.path("pipe"), os.O_WRONLY) # returns when the program reads it
            time.sleep(0.1)
            process.send_signal(signal.SIGKILL)
            process.wait()
            os.close(writer)
        self.assertEqual(self.read("LIST"), b"old")
        self.assertEqual(sorted(os.listdir(self.scratch)), ["LIST", "f", "pipe"])

    @posix_only
    def test_a_full_disk_ends_the_run(self):
        self.write("f")
        with open("/dev/full", "wb") as full:
            result = self.fyrnsum("f", "f", stdout=full)
        self.assertEqual((result.status, result.errors),
                         (1, b"fyrnsum: write error: No space left on device\n"))
        self.check(self.fyrnsum("-o", "/dev/full", "f"), "", "fyrnsum: /dev/full: No space left on device\n", 1)
        with open("/dev/full", "wb") as full:
            result = self.fyrnsum("--help", stdout=full)
        self.assertEqual((result.status, result.errors),
                         (1, b"fyrnsum: write error: No space left on device\n"))

    @posix_only
    def test_a_closed_pipe_ends_the_run(self):
        self.write("f")
        reader, writer = os.pipe()
        os.close(reader)
        result = self.fyrnsum("f", stdout=writer)
        os.close(writer)
        self.assertEqual((result.status, result.errors), (1, b"fyrnsum: write error: Broken pipe\n"))

    @posix_only
    @native_only
    def test_closed_streams_are_errors_and_not_other_files(self):
        self.write("f")
        done = subprocess.run([*LAUNCHER, "sh", "-c", '"$0" f >&-', PROGRAM], cwd=self.scratch, capture_output=True,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (1, b"fyrnsum: write error: Bad file descriptor\n"))
        done = subprocess.run(["sh", "-c", '"$0" - f <&-', PROGRAM], cwd=self.scratch, capture_output=True,
                              check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (1, f"{EMPTY}  f\n".encode(), b"fyrnsum: -: Bad file descriptor\n"))

    @posix_only
    @native_only
    def test_lines_of_parallel_runs_do_not_mix(self):
        for number in range(400):
            self.write(f"d/file-with-a-name-of-some-length-{number}")
        done = subprocess.run(["sh", "-c", 'find d d d d -type f -print0 | xargs -0 -n150 -P4 "$0"', PROGRAM],
                              cwd=self.scratch, capture_output=True, check=True)
        lines = done.stdout.splitlines()
        self.assertEqual(len(lines), 1600)
        self.assertEqual([line for line in lines if not re.fullmatch(rb"[0-9a-f]{64}  d/file-[a-z0-9-]*", line)], [])

    @posix_only
    @native_only
    def test_lines_are_seen_before_a_long_wait(self):
        self.write("f")
        os.mkfifo(self.path("pipe"))
        with subprocess.Popen([PROGRAM, "f", "pipe"], cwd=self.scratch, stdout=subprocess.PIPE) as process:
            with open(self.path("pipe"), "wb"):
                self.assertEqual(process.stdout.readline(), f"{EMPTY}  f\n".encode())
            self.assertEqual(process.stdout.readline(), f"{EMPTY}  pipe\n".encode())

    @posix_only
    @native_only
    def test_several_functions_read_each_byte_once(self):
        if subprocess.run(["sh", "-c", "command -v strace"], capture_output=True, check=False).returncode != 0:
            self.skipTest("needs strace")
        self.write("large", b"x" * 3000000)
        done = subprocess.run(["strace", "-f", "-e", "trace=read,pread64,mmap", "-o", self.path("trace"), PROGRAM, "-a",
                               "md5,sha256,sha512", "large"], cwd=self.scratch, capture_output=True, check=False)
        if done.returncode != 0 and b"ptrace" in done.stderr:
            self.skipTest("strace may not trace here")
        trace = self.read("trace").decode()
        read = [int(count) for count in re.findall(r'^\d+ +p?read(?:64)?\(\d+, "xx.*= (\d+)$', trace, re.MULTILINE)]
        self.assertEqual(sum(read), 3000000)


if __name__ == "__main__":
    unittest.main()
