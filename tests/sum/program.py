# SPDX-License-Identifier: MIT
"""Runs fyrnsum the way a user does, under its own name or another, and keeps exactly what came out.

FYRNSUM_PROGRAM names the program. FYRN_LAUNCHER, when set, is put before it (an emulator, for instance).
"""
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.environ.get("FYRNSUM_PROGRAM", "")
LAUNCHER = shlex.split(os.environ.get("FYRN_LAUNCHER", ""))
BUILD_DIRECTORY = os.environ.get("FYRN_BUILD_DIRECTORY", "")
SOURCE_DIRECTORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
WINDOWS = PROGRAM.endswith(".exe")
INSTRUMENTED = bool(os.environ.get("FYRN_INSTRUMENTED"))

posix_only = unittest.skipIf(WINDOWS, "needs a POSIX system")
native_only = unittest.skipIf(LAUNCHER, "needs a program that runs by itself")

# The tools under whose names the program may be called.
TOOLS = ("md5sum", "sha1sum", "sha224sum", "sha256sum", "sha384sum", "sha512sum", "b2sum", "sm3sum", "cksum", "sum")

if not PROGRAM:
    sys.exit("FYRNSUM_PROGRAM does not name the program")


class Result:
    """What one run left behind: its status and the bytes of its two output streams."""

    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors

    def __eq__(self, other):
        return (self.status, self.output, self.errors) == (other.status, other.output, other.errors)

    def __repr__(self):
        return f"status {self.status}, output {self.output!r}, errors {self.errors!r}"


def run_command(command, directory=None, stdin=b"", timeout=120, **options):
    """Runs any command. `stdin` is bytes to be read, or a file."""
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("stderr", subprocess.PIPE)
    options["input" if isinstance(stdin, bytes) else "stdin"] = stdin
    done = subprocess.run(command, cwd=directory, timeout=timeout, check=False, **options)
    return Result(done.returncode, done.stdout, done.stderr)


class SumCase(unittest.TestCase):
    """A test with a fresh directory of its own, in which the program is run."""

    maxDiff = None

    def setUp(self):
        self.scratch = os.path.realpath(tempfile.mkdtemp(prefix="fyrnsum-"))
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)

    def path(self, *parts):
        return os.path.join(self.scratch, *parts)

    def write(self, name, content=b""):
        """Writes a file of the scratch directory, with the directories on the way. `name` is text or bytes."""
        path = os.path.join(os.fsencode(self.scratch), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def read(self, name):
        with open(os.path.join(os.fsencode(self.scratch), os.fsencode(name)), "rb") as file:
            return file.read()

    def fyrnsum(self, *arguments, **options):
        """Runs the program in the scratch directory."""
        options.setdefault("directory", self.scratch)
        return run_command([*LAUNCHER, PROGRAM, *arguments], **options)

    def tool(self, name, *arguments, **options):
        """Runs the program under the name of another tool."""
        options.setdefault("directory", self.scratch)
        links = self.path(".links")
        if not os.path.isdir(links):
            os.mkdir(links)
            for tool in TOOLS:
                os.symlink(PROGRAM, os.path.join(links, tool))
        return run_command([*LAUNCHER, os.path.join(links, name), *arguments], **options)

    def check(self, result, output, errors=b"", status=0):
        """Compares all that came of a run. Texts may stand for bytes."""
        self.assertEqual(result, Result(status, os.fsencode(output), os.fsencode(errors)))
