# SPDX-License-Identifier: MIT
"""Runs the program the way a user does, and keeps exactly what came out.

FYRN_PROGRAM names the program. FYRN_LAUNCHER, when set, is put before it (an emulator, for instance).
"""
import ntpath
import os
import posixpath
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.environ.get("FYRN_PROGRAM", "")
LAUNCHER = shlex.split(os.environ.get("FYRN_LAUNCHER", ""))
SOURCE_DIRECTORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# Whether the program under test follows the Windows rules (path separators, line ends, directory search).
WINDOWS = PROGRAM.endswith(".exe")

# Whether the program carries sanitizers or counters, which cost time and memory.
INSTRUMENTED = bool(os.environ.get("FYRN_INSTRUMENTED"))

# What the program takes for a path: a module like os.path.
paths = ntpath if WINDOWS else posixpath

posix_only = unittest.skipIf(WINDOWS, "needs a POSIX system")
windows_only = unittest.skipUnless(WINDOWS, "needs Windows")
root_only = unittest.skipUnless(not WINDOWS and os.geteuid() == 0, "needs to be root")


def wine_differs(what):
    """Leaves a test of the Windows program out where it runs on Wine. The reason is listed after the tests."""
    return unittest.skipIf(WINDOWS and "wine" in LAUNCHER, "Wine differs: " + what)


def shown(path):
    """An absolute path of this machine as the program prints it: Wine shows the root directory as drive Z."""
    return "Z:" + path.replace("/", "\\") if WINDOWS else path


class Result:
    """What one run left behind: its status and the bytes of its two output streams."""

    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors

    @property
    def lines(self):
        """The lines of the output as bytes, without their ends, whatever form these have."""
        text = self.output.replace(b"\r\n", b"\n")
        return text.removesuffix(b"\n").split(b"\n") if text else []


def command(*arguments):
    """The argument vector of one run. Arguments are text or bytes."""
    if not PROGRAM:
        sys.exit("FYRN_PROGRAM does not name the program")
    return [*LAUNCHER, PROGRAM, *arguments]


def run(*arguments, directory=None, timeout=120, **options):
    """Runs the program to its end in `directory`. Further options are those of subprocess.run."""
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("stderr", subprocess.PIPE)
    done = subprocess.run(command(*arguments), cwd=directory, timeout=timeout, check=False, **options)
    return Result(done.returncode, done.stdout, done.stderr)


def in_shell(script, *arguments, directory=None, timeout=120, **options):
    """Runs a shell script in which "$@" stands for the program with these arguments."""
    options.setdefault("stdin", subprocess.DEVNULL)
    done = subprocess.run(["sh", "-c", script, "sh", *command(*arguments)], cwd=directory, timeout=timeout,
                          check=False, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
    return Result(done.returncode, done.stdout, done.stderr)


class ScratchCase(unittest.TestCase):
    """A test with a fresh directory of its own, in which the program is run."""

    place = None  # where that directory is made; None: where temporary files go

    def setUp(self):
        self.scratch = os.path.realpath(tempfile.mkdtemp(prefix="fyrn-", dir=self.place))
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

    def names(self, directory="."):
        """The sorted names in a directory of the scratch directory."""
        return sorted(os.listdir(self.path(directory)))

    def fyrn(self, *arguments, **options):
        """Runs the program in the scratch directory and checks what holds for every run."""
        options.setdefault("directory", self.scratch)
        result = run(*arguments, **options)
        self.check_quiet_success(result)
        return result

    def fyrn_unprivileged(self, *arguments):
        """The same as somebody whom rights stop: as a user who owns the scratch directory, when run by root."""
        if os.geteuid() != 0:
            return self.fyrn(*arguments)
        if INSTRUMENTED:
            self.skipTest("an instrumented program cannot write its files as another user")
        nobody = 65534
        program_directory = tempfile.mkdtemp(prefix="fyrn-program-")
        self.addCleanup(shutil.rmtree, program_directory)
        os.chmod(program_directory, 0o755)
        program = shutil.copy(PROGRAM, program_directory)
        for directory, _, files in os.walk(self.scratch):
            for name in (".", *files):
                os.chown(os.path.join(directory, name), nobody, nobody, follow_symlinks=False)
        done = subprocess.run([program, *arguments], cwd=self.scratch, user=nobody, group=nobody, extra_groups=[],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False)
        result = Result(done.returncode, done.stdout, done.stderr)
        self.check_quiet_success(result)
        return result

    def check_quiet_success(self, result):
        """Status 0 always, and never a word on standard error (an emulator may have its own)."""
        self.assertEqual(result.status, 0)
        if not LAUNCHER:
            self.assertIn(result.errors, (b"", None))

    def assert_lines(self, result, *expected):
        """Compares the report line by line. Expected lines are text or bytes."""
        self.assertEqual(result.lines, [os.fsencode(line) for line in expected])
