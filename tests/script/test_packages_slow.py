# SPDX-License-Identifier: MIT
"""Packages of one commit are the same bytes, whoever makes them, where, when and in which locale; and they work."""
import hashlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("dpkg-buildpackage", "dh", "x86_64-w64-mingw32-g++-posix", "mandoc", "lintian")
NOBODY = 65534


def call(*command, environment=None, **options):
    clean = {name: value for name, value in os.environ.items()
             if not name.startswith(("GIT_", "SOURCE_DATE_EPOCH", "CCACHE_", "CMAKE_", "DEB_", "LC_", "LANG"))}
    done = subprocess.run(command, env=clean | (environment or {}), capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} failed:\n{done.stdout}{done.stderr}")


def digests(folder):
    return {path.name: hashlib.sha256(path.read_bytes()).hexdigest() for path in folder.iterdir()}


@unittest.skipUnless((PROJECT / ".git").exists(), "needs the repository")
@unittest.skipUnless(all(shutil.which(tool) for tool in TOOLS), f"needs {', '.join(TOOLS)}")
@unittest.skipUnless(os.geteuid() == 0, "needs to be root to be another user")
class Packages(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.scratch.chmod(0o755)

    def package(self, place, owner=None, umask=0o022, **environment):
        """Clones the last commit to a place, packages it as its owner, and returns the folder of packages."""
        clone = self.scratch / place
        for parent in reversed(clone.relative_to(self.scratch).parents[:-1]):
            (self.scratch / parent).mkdir(mode=0o755)
        call("git", "-c", "safe.directory=*", "clone", "--no-hardlinks", "--quiet", PROJECT, clone, umask=umask)
        who = {}
        if owner is not None:
            call("chown", "-R", f"{owner}:{owner}", clone)
            who = {"user": owner, "group": owner, "extra_groups": []}
        call(clone / "script/package", cwd=clone, umask=umask, environment=environment, **who)
        return clone / "build/package"

    def test_two_builds_are_the_same_bytes_and_hold_what_they_promise(self):
        first = self.package("first", TZ="UTC")
        second = self.package("another and much longer/place", owner=NOBODY, umask=0o077, HOME=str(self.scratch),
                              TZ="Asia/Tokyo", LC_ALL="C.UTF-8", LANG="de_DE.UTF-8", LANGUAGE="de")
        self.assertEqual(len(digests(first)), 6)
        self.assertEqual(digests(first), digests(second))
        call(sys.executable, "-B", PROJECT / "tests/package/test_packages.py",
             environment={"FYRN_PACKAGES": str(first)})


if __name__ == "__main__":
    unittest.main()
