# SPDX-License-Identifier: MIT
"""A quick selection of what test_renaming_under_fire_slow.py does at length, and targets that cannot take files."""
import errno
import os
import shutil
import subprocess
import unittest

import launcher
from expected import md5
from injected import LIBRARY, needs_library
from under_fire import UnderFireCase


@launcher.posix_only
class UnderFire(UnderFireCase):
    def test_killed_while_renaming(self):
        for option in ("-rename", "-renamedel"):
            self.kill_in_one_directory(option, 300, 8)

    def test_killed_while_moving_to_another_file_system(self):
        for option in ("-rename", "-renamedel"):
            self.kill_between_file_systems(option, 300, 8)

    def test_two_at_once(self):
        for option in ("-rename", "-renamedel"):
            self.race(option, 100, 4)

    def test_two_at_once_lose_nothing(self):
        for place in filter(None, (self.scratch, self.other)):
            self.race_over_distinct_files(place)

    def test_two_at_once_do_not_delete_both_of_two_equal_files(self):
        self.race_over_pairs()


@launcher.posix_only
class NoHardLinks(UnderFireCase):
    """A file system that knows neither the flag of renameat2 nor links, as the preloaded library plays it."""

    @staticmethod
    def failing(calls):
        return {"LD_PRELOAD": LIBRARY, "FYRN_FAULT_LOG": "-1", "FYRN_FAULT": f"fail {calls} 1 1000000 {errno.EINVAL}"}

    FAULT = failing("renameat2,link")

    @needs_library
    def test_where_no_way_is_left_nothing_is_renamed(self):
        self.build(20)
        self.seconds_of("-hash=MD5", "-rename", self.from_directory, environment=self.failing("renameat2,link,rename"))
        self.check(self.from_directory)
        self.assertEqual(len([name for name in os.listdir(self.from_directory) if len(name) < 32]), 20)

    @needs_library
    def test_files_are_renamed_nevertheless(self):
        for option in ("-rename", "-renamedel"):
            self.build(200)
            self.seconds_of("-hash=MD5", option, self.from_directory, environment=self.FAULT)
            self.check(self.from_directory)
            self.assertFalse([name for name in os.listdir(self.from_directory) if len(name) < 32])

    @needs_library
    def test_two_at_once_lose_nothing(self):
        for place in filter(None, (self.scratch, self.other)):
            self.race_over_distinct_files(place, environment=self.FAULT)

    @needs_library
    def test_killed(self):
        self.build(300)
        longest = self.seconds_of("-hash=MD5", "-rename", self.from_directory, environment=self.FAULT)
        for number in range(10):
            row = ("-hash=SHA1", "-hash=MD5")[number % 2]
            self.kill_at_random(longest, row, "-rename", self.from_directory, environment=self.FAULT)
            self.check(self.from_directory, placeholders=True)


class MountedCase(UnderFireCase):
    """The start directory is a small file system of its own."""

    def mount(self, *arguments, program="mount"):
        directory = self.path("mounted")
        os.mkdir(directory)
        done = subprocess.run([program, *arguments, directory], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              check=False)
        if done.returncode != 0:
            self.skipTest("cannot mount this here: " + os.fsdecode(done.stderr).strip())
        self.addCleanup(subprocess.run, ["umount", directory], check=True)
        return directory

    def move_all(self, target, option):
        self.build(300)
        self.seconds_of("-hash=MD5", option, os.path.join(self.from_directory, "*"), directory=target)


@launcher.root_only
class PoorTargets(MountedCase):
    def test_too_few_blocks(self):
        target = self.mount("-t", "tmpfs", "-o", "size=64k", "none")
        self.move_all(target, "-rename")
        self.assertEqual(self.check(self.from_directory, target), 0)
        self.assertTrue(os.listdir(target) and os.listdir(self.from_directory))

    def test_too_few_files(self):
        target = self.mount("-t", "tmpfs", "-o", "nr_inodes=50", "none")
        self.move_all(target, "-rename")
        self.assertEqual(self.check(self.from_directory, target), 0)
        self.assertTrue(os.listdir(target) and os.listdir(self.from_directory))

    def test_read_only(self):
        target = self.mount("-t", "tmpfs", "-o", "ro", "none")
        self.move_all(target, "-rename")
        self.check(self.from_directory)
        self.assertEqual(len(os.listdir(self.from_directory)), 300)

    def test_what_renamedel_cannot_move_it_deletes(self):
        """For whatever reason the move failed: deliberate, and what the usage text warns of."""
        target = self.mount("-t", "tmpfs", "-o", "ro", "none")
        self.move_all(target, "-renamedel")
        self.assertEqual(os.listdir(self.from_directory), [])

    def test_a_name_taken_by_a_directory(self):
        target = self.mount("-t", "tmpfs", "none")
        os.mkdir(os.path.join(target, md5(b"abc") + ".x"))
        self.contents = set()
        self.write("from/a.x", b"abc")
        self.seconds_of("-hash=MD5", "-rename", self.path("from", "a.x"), directory=target)
        self.assertEqual(sorted(os.listdir(target)), [md5(b"abc") + ".x", md5(b"abc") + "_00.x"])

    def mount_exfat(self):
        """With the kernel's driver or, where it has none, the one in user space."""
        if not shutil.which("mkfs.exfat"):
            self.skipTest("no mkfs.exfat here")
        image = self.path("image")
        with open(image, "wb") as file:
            file.truncate(64 << 20)
        subprocess.run(["mkfs.exfat", image], stdout=subprocess.DEVNULL, check=True)
        attached = subprocess.run(["losetup", "--find", "--show", image], capture_output=True, check=False)
        if attached.returncode != 0:
            self.skipTest("cannot attach an image here: " + os.fsdecode(attached.stderr).strip())
        device = os.fsdecode(attached.stdout).strip()
        self.addCleanup(subprocess.run, ["losetup", "--detach", device], check=True)
        with open("/proc/filesystems", encoding="ascii") as file:
            if "exfat" in file.read().split():
                return self.mount("-t", "exfat", device)
        if not shutil.which("mount.exfat-fuse"):
            self.skipTest("neither the kernel's exFAT nor exfat-fuse here")
        return self.mount(device, program="mount.exfat-fuse")

    def test_two_at_once_without_links_lose_nothing(self):
        self.race_over_distinct_files(self.mount_exfat())

    def test_names_in_another_case(self):
        """Where each spelling of a name looks like another file, too."""
        target = self.mount_exfat()
        digest = md5(b"abc")
        for arguments in (["*"], [digest.upper() + ".bin"], [digest + ".bin"], [os.path.join(target, "*")]):
            for option in ("-rename", "-renamedel"):
                with open(os.path.join(target, digest.upper() + ".bin"), "wb") as file:
                    file.write(b"abc")
                self.seconds_of("-hash=MD5", option, *arguments, directory=target)
                names = os.listdir(target)
                self.assertEqual([name.lower() for name in names], [digest + ".bin"], (option, arguments))
                with open(os.path.join(target, names[0]), "rb") as file:
                    self.assertEqual(file.read(), b"abc")

    def test_directories_in_another_case(self):
        target = self.mount_exfat()
        os.mkdir(os.path.join(target, "sub"))
        for number in range(6):
            option = ("-rename", "-renamedel")[number % 2]
            directory = ("sub", "SUB", ".")[number // 2]
            name = md5(b"%d" % number) + ".bin"
            with open(os.path.join(target, "sub", name), "wb") as file:
                file.write(b"%d" % number)
            self.seconds_of("-hash=MD5", option, os.path.join(target, "Sub", name),
                            directory=os.path.join(target, directory))
            with open(os.path.join(target, directory, name), "rb") as file:
                self.assertEqual(file.read(), b"%d" % number, (option, directory))
        self.assertEqual(len([name for _, _, files in os.walk(target) for name in files]), 6)

    def test_another_file_has_the_name_in_another_case(self):
        target = self.mount_exfat()
        digest = md5(b"abc")
        for option, left in (("-rename", [digest.upper(), digest + "_00"]), ("-renamedel", [digest.upper()])):
            for name in (digest.upper(), "z"):
                with open(os.path.join(target, name), "wb") as file:
                    file.write(b"abc")
            self.seconds_of("-hash=MD5", option, "z", directory=target)
            self.assertEqual(sorted(os.listdir(target)), left)
            for name in os.listdir(target):
                os.unlink(os.path.join(target, name))

    def test_a_file_system_without_links(self):
        target = self.mount_exfat()
        self.move_all(target, "-rename")
        self.check(self.from_directory, target)
        self.assertEqual(os.listdir(self.from_directory), [])
        moved = sorted(os.listdir(target))
        self.seconds_of("-hash=SHA1", "-rename", "*", directory=target)
        self.assertEqual({len(name.split(".")[0].split("_")[0]) for name in os.listdir(target)}, {40})
        self.seconds_of("-hash=MD5", "-renamedel", "*", directory=target)
        self.check(self.from_directory, target)
        self.assertEqual(sorted(os.listdir(target)), [name for name in moved if "_" not in name])


if __name__ == "__main__":
    unittest.main()
