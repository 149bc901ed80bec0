# SPDX-License-Identifier: MIT
"""The line that tells a waiting user how far a long run has come: on a terminal, after two seconds, and gone in time.

The file is a pipe that the test fills as slowly as it likes, or a large file without content on the disk.
"""
import fcntl
import os
import pty
import re
import shlex
import struct
import subprocess
import termios
import threading
import time
import unittest

from expected import md5
from launcher import INSTRUMENTED, WINDOWS, ScratchCase, command, posix_only

PIECE = b"x" * (1 << 20)
WIPE = b"\r\x1b[K"
DRAWN = re.compile(rb"\r([^\r\n]+)\x1b\[K")


class Reader(threading.Thread):
    """Collects what comes out of a pseudo-terminal, with the time of each piece."""

    def __init__(self, master):
        super().__init__(daemon=True)
        self.master, self.pieces = master, []
        self.start()

    def run(self):
        try:
            while piece := os.read(self.master, 65536):
                self.pieces.append((time.monotonic(), piece))
        except OSError:  # the other side is closed
            pass

    @property
    def text(self):
        return b"".join(piece for _, piece in self.pieces)


@posix_only
class Progress(ScratchCase):
    def setUp(self):
        super().setUp()
        os.mkfifo(self.path("slow"))

    def feed(self, seconds, pause=0.05, pipe="slow"):
        """Writes pieces into the pipe for some time, and returns all that was written."""
        content = b""
        with open(self.path(pipe), "wb") as pipe:
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                pipe.write(PIECE)
                pipe.flush()
                content += PIECE
                time.sleep(pause)
        return content

    def on_terminal(self, *arguments, output="report", columns=100, environment=None, control=True):
        """Starts the program with a pseudo-terminal as standard error. Its output goes into a file of that name, or is what
        subprocess takes; with None it goes to the terminal, too."""
        if isinstance(output, str):
            output = open(self.path(output), "wb")
            self.addCleanup(output.close)
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

        def take_terminal():
            os.setsid()
            fcntl.ioctl(2, termios.TIOCSCTTY, 0)

        variables = os.environ | {"TERM": "xterm"} | (environment or {})
        process = subprocess.Popen(command(*arguments), cwd=self.scratch, stdin=subprocess.DEVNULL, stderr=slave,
                                   stdout=slave if output is None else output,
                                   env={name: value for name, value in variables.items() if value is not None},
                                   preexec_fn=take_terminal if control else os.setsid)
        os.close(slave)
        self.addCleanup(os.close, master)
        return process, Reader(master)

    def finish(self, process, reader):
        process.communicate(timeout=60)
        reader.join(10)
        self.assertEqual(process.returncode, 0)

    def test_a_long_run_shows_file_function_bytes_and_speed_ten_times_a_second_at_most(self):
        begin = time.monotonic()
        process, reader = self.on_terminal("-hash=MD5", "slow")
        content = self.feed(3.5, pause=0.01)
        self.finish(process, reader)
        self.assertEqual(self.read("report"), f"Hashes: MD5 \n\nslow\n  {md5(content)}\n".encode())
        lines = DRAWN.findall(reader.text)
        for line in lines:
            self.assertRegex(line, rb"^(\.\.\.)?[^ ]*/slow  MD5 1/1  \d+\.\d MiB  \d+\.\d MiB/s$")
            self.assertLess(len(line), 100)
        drawn = [moment for moment, piece in reader.pieces for _ in DRAWN.findall(piece)]
        self.assertGreater(drawn[0] - begin, 1.9)
        self.assertGreaterEqual(len(drawn), 3)
        self.assertLess(len(drawn), (drawn[-1] - drawn[0]) * 10 + 2)
        self.assertTrue(reader.text.endswith(WIPE), reader.text)

    def test_it_is_wiped_before_any_output_and_at_the_end(self):
        self.write("a", b"a")
        process, reader = self.on_terminal("-hash=MD5", "slow", "a", output=None)
        content = self.feed(3)
        self.finish(process, reader)
        text, drawings = re.subn(rb"(\r[^\r\n]+\x1b\[K)+\r\x1b\[K", b"", reader.text)
        self.assertGreaterEqual(drawings, 1)
        expected = f"Hashes: MD5 \r\n\r\nslow\r\n  {md5(content)}\r\na\r\n  {md5(b'a')}\r\n"
        self.assertEqual(text, expected.encode())

    def test_a_short_run_shows_nothing(self):
        process, reader = self.on_terminal("-hash=MD5", "slow")
        self.feed(0.5)
        self.finish(process, reader)
        self.assertEqual(reader.text, b"")

    def test_a_file_of_known_size_has_the_time_left(self):
        size = 100 if INSTRUMENTED else 200  # MiB
        with open(self.path("large"), "wb") as file:
            file.truncate(size << 20)
        process, reader = self.on_terminal("-hash=WHIRLPOOL", "-hash=MD6-512", "slow", "large")
        self.feed(2.2)
        self.finish(process, reader)
        lines = [line for line in DRAWN.findall(reader.text) if b"/large  " in line]
        self.assertGreaterEqual(len(lines), 1)
        for line in lines:
            self.assertRegex(line, rb"/large  (MD6-512 1|WHIRLPOOL 2)/2  [\d.]+ [KM]iB of %d\.0 MiB(  |$)" % size)
        self.assertTrue(any(re.search(rb" MiB  [\d.]+ [KMG]iB/s  \d+:\d\d left$", line) for line in lines), lines)

    def test_speed_does_not_count_the_time_before_the_first_byte(self):
        process, reader = self.on_terminal("-hash=MD5", "slow")
        with open(self.path("slow"), "wb"):
            time.sleep(4)
            begin = time.monotonic()
            mebibytes = len(self.feed(1.5)) / (1 << 20)
            speed = mebibytes / (time.monotonic() - begin)
        self.finish(process, reader)
        shown = [float(text) for text in re.findall(rb"  ([\d.]+) MiB/s\x1b", reader.text)]
        self.assertGreater(max(shown), speed * 0.6)

    def test_a_terminal_that_does_not_know_its_width_is_taken_to_have_80_columns(self):
        name = "n" * 100
        os.mkfifo(self.path(name))
        process, reader = self.on_terminal("-hash=MD5", name, columns=0)
        self.feed(2.5, pipe=name)
        self.finish(process, reader)
        lines = DRAWN.findall(reader.text)
        self.assertGreaterEqual(len(lines), 1)
        self.assertEqual({line[:3] for line in lines}, {b"..."})
        self.assertTrue(all(60 < len(line) < 80 for line in lines), lines)

    def test_nothing_is_shown_where_it_would_do_harm(self):
        """Without a terminal, on one that cannot take a line back, one that another program has, one too narrow, and
        where the reader of the report may draw."""
        cases = {"dumb": {"environment": {"TERM": "dumb"}}, "unknown": {"environment": {"TERM": None}},
                 "not ours": {"control": False}, "narrow": {"columns": 20}, "pager": {"output": subprocess.PIPE}}
        for name in (*cases, "pipe"):
            os.mkfifo(self.path(name))
        runs = {name: self.on_terminal("-hash=MD5", name, **{"output": name + ".report"} | options)
                for name, options in cases.items()}
        piped = subprocess.Popen(command("-hash=MD5", "pipe"), cwd=self.scratch, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=os.environ | {"TERM": "xterm"})
        feeders = [threading.Thread(target=self.feed, args=(2.5,), kwargs={"pipe": name}) for name in (*cases, "pipe")]
        for feeder in feeders:
            feeder.start()
        for feeder in feeders:
            feeder.join()
        for name, (process, reader) in runs.items():
            with self.subTest(name):
                self.finish(process, reader)
                self.assertEqual(reader.text, b"")
        self.assertEqual(piped.communicate(timeout=60)[1], b"")


@posix_only
class JobControl(ScratchCase):
    """A run that shows its progress is stopped by Ctrl-Z, and goes on in the background to its end."""

    # The shell has the terminal from the moment on at which its job is stopped.
    SHELL = """set -m
               stty {flag}
               {command} > report
               printf '<stopped>'
               bg
               wait
               printf '<ended>'"""

    def start(self, flag, *arguments):
        """Starts a shell on a terminal of its own with a job. Returns the shell, the terminal and a reader of it."""
        script = self.SHELL.format(flag=flag, command=shlex.join(command(*arguments)))
        shell, terminal = pty.fork()
        if shell == 0:
            os.chdir(self.scratch)
            os.execvpe("bash", ["bash", "--norc", "-c", script], os.environ | {"TERM": "xterm"})
        self.addCleanup(os.close, terminal)
        return shell, terminal, Reader(terminal)

    def feed(self):
        """Writes pieces into the pipe until `self.fed` is set."""
        with open(self.path("slow"), "wb", buffering=0) as pipe:
            while not self.fed.wait(0.05):
                pipe.write(PIECE)

    def wait_for(self, reader, pattern):
        end = time.monotonic() + 30
        while not re.search(pattern, reader.text):
            self.assertLess(time.monotonic(), end, (pattern, reader.text))
            time.sleep(0.05)

    def check(self, flag):
        self.fed = threading.Event()
        self.addCleanup(self.fed.set)
        shell, terminal, reader = self.start(flag, "-hash=MD5", "slow")
        feeder = threading.Thread(target=self.feed, daemon=True)
        feeder.start()
        self.wait_for(reader, DRAWN)
        os.write(terminal, b"\x1a")
        self.wait_for(reader, b"<stopped>")
        time.sleep(0.5)
        self.fed.set()
        self.wait_for(reader, b"<ended>")
        self.assertEqual(os.waitpid(shell, 0)[1], 0)
        self.assertNotIn(b"\x1b", reader.text.partition(b"<stopped>")[2])
        self.assertRegex(self.read("report"), rb"^Hashes: MD5 \n\nslow\n  [0-9a-f]{32}\n$")

    def test_nothing_is_drawn_or_wiped_there(self):
        os.mkfifo(self.path("slow"))
        self.check("-tostop")

    def test_a_terminal_that_stops_who_writes_there_stops_nobody(self):
        os.mkfifo(self.path("slow"))
        self.check("tostop")


@unittest.skipUnless(WINDOWS, "needs the Windows program")
class WindowsProgress(ScratchCase):
    """In Wine's console, which draws on the pseudo-terminal what it shows."""

    def test_a_long_run_is_shown_and_wiped(self):
        with open(self.path("large"), "wb") as file:
            file.truncate(400 << 20)
        master, slave = pty.openpty()
        self.addCleanup(os.close, master)
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 100, 0, 0))

        def take_terminal():
            os.setsid()
            fcntl.ioctl(2, termios.TIOCSCTTY, 0)

        process = subprocess.Popen(command("-hash=WHIRLPOOL", "-hash=MD6-512", "large"), cwd=self.scratch, stdin=slave,
                                   stdout=slave, stderr=slave, env=os.environ | {"TERM": "xterm"},
                                   preexec_fn=take_terminal)
        os.close(slave)
        reader = Reader(master)
        self.assertEqual(process.wait(timeout=300), 0)
        reader.join(10)
        shown = re.sub(rb"\x1b\[[?\d;]*[A-Za-z]", b"", reader.text).replace(b"\r\r\n", b"\n")
        self.assertRegex(shown, rb"\r[^\r\n]*large  (MD6-512 1|WHIRLPOOL 2)/2  [\d.]+ [KM]iB of 400\.0 MiB")
        self.assertRegex(shown, rb"(left|/s)[\r ]*[\s0-9a-f]{128,}$")  # the last digest, and nothing else


if __name__ == "__main__":
    unittest.main()
