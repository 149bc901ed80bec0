# SPDX-License-Identifier: MIT
"""Which files are hashed, and in which order: walks, rules, names from files."""
import os
import subprocess
import unittest

from program import SumCase, native_only, posix_only


class Trees(SumCase):
    FILES = ("a.txt", "a/1", "a/deep/2.o", "a-x/3", "b/.hidden", "b/4.O", "b c/5", "-", "z.o")

    def setUp(self):
        super().setUp()
        for name in self.FILES:
            self.write("tree/" + name, name.encode())

    def names(self, *arguments, status=0, **options):
        """The names in the lines of a run, and what it said on standard error."""
        result = self.fyrnsum("-z", *arguments, **options)
        self.assertEqual(result.status, status, result)
        self.errors = result.errors.decode(errors="surrogateescape")
        lines = result.output.removesuffix(b"\0").split(b"\0") if result.output else []
        return [os.fsdecode(line[66:]) for line in lines]

    def sorted_paths(self, root="tree"):
        return sorted((root + "/" + name for name in self.FILES), key=os.fsencode)

    def test_the_order_is_that_of_the_bytes_of_the_paths(self):
        self.assertEqual(self.names("-r", "tree"), self.sorted_paths())
        self.assertEqual(self.names("-r", "tree")[:4], ["tree/-", "tree/a-x/3", "tree/a.txt", "tree/a/1"])

    def test_operands_keep_their_order_and_spelling(self):
        self.assertEqual(self.names("-r", "tree/z.o", "tree/a/", "./tree/a", "tree/a.txt"),
                         ["tree/z.o", "tree/a/1", "tree/a/deep/2.o", "./tree/a/1", "./tree/a/deep/2.o", "tree/a.txt"])
        self.assertEqual(self.names("-r", ".", directory=self.path("tree/a")), ["./1", "./deep/2.o"])

    def test_without_the_option_a_directory_is_an_error(self):
        self.check(self.fyrnsum("tree"), "", "fyrnsum: tree: Is a directory\n", 1)

    def test_what_cannot_be_read_is_told_and_the_run_goes_on(self):
        self.assertEqual(self.names("-r", "tree/z.o", "no such", "tree/-", status=1), ["tree/z.o", "tree/-"])
        self.assertEqual(self.errors, "fyrnsum: 'no such': No such file or directory\n")

    @posix_only
    def test_links_are_passed_over_unless_followed(self):
        os.symlink("../z.o", self.path("tree/a/link"))
        os.symlink("../b", self.path("tree/a/into"))
        os.symlink("nowhere", self.path("tree/a/broken"))
        self.assertEqual(self.names("-r", "tree/a"), ["tree/a/1", "tree/a/deep/2.o"])
        self.assertEqual(self.names("-rL", "tree/a", status=1),
                         ["tree/a/1", "tree/a/deep/2.o", "tree/a/into/.hidden", "tree/a/into/4.O", "tree/a/link"])
        self.assertEqual(self.errors, "fyrnsum: tree/a/broken: No such file or directory\n")
        self.assertEqual(self.names("-r", "tree/a/into"), ["tree/a/into/.hidden", "tree/a/into/4.O"])

    @posix_only
    def test_a_link_that_leads_up_ends_there(self):
        os.symlink("..", self.path("tree/a/up"))
        self.assertEqual(self.names("-rL", "tree/a", status=1)[:2], ["tree/a/1", "tree/a/deep/2.o"])
        self.assertIn("tree/a/up/a: leads back to a directory above it\n", self.errors)

    @posix_only
    def test_pipes_and_devices_in_a_tree_are_not_opened(self):
        os.mkfifo(self.path("tree/a/pipe"))
        self.assertEqual(self.names("-r", "tree/a", timeout=20), ["tree/a/1", "tree/a/deep/2.o"])

    def test_rules_are_held_against_names_or_paths_and_the_last_match_counts(self):
        def without(*names):
            return [path for path in self.sorted_paths() if path not in names]

        for rules, expected in (
                (["--exclude=*.o"], without("tree/a/deep/2.o", "tree/z.o")),
                (["--exclude=deep"], without("tree/a/deep/2.o")),
                (["--exclude=a/deep"], without("tree/a/deep/2.o")),
                (["--exclude=tree/a/*"], without("tree/a/1", "tree/a/deep/2.o")),
                (["--exclude=tree"], self.sorted_paths()),
                (["--include=*.[oO]"], ["tree/a/deep/2.o", "tree/b/4.O", "tree/z.o"]),
                (["--include=*.o", "--exclude=z*"], ["tree/a/deep/2.o"]),
                (["--exclude=*.o", "--include=z.o"], without("tree/a/deep/2.o")),
                (["--exclude=?"], ["tree/a.txt", "tree/z.o"])):
            with self.subTest(rules):
                self.assertEqual(self.names("-r", "tree", *rules), expected)

    def test_rules_come_from_files_too(self):
        self.write("rules", b"*.o\n\nb c\n")
        self.assertEqual(self.names("-r", "tree", "--exclude-from=rules"),
                         [path for path in self.sorted_paths() if path[-2:] != ".o" and "b c" not in path])
        self.check(self.fyrnsum("--exclude-from=none"), "", "fyrnsum: none: No such file or directory\n", 1)

    @posix_only
    @native_only
    def test_other_file_systems_are_left_out_on_demand(self):
        if os.stat("/proc").st_dev == os.stat("/proc/sys").st_dev or not os.path.isdir("/dev/shm"):
            self.skipTest("needs a file system mounted below /dev")
        with open("/dev/shm/fyrnsum-test", "wb"):
            pass
        self.addCleanup(os.remove, "/dev/shm/fyrnsum-test")
        rules = ("--include=fyrnsum-test",)
        self.assertEqual(self.names("-r", "/dev", *rules), ["/dev/shm/fyrnsum-test"])
        self.assertEqual(self.names("-rx", "/dev", *rules), [])

    def test_names_come_from_files(self):
        self.write("list", b"tree/z.o\n\ntree/a/1")
        self.write("list0", b"tree/z.o\0tree/a\0")
        self.assertEqual(self.names("--files-from=list"), ["tree/z.o", "tree/a/1"])
        self.assertEqual(self.names("-r", "--files0-from=list0"), ["tree/z.o", "tree/a/1", "tree/a/deep/2.o"])
        self.assertEqual(self.names("--files0-from=-", stdin=b"tree/z.o\0-\0", status=1), ["tree/z.o"])
        self.assertIn("no file name of '-' is allowed", self.errors)
        self.assertEqual(self.names("--files0-from=-", stdin=b"\0tree/z.o", status=1), ["tree/z.o"])
        self.assertEqual(self.errors, "fyrnsum: -: 1: invalid zero-length file name\n")
        self.assertEqual(self.names("--files-from=-", stdin=b"x" * 100000 + b"\ntree/z.o\n", status=1), ["tree/z.o"])
        self.check(self.fyrnsum("--files-from=none"), "", "fyrnsum: none: No such file or directory\n", 1)
        self.check(self.fyrnsum("--files-from=" + os.devnull), "")

    @posix_only
    def test_a_directory_that_cannot_be_entered_is_told(self):
        if os.geteuid() == 0:
            self.skipTest("root may enter every directory")
        os.chmod(self.path("tree/a"), 0)
        self.addCleanup(os.chmod, self.path("tree/a"), 0o755)
        self.names("-r", "tree", status=1)
        self.assertEqual(self.errors, "fyrnsum: tree/a: Permission denied\n")

    @posix_only
    @native_only
    def test_find_and_sort_agree(self):
        found = subprocess.run("find tree -type f | LC_ALL=C sort", shell=True, cwd=self.scratch, capture_output=True,
                               check=True).stdout.decode().splitlines()
        self.assertEqual(self.names("-r", "tree"), found)


if __name__ == "__main__":
    unittest.main()
