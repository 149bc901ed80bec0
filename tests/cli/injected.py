# SPDX-License-Identifier: MIT
"""Runs of the program as it is shipped in which calls of the C library go wrong, one plan of the preloaded library
tests/cli/preload/InjectedFaults_Posix.cpp a run, and what must hold after each of them."""
import errno
import hashlib
import os
import random
import re
import shutil
import subprocess
import unittest

import launcher
from expected import crc32, md5, sha1

LIBRARY = os.environ.get("FYRN_FAULT_LIBRARY", "")
SEED = 6

# What a stale line, or a name made of it, may hold.
DIGEST = re.compile(r"[0-9a-f]{40}|[0-9a-f]{8}|")

# Failures that say nothing about the file itself: such a file is neither renamed nor deleted.
SYSTEM_TROUBLE = (errno.EMFILE, errno.ENFILE, errno.ENOMEM, errno.EIO)

CONTENTS = {
    "a.txt": bytes(range(256)) * 20,
    "b.txt": bytes(range(256)) * 20,
    "c": b"",
    "e.bin": b"e" * 70_000,
    "s/f.txt": b"f",
    "s/g.txt": b"gg" * 2000,
    "s/t/h": b"h" * 100,
}

needs_library = unittest.skipUnless(
    LIBRARY and not launcher.INSTRUMENTED and not launcher.WINDOWS,
    "needs a program without sanitizers on a POSIX system, and the library to preload")


def distinct(contents):
    return {hashlib.sha256(content).digest() for content in contents}


class Fault:
    """One plan, and what it excuses."""

    def __init__(self, plan, eio_at=None, victim=None):
        self.plan = plan
        self.eio_at = eio_at  # reading stops behind so many bytes
        self.victim = victim  # the file or directory that goes away, is cut or is swapped

    def __repr__(self):
        return self.plan

    def seen(self, content):
        """What the program can have read of a file."""
        return content if self.eio_at is None else content[:self.eio_at]

    def excuses(self, name):
        return self.victim is not None and re.match(re.escape(self.victim) + r"(\.away)?(/|$)", name) is not None

    def texts(self, content, function):
        """The digests that may be printed of a file. A read that fails may be its first one."""
        seen = {function(self.seen(content))}
        return seen | {function(b"")} if self.plan.startswith("fail read ") else seen


@needs_library
class InjectedCase(launcher.ScratchCase):
    """Keeps count of faults, and builds the tree afresh only where a run may have changed it."""

    def setUp(self):
        super().setUp()
        self.log = os.open(self.path("log"), os.O_CREAT | os.O_RDWR | os.O_APPEND)
        self.addCleanup(os.close, self.log)
        self.program = os.path.join(self.scratch, "bin", "fyrn")  # its log of faults goes there, too
        os.mkdir(os.path.dirname(self.program))
        shutil.copy(launcher.PROGRAM, self.program)
        self.injected = 0
        self.runs = 0

    def build_tree(self):
        subprocess.run(["rm", "-rf", self.path("d")], check=True)
        for name, content in CONTENTS.items():
            self.write("d/" + name, content)

    def run_with(self, fault, *arguments, directory=None, **options):
        """Runs the program and returns its output; it must end well, whatever goes wrong."""
        os.ftruncate(self.log, 0)
        environment = {"LD_PRELOAD": LIBRARY, "FYRN_FAULT": fault.plan, "FYRN_FAULT_LOG": str(self.log)}
        done = subprocess.run([self.program, *arguments], cwd=directory or self.scratch, env=environment,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              pass_fds=[self.log], timeout=60, check=False, start_new_session=True, **options)
        self.injected += os.fstat(self.log).st_size
        self.runs += 1
        self.assertEqual((done.returncode, done.stderr), (0, b""), fault)
        return done.stdout.decode()

    def check_report(self, fault):
        """Hashes the tree; every SHA1 line must be true, and a CRC-32 line true or what was printed before it."""
        self.build_tree()
        lines = self.run_with(fault, "-hash=CRC-32", "-hash=SHA1", "-subdirs", "-verbosity=3", self.path("d")
                              ).splitlines()
        self.assertTrue("Hashes: CRC-32 SHA1 ".startswith("".join(lines[:1])), fault)
        name, printed = None, {""}
        for line in lines[2:]:
            if not line.startswith("  "):
                name = os.path.relpath(line, self.path("d"))
                continue
            digest = line[2:]
            if not fault.excuses(name):
                true = fault.texts(CONTENTS[name], sha1)
                stale = {*fault.texts(CONTENTS[name], crc32), *printed}
                self.assertIn(digest, true if len(digest) == 40 and digest not in printed else stale, (fault, name))
            self.assertTrue(DIGEST.fullmatch(digest), fault)
            printed = {digest}

    def remaining(self, directory):
        """Path and content of every file in a directory tree."""
        for parent, _, names in os.walk(directory):
            for name in names:
                path = os.path.join(parent, name)
                with open(path, "rb") as file:
                    yield os.path.relpath(path, directory), file.read()

    def check_renaming(self, fault, option, directory=None):
        """Renames the tree; all contents must still be there, and no file bear the digest of another content.

        Where the move itself fails, "-renamedel" deletes on purpose: then only "-rename" is tried."""
        if fault.plan.startswith("fail stat"):
            option = "-rename"
        self.build_tree()
        target = self.path("d") if directory is None else self.path("d", "*")
        self.run_with(fault, "-hash=SHA1", option, "-subdirs", target, directory=directory)
        left = list(self.remaining(self.path("d")))
        if directory is not None:
            left += self.remaining(directory)
        # A file that is cut after it was hashed bears the digest of what it was, and its copies go as its duplicates.
        kept = set(CONTENTS.values()) - {content for name, content in CONTENTS.items() if fault.excuses(name)}
        self.assertLessEqual(distinct(kept), distinct(content for _, content in left), (fault, option))
        if fault.victim is None:
            self.assertEqual(distinct(kept), distinct(content for _, content in left), (fault, option))
            for path, content in left:
                self.check_name(os.path.basename(path), content, (fault, option))

    def check_name(self, name, content, claim):
        match = re.match(r"([0-9a-f]{40})(_\d\d)?(\.\w+)?$", name)
        if match:
            self.assertEqual(match[1], sha1(content), claim)

    # Plans

    def random_plans(self, generator):
        """Endless plans of all kinds whose outcome depends on no rule of renaming."""
        while True:
            kind = generator.choice(("fail", "fail", "fail", "storm", "short", "eio", "malloc"))
            if kind == "fail":
                call = generator.choice(("open", "stat", "opendir", "readdir", "chdir", "getcwd", "close", "read"))
                error = generator.choice(SYSTEM_TROUBLE)
                yield Fault(f"fail {call} {generator.randint(1, 40)} {generator.choice((1, 1, 2, 1000))} {error}")
            elif kind == "storm":
                yield Fault(f"storm {generator.choice(('open', 'read', 'write'))} {generator.randint(1, 50)}")
            elif kind == "short":
                yield Fault(f"short read {generator.choice((1, 7, 63, 64, 4096))}" if generator.random() < 0.1
                            else f"short read {generator.randint(50, 5000)}")
            elif kind == "eio":
                at = generator.choice((0, 1, 100, 4096, 5119, 5120, 60_000))
                yield Fault(f"eio {at}", eio_at=at)
            else:
                # The very first one is the reserve from which exceptions are thrown when memory is used up.
                yield Fault(f"fail malloc {generator.randint(2, 200)} {generator.choice((1, 3))} {errno.ENOMEM}")
