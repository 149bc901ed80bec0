# SPDX-License-Identifier: MIT
"""The line that shows a long run's progress costs next to no time: the same run with standard error on a terminal, where
the line is drawn, and elsewhere, in turn. Processor time, the best of several; the ratio is printed. The aim is one
percent, the bound leaves room for a machine with other work."""
import fcntl
import os
import pty
import resource
import struct
import subprocess
import sys
import termios
import threading
import unittest

from launcher import ScratchCase, command, posix_only

ROUNDS = 5
BOUND = 1.05


def drain(master):
    """Reads a pseudo-terminal to its end; the number of bytes goes into the list that is returned with the thread."""
    counts = []

    def run():
        try:
            while piece := os.read(master, 65536):
                counts.append(len(piece))
        except OSError:  # the other side is closed
            pass
    thread = threading.Thread(target=run, daemon=True)
    thread.start()
    return thread, counts


def take_terminal():
    """Nothing is drawn by a run in the background: standard error becomes the terminal of a session of its own."""
    os.setsid()
    if os.isatty(2):
        fcntl.ioctl(2, termios.TIOCSCTTY, 0)


@posix_only
class ProgressCost(ScratchCase):
    def processor_time(self, arguments, errors):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        subprocess.run(command(*arguments), cwd=self.scratch, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=errors, check=True, env=os.environ | {"TERM": "xterm"}, preexec_fn=take_terminal)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime

    def with_terminal(self, arguments):
        """Processor time of a run that draws, and how many bytes it drew."""
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 100, 0, 0))
        thread, counts = drain(master)
        seconds = self.processor_time(arguments, slave)
        os.close(slave)
        thread.join(10)
        os.close(master)
        return seconds, sum(counts)

    def expect_cheap(self, *arguments):
        drawing, quiet = [], []
        for _ in range(ROUNDS):
            seconds, drawn = self.with_terminal(arguments)
            self.assertGreater(drawn, 100, "nothing was drawn: the run was too short")
            drawing.append(seconds)
            quiet.append(self.processor_time(arguments, subprocess.DEVNULL))
        ratio = min(drawing) / min(quiet)
        print(f"with the line {min(drawing):.2f} s, without {min(quiet):.2f} s: {ratio:.4f} times", file=sys.stderr)
        self.assertLess(ratio, BOUND)

    def test_of_a_large_file(self):
        os.truncate(self.write("large"), 4 << 30)
        self.expect_cheap("-hash=SHA2-256", "large")

    def test_of_many_small_files(self):
        for number in range(40_000):
            self.write(f"d/{number}", b"%d" % number * 100)
        rows = ("BLAKE2-512", "CRC-32", "MD4", "MD5", "MD6-256", "SHA1", "SHA2-256", "SHA2-512", "SHA3-256", "SKEIN-512",
                "TIGER1-192", "WHIRLPOOL")
        self.expect_cheap(*(f"-hash={row}" for row in rows), "d/*")


if __name__ == "__main__":
    unittest.main()
