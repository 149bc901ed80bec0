# SPDX-License-Identifier: MIT
"""Runs in which memory is short: the program as it is shipped, under limits that its read buffers do not fit."""
import fcntl
import os
import re
import select
import shutil
import socket
import subprocess
import termios
import time
import unittest

import launcher

# In KiB. Nothing of a megabyte fits the first; the second is too small for the two megabytes of KECCAK alone.
NO_READ_BUFFER = 800
NO_KECCAK_BUFFER = 1700

TIME_STAMP = r"[A-Z][a-z]{2} [A-Z][a-z]{2} [ 1-3]\d \d\d:\d\d:\d\d \d{4}"
SEPARATOR = "\n" + "-" * 79 + "\n"

MD5_FUNCTION = "bool __cdecl CCrypto_Md5::GetFromFile(const wchar_t *,unsigned char [])"
KECCAK_FUNCTION = "bool __cdecl CCrypto_Sha::GetSha3_FromFile(const wchar_t *,unsigned short,unsigned char *,bool)"
SALT_FUNCTION = "unsigned int __cdecl CCrypto_Salt::SetSalt_FromFile(const wchar_t *,enum EnumSaltType)"

not_instrumented = unittest.skipIf(launcher.INSTRUMENTED, "sanitizers and counters need more memory than the limit")


def source_line(source, text):
    """The number of the only line of a source file that holds a text."""
    with open(os.path.join(launcher.SOURCE_DIRECTORY, source), encoding="utf-8") as file:
        lines = [number for number, line in enumerate(file, 1) if text in line]
    if len(lines) != 1:
        raise AssertionError(f"{source} holds {text} in {len(lines)} lines")
    return lines[0]


def md5_line():
    return source_line("crypto/CCrypto_Md5.cpp", f'CATCH_SITE("{MD5_FUNCTION}")')


def computer_name():
    name = socket.gethostname()
    return name if 0 < len(name) <= 15 else "< Unknown >"


def record_pattern(source, function, line):
    """What the log holds of one fault, with its separator, as a regular expression."""
    begin = f"Exception error\nComputer : {computer_name()}\nFile     : {source} ("
    end = f")\nFunction : {function}\nLine     : {line}\nInfo     :\n(null)\n{SEPARATOR}"
    return re.escape(begin) + TIME_STAMP + re.escape(end)


def limited(kibibytes, arguments):
    """The argument vector that runs another one with so much memory."""
    return ["sh", "-c", f'ulimit -d {kibibytes} && exec "$@"', "sh", *arguments]


class FaultCase(launcher.ScratchCase):
    """The program lies in a directory of its own, where its log goes. Runs start in another one."""

    def setUp(self):
        super().setUp()
        os.mkdir(self.path("bin"))
        os.mkdir(self.path("work"))
        self.program = self.path("bin", "fyrn")
        shutil.copy(launcher.PROGRAM, self.program)

    def command(self, *arguments):
        return [*launcher.LAUNCHER, self.program, *arguments]

    def run_short(self, *arguments, limit=NO_READ_BUFFER, **options):
        """Runs the program under a limit, without a terminal."""
        done = subprocess.run(limited(limit, self.command(*arguments)), cwd=self.path("work"), timeout=120,
                              check=False, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, start_new_session=True, **options)
        result = launcher.Result(done.returncode, done.stdout, done.stderr)
        self.check_quiet_success(result)
        return result

    def log(self):
        return self.read("bin/Error.log").decode()

    def logged_functions(self):
        return re.findall(r"^Function : (.*)$", self.log(), re.MULTILINE)


class TerminalRun:
    """A run on a terminal of its own. Standard output is a pipe, so that only questions reach the terminal."""

    def __init__(self, arguments, directory):
        self.user_side, terminal = os.openpty()
        self.shown = b""
        self.process = subprocess.Popen(
            arguments, cwd=directory, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            start_new_session=True, pass_fds=[terminal],
            preexec_fn=lambda: fcntl.ioctl(terminal, termios.TIOCSCTTY, 0))
        self.terminal = terminal  # kept open, so that what was shown can be read after the end

    def read_shown(self, seconds):
        """Reads what is shown within a time; false when there was nothing."""
        if not select.select([self.user_side], [], [], seconds)[0]:
            return False
        self.shown += os.read(self.user_side, 65536)
        return True

    def wait_for_questions(self, count):
        deadline = time.monotonic() + 60
        while self.shown.count(b" [y/n] ") < count:
            if time.monotonic() > deadline:
                raise AssertionError(f"not asked {count} times, but shown {self.shown!r}")
            self.read_shown(1)

    def type(self, keys):
        os.write(self.user_side, keys)

    def finish(self):
        """Waits for the end and returns the result; `shown` is then complete, with the line ends of a file."""
        output, errors = self.process.communicate(timeout=120)
        while self.read_shown(0):
            pass
        os.close(self.user_side)
        os.close(self.terminal)
        self.shown = self.shown.replace(b"\r\n", b"\n")
        return launcher.Result(self.process.returncode, output, errors)
