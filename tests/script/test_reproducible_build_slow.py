# SPDX-License-Identifier: MIT
"""Two clones of the last commit, built in different places at different times, give the same program."""
import hashlib
import os
import pathlib
import subprocess
import tempfile
import time
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]


def call(*command, **environment):
    clean = {name: value for name, value in os.environ.items() if not name.startswith(("GIT_", "SOURCE_DATE_EPOCH"))}
    subprocess.run(command, env=clean | environment, check=True, capture_output=True, text=True)


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def build(sources, folder, *options, **environment):
    """Configures and builds the program as a user does, and returns the digest of its bytes."""
    call("cmake", "-S", sources, "-B", folder, *options, **environment)
    call("cmake", "--build", folder, "--target", "fyrn", "--parallel", str(os.cpu_count()), **environment)
    return digest(folder / "fyrn")


@unittest.skipUnless((PROJECT / ".git").exists(), "needs the repository")
class ReproducibleBuild(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)

    def clone(self, name):
        """A clone in a folder of this name, whose files all bear the present time."""
        target = self.scratch / name
        call("git", "-c", "safe.directory=*", "clone", "--no-hardlinks", "--quiet", PROJECT, target)
        return target

    def archive(self, name):
        """The files of the last commit without its repository, as a release archive holds them."""
        target = self.scratch / name
        target.mkdir(parents=True)
        tar = self.scratch / f"{target.name}.tar"
        call("git", "-c", "safe.directory=*", "-C", PROJECT, "archive", "-o", tar, "HEAD")
        call("tar", "-xf", tar, "-C", target)
        return target

    def test_place_time_generator_and_repository_leave_the_same_bytes(self):
        first = self.clone("first")
        reference = build(first, first / "build")
        time.sleep(1.1)  # another second, in case a clock found its way in
        second = self.archive("a much longer/second place")
        self.assertEqual(build(second, self.scratch / "elsewhere", "-G", "Ninja", TZ="Asia/Tokyo"), reference)


if __name__ == "__main__":
    unittest.main()
