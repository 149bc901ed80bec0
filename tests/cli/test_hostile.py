# SPDX-License-Identifier: MIT
"""Whatever the command line and wherever the output goes: no message, no crash, status 0."""
import ctypes
import os
import random
import signal
import subprocess
import unittest

import launcher
from expected import md5

OPTIONS = [b"-hash=", b"-hash=MD5", b"-hash=CRC-32", b"-hash=ALL", b"-salt=", b"-salttype=", b"-salttype=both",
           b"-rename", b"-renamedel", b"-subdirs", b"-verbosity=", b"-verbosity=3", b"-poly16=0x", b"-poly32=0x",
           b"-poly64=0x"]


class Garbage(launcher.ScratchCase):
    SEED = 43

    def argument(self, generator):
        """One argument: an option with random bytes behind it, or random bytes alone."""
        length = generator.choice((0, 1, 2, 5, 20, 259, 260, 1000))
        if launcher.WINDOWS:
            noise = bytes(generator.randrange(33, 127) for _ in range(length)).replace(b'"', b"'")
        else:
            noise = bytes(generator.randrange(1, 256) for _ in range(length))
        prefix = generator.choice(OPTIONS) if generator.random() < 0.6 else b""
        return prefix + (b"" if generator.random() < 0.3 else noise)

    def test_a_thousand_command_lines(self):
        print(f"seed {self.SEED}")
        generator = random.Random(self.SEED)
        self.write("a", b"abc")
        for number in range(50 if launcher.LAUNCHER else 1000):
            arguments = [self.argument(generator) for _ in range(generator.randrange(12))]
            # Bytes that make a path to somewhere else must not be hashed, or renamed.
            arguments = [argument.replace(b"/", b"_").replace(b"\\", b"_") for argument in arguments]
            if launcher.WINDOWS:
                arguments = [argument.decode() for argument in arguments]
            result = launcher.run(*arguments, directory=self.scratch, timeout=20)
            with self.subTest(number=number, arguments=arguments):
                self.check_quiet_success(result)
                self.assertTrue(result.output)

    @launcher.posix_only
    def test_arguments_of_a_hundred_thousand_characters(self):
        self.write("a", b"abc")
        for prefix in (*OPTIONS, b"", b"/", b"*", b"/tmp/*", b"../"):
            for filling in (b"a", b"\xff", b"*", b"?", b"/", b".", b"../", "\u65e5".encode()):
                result = self.fyrn("-hash=MD5", prefix + filling * (100_000 // len(filling)), "a")
                self.assertEqual(result.lines[-1], b"  " + md5(b"abc").encode(), (prefix, filling))

    @launcher.posix_only
    def test_ten_thousand_arguments(self):
        self.write("a", b"abc")
        result = self.fyrn("-hash=MD5", *["a"] * 10_000)
        self.assertEqual(result.lines[2:], [b"a", b"  " + md5(b"abc").encode()] * 10_000)
        result = self.fyrn(*["-hash=MD5"] * 10_000, *["nothing"] * 10_000, "a")
        self.assertEqual(result.lines[2:], [b"a", b"  " + md5(b"abc").encode()])

    @launcher.posix_only
    def test_patterns_that_backtrack(self):
        self.write("a" * 250, b"abc")
        result = self.fyrn("-hash=MD5", "*a" * 100 + "b", "*?" * 120, "*.*" * 80, "a*" * 100 + "*", timeout=20)
        self.assertEqual(len(result.lines) % 2, 0)

    @launcher.posix_only
    def test_not_even_a_name(self):
        def execute_without_arguments():
            nothing = (ctypes.c_char_p * 1)(None)
            ctypes.CDLL(None).execv(launcher.PROGRAM.encode(), nothing)
        done = subprocess.run(["never started"], preexec_fn=execute_without_arguments, capture_output=True,
                              timeout=20, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertIn(b"\nUsage: ", done.stdout)


@launcher.posix_only
class Output(launcher.ScratchCase):
    TARGETS = ["a"] * 3000  # more output than fits into a pipe or a buffer

    def setUp(self):
        super().setUp()
        self.write("a", b"abc")

    def check(self, redirection, *arguments):
        result = launcher.in_shell(f'"$@" {redirection}', *arguments, directory=self.scratch, timeout=60)
        self.check_quiet_success(result)

    def test_closed(self):
        self.check(">&-", "-hash=MD5", *self.TARGETS)
        self.check(">&-")

    def test_full(self):
        self.check(">/dev/full", "-hash=MD5", *self.TARGETS)
        self.check(">/dev/full")

    def test_not_writable(self):
        self.check("1</dev/null", "-hash=MD5", *self.TARGETS)

    def test_a_limited_file(self):
        result = launcher.in_shell('ulimit -f 8; "$@" >report', "-hash=MD5", "d", directory=self.scratch)
        self.check_quiet_success(result)
        self.assertLessEqual(os.path.getsize(self.path("report")), 8 * 1024)

    def test_a_reader_that_goes_away(self):
        for default in (signal.SIG_DFL, signal.SIG_IGN):
            def restore(disposition=default):
                signal.signal(signal.SIGPIPE, disposition)
            process = subprocess.Popen(launcher.command("-hash=MD5", *self.TARGETS), cwd=self.scratch,
                                       stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                       preexec_fn=restore)
            process.stdout.read(1)
            process.stdout.close()
            errors = process.stderr.read()
            process.stderr.close()
            self.assertEqual(process.wait(60), 0)
            self.assertEqual(errors, b"")

    def test_a_reader_that_never_was(self):
        for number in range(500):
            self.write(f"d/{number}", b"%d" % number)
        reader, writer = os.pipe()
        os.close(reader)
        self.fyrn("-hash=MD5", "-renamedel", *self.TARGETS, "d", stdout=writer)
        os.close(writer)
        self.assertEqual(self.names("d"), sorted(md5(b"%d" % number) for number in range(500)))

    def test_standard_error_stays_empty_when_it_is_the_only_stream(self):
        self.check("<&- >&-", "-hash=MD5", *self.TARGETS)


if __name__ == "__main__":
    unittest.main()
