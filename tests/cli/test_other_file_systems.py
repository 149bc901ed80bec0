# SPDX-License-Identifier: MIT
"""Renaming across file systems: whole or nothing."""
import os
import shutil
import stat
import subprocess
import tempfile
import unittest

import launcher
from expected import md5

LARGE = bytes(range(256)) * 4096 * 3  # 3 MiB


def second_file_system(beside):
    """A directory on another file system than `beside` that can be written to, or None."""
    for directory in ("/dev/shm", "/var/tmp", "/tmp", os.path.expanduser("~"), launcher.SOURCE_DIRECTORY):
        if os.access(directory, os.W_OK) and os.stat(directory).st_dev != os.stat(beside).st_dev:
            return directory
    return None


@launcher.posix_only
class OtherFileSystem(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        place = second_file_system(self.scratch)
        if place is None:
            self.skipTest("no second file system that can be written to")
        self.other = tempfile.mkdtemp(prefix="fyrn-", dir=place)
        self.addCleanup(shutil.rmtree, self.other, ignore_errors=True)

    def rename(self, option="-rename", name="a.txt"):
        """Renames a file of the scratch directory with the other file system as start directory."""
        return self.fyrn("-hash=MD5", option, self.path(name), directory=self.other)

    def in_other(self, name):
        with open(os.path.join(self.other, name), "rb") as file:
            return file.read()

    def test_the_file_moves_with_its_content_rights_and_times(self):
        path = self.write("a.txt", LARGE)
        os.chmod(path, 0o640)
        os.utime(path, ns=(1_234_567_890_123_456_789, 987_654_321_987_654_321))
        self.rename()
        self.assertEqual(self.names(), [])
        self.assertEqual(os.listdir(self.other), [md5(LARGE) + ".txt"])
        self.assertEqual(self.in_other(md5(LARGE) + ".txt"), LARGE)
        status = os.stat(os.path.join(self.other, md5(LARGE) + ".txt"))
        self.assertEqual(stat.S_IMODE(status.st_mode), 0o640)
        self.assertEqual(status.st_mtime_ns, 987_654_321_987_654_321)

    def test_an_empty_file_moves(self):
        self.write("a.txt")
        self.rename()
        self.assertEqual(self.names(), [])
        self.assertEqual(self.in_other(md5(b"") + ".txt"), b"")

    def test_a_taken_name_is_numbered_and_nothing_replaced(self):
        self.write("a.txt", b"abc")
        with open(os.path.join(self.other, md5(b"abc") + ".txt"), "wb") as file:
            file.write(b"taken")
        self.rename()
        self.assertEqual(self.in_other(md5(b"abc") + ".txt"), b"taken")
        self.assertEqual(self.in_other(md5(b"abc") + "_00.txt"), b"abc")
        self.assertEqual(self.names(), [])

    def test_a_taken_name_deletes_the_file_with_renamedel(self):
        self.write("a.txt", b"abc")
        with open(os.path.join(self.other, md5(b"abc") + ".txt"), "wb") as file:
            file.write(b"abc")
        self.rename("-renamedel")
        self.assertEqual(self.names(), [])
        self.assertEqual(os.listdir(self.other), [md5(b"abc") + ".txt"])

    def test_closed_standard_streams_do_not_damage_the_copy(self):
        self.write("a.txt", LARGE)
        result = launcher.in_shell('"$@" <&- >&- 2>&-', "-hash=MD5", "-rename", self.path("a.txt"),
                                   directory=self.other)
        self.check_quiet_success(result)
        self.assertEqual(self.in_other(md5(LARGE) + ".txt"), LARGE)
        self.assertEqual(self.names(), [])

    def test_a_limit_of_the_file_size_leaves_the_file_where_it_was(self):
        self.write("a.txt", LARGE)
        result = launcher.in_shell('ulimit -f 1024; "$@"', "-hash=MD5", "-rename", self.path("a.txt"),
                                   directory=self.other)
        self.check_quiet_success(result)
        self.assertEqual(self.read("a.txt"), LARGE)
        self.assertEqual(os.listdir(self.other), [])


@launcher.root_only
class FullFileSystem(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        self.full = self.path("full")
        os.mkdir(self.full)
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "none", self.full],
                                 stderr=subprocess.PIPE, check=False)
        if mounted.returncode != 0:
            self.skipTest("cannot mount a small file system here: " + os.fsdecode(mounted.stderr).strip())
        self.addCleanup(subprocess.run, ["umount", self.full], check=True)

    def test_a_file_that_does_not_fit_stays_where_it_was(self):
        self.write("a.txt", LARGE)
        self.fyrn("-hash=MD5", "-rename", self.path("a.txt"), directory=self.full)
        self.assertEqual(self.read("a.txt"), LARGE)
        self.assertEqual(os.listdir(self.full), [])

    def test_files_that_fit_move_and_the_others_stay(self):
        contents = {f"{number}.txt": bytes([number]) * 300_000 for number in range(6)}
        for name, content in contents.items():
            self.write("from/" + name, content)
        self.fyrn("-hash=MD5", "-rename", self.path("from", "*.txt"), directory=self.full)
        moved = {}
        for name in os.listdir(self.full):
            with open(os.path.join(self.full, name), "rb") as file:
                moved[name] = file.read()
        self.assertEqual(moved, {md5(content) + ".txt": content for content in moved.values()})
        stayed = [self.read("from/" + name) for name in self.names("from")]
        self.assertEqual(sorted([*moved.values(), *stayed]), sorted(contents.values()))
        self.assertTrue(moved)
        self.assertTrue(stayed)


if __name__ == "__main__":
    unittest.main()
