# SPDX-License-Identifier: MIT
"""Whatever the command line and wherever the output goes: no message, no crash, status 0."""
import ctypes
import os
import random
import shutil
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

    def check_renaming(self, redirection, renames):
        """Whether files are renamed, and deleted, where the report goes."""
        for option, names in (("-rename", [md5(b"x"), md5(b"x") + "_00"]), ("-renamedel", [md5(b"x")])):
            shutil.rmtree(self.path("d"), ignore_errors=True)
            for name in ("1", "2"):
                self.write("d/" + name, b"x")
            self.check(redirection, "-hash=MD5", option, "d")
            self.assertEqual(self.names("d"), names if renames else ["1", "2"], option)

    def test_closed(self):
        self.check(">&-", "-hash=MD5", *self.TARGETS)
        self.check(">&-")
        self.check_renaming(">&-", True)
        self.check_renaming(">/dev/null", True)

    def test_full(self):
        self.check(">/dev/full", "-hash=MD5", *self.TARGETS)
        self.check(">/dev/full")
        self.check_renaming(">/dev/full", False)

    def test_not_writable(self):
        self.check("1</dev/null", "-hash=MD5", *self.TARGETS)
        self.check_renaming("1</dev/null", True)

    def test_a_limited_file(self):
        """What the report has no room for keeps its name."""
        for number in range(500):
            self.write(f"d/{number}", b"%d" % number)
        result = launcher.in_shell('ulimit -f 8; "$@" >report', "-hash=MD5", "-renamedel", "d", directory=self.scratch)
        self.check_quiet_success(result)
        report = self.read("report")
        self.assertEqual(len(report), 8 * 512 if len(report) < 5000 else 8 * 1024)  # blocks of dash or of others
        kept = {name for name in self.names("d") if len(name) < 32}
        whole = report[:report.rindex(b"\n")].decode().split("\n")[2:]
        self.assertEqual(kept, {str(number) for number in range(500)} - set(whole[:len(whole) // 2 * 2:2]))

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

    def test_the_run_ends_where_nobody_reads_it_any_more(self):
        """It would take minutes more for each of these files, and hours for all of them."""
        os.truncate(self.write("large"), 1 << 40)
        process = subprocess.Popen(launcher.command("-hash=CRC-32", "-hash=MD6-512", *["large"] * 100),
                                   cwd=self.scratch, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.addCleanup(process.kill)
        process.stdout.readline()
        process.stdout.close()
        self.assertEqual(process.wait(timeout=30), 0)

    def test_nothing_is_opened_after_the_report_lost_its_reader(self):
        """Of the files behind a named pipe, which lets the run wait until the reader is gone."""
        os.mkfifo(self.path("pipe"))
        os.mkfifo(self.path("never"))
        process = subprocess.Popen(launcher.command("-hash=MD5", "pipe", *["a"] * 100, "never"), cwd=self.scratch,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.addCleanup(process.kill)
        with open(self.path("pipe"), "wb"):
            process.stdout.close()
        self.assertEqual(process.wait(timeout=30), 0)

    def test_standard_error_stays_empty_when_it_is_the_only_stream(self):
        self.check("<&- >&-", "-hash=MD5", *self.TARGETS)


class NoReader(launcher.ScratchCase):
    def test_nothing_is_renamed_or_deleted(self):
        """Nobody would learn the old names."""
        for option in ("-rename", "-renamedel"):
            for number in range(500):
                self.write(f"d/{number}", b"%d" % (number // 2))
            reader, writer = os.pipe()
            os.close(reader)
            self.fyrn("-hash=MD5", option, "d", stdout=writer)
            os.close(writer)
            self.assertEqual(self.names("d"), sorted(str(number) for number in range(500)))


if __name__ == "__main__":
    unittest.main()
