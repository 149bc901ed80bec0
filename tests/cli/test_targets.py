# SPDX-License-Identifier: MIT
"""From arguments to files: names, patterns, directories, links and special files."""
import fcntl
import os
import shutil
import signal
import socket
import subprocess
import unittest

import launcher
from expected import EMPTY_MD5, md5


class TargetCase(launcher.ScratchCase):
    def found(self, *arguments, **options):
        """The names printed for the targets, in order; their contents are checked to be their names."""
        lines = [os.fsdecode(line) for line in self.fyrn("-hash=MD5", *arguments, **options).lines[2:]]
        names, digests = lines[0::2], lines[1::2]
        for name, digest in zip(names, digests, strict=True):
            self.assertEqual(digest, "  " + md5(os.fsencode(launcher.paths.basename(name))), name)
        return names

    def populate(self, *names):
        """Writes files whose content is their last name."""
        for name in names:
            self.write(name, os.fsencode(os.path.basename(name)))

    def outcome(self, *arguments, **options):
        return [os.fsdecode(line) for line in self.fyrn("-hash=MD5", *arguments, **options).lines[2:]]


class Names(TargetCase):
    def test_a_name_finds_its_file(self):
        self.populate("a.txt", "b")
        self.assertEqual(self.found("b", "a.txt"), ["b", "a.txt"])

    def test_what_does_not_exist_is_passed_over_in_silence(self):
        self.populate("a.txt")
        self.assertEqual(self.found("nothing", os.path.join("no", "thing"), "", "a.txt", "x*"), ["a.txt"])

    def test_an_unknown_option_is_a_target(self):
        self.populate("-unknown", "-renames")
        self.assertEqual(self.found("-unknown", "-renames", "-hash"), ["-unknown", "-renames"])
        self.assertEqual(self.names(), ["-renames", "-unknown"])

    def test_a_file_is_shown_with_its_path_at_verbosity_three(self):
        self.populate(os.path.join("deep", "a.txt"))
        self.assertEqual(self.found("-verbosity=3", os.path.join("deep", "a.txt")), [os.path.join("deep", "a.txt")])

    def test_names_are_split_at_their_last_dot_only_on_paper(self):
        names = ["noext", "a.b.c"] if launcher.WINDOWS else ["noext", "a.b.c", "x."]
        self.populate(*names, ".rc")
        self.assertEqual(self.found(*names, ".rc"), [*names, ".rc"])

    @launcher.posix_only
    def test_backslash_and_colon_are_ordinary_characters(self):
        self.populate("a\\b.txt", "c:d", "e:", "\\")
        self.assertEqual(self.found("a\\b.txt", "c:d", "e:", "\\"), ["a\\b.txt", "c:d", "e:", "\\"])

    @launcher.posix_only
    def test_names_are_case_sensitive(self):
        self.populate("a.txt")
        self.assertEqual(self.found("A.TXT"), [])

    @launcher.posix_only
    def test_a_trailing_separator_on_a_file_finds_nothing(self):
        self.populate("a.txt")
        self.assertEqual(self.found("a.txt/", "/", "//"), [])

    @launcher.posix_only
    def test_an_argument_of_260_characters_finds_nothing(self):
        directories = "d" * 100 + "/" + "e" * 100 + "/"
        self.populate(directories + "f" * 57, directories + "f" * 58)
        self.assertEqual(self.found(directories + "f" * 57), ["f" * 57])
        self.assertEqual(self.found(directories + "f" * 58), [])


class SelfAndParent(TargetCase):
    def test_neither_yields_a_file(self):
        self.populate("a.txt", os.path.join("sub", "b.txt"))
        for name in (".", ".."):
            self.assertEqual(self.outcome(name), [])
            self.assertEqual(self.outcome("-subdirs", name), [])
            self.assertEqual(self.outcome(os.path.join("sub", name)), [])


class Patterns(TargetCase):
    def test_a_pattern_finds_files_in_order(self):
        self.populate("b.txt", "a.txt", "c.dat")
        self.assertEqual(self.found("*.txt"), ["a.txt", "b.txt"])
        self.assertEqual(self.found("*"), ["a.txt", "b.txt", "c.dat"])
        self.assertEqual(self.found("*.*"), ["a.txt", "b.txt", "c.dat"])
        self.assertEqual(self.found("?.dat"), ["c.dat"])

    def test_star_dot_star_finds_names_without_a_dot(self):
        self.populate("noext", ".hidden")
        self.assertEqual(self.found("*.*"), [".hidden", "noext"])

    def test_a_pattern_below_a_directory(self):
        self.populate(os.path.join("sub", "a.txt"), os.path.join("sub", "b.dat"))
        self.assertEqual(self.found(os.path.join("sub", "*.txt")), ["a.txt"])
        self.assertEqual(self.found("-verbosity=3", os.path.join("sub", "*.txt")), [os.path.join("sub", "a.txt")])

    def test_a_directory_cannot_be_a_pattern(self):
        self.populate(os.path.join("sub", "a.txt"))
        self.assertEqual(self.found(os.path.join("s*", "a.txt")), [])

    def test_a_matched_directory_is_hashed_one_level_deep(self):
        self.populate("z.jpg", os.path.join("album.jpg", "x.txt"), os.path.join("album.jpg", "deep", "y.txt"))
        self.assertEqual(self.found("*.jpg"), ["x.txt", "z.jpg"])
        self.assertEqual(self.found("-subdirs", "*.jpg"), ["y.txt", "x.txt", "z.jpg"])

    @launcher.wine_differs("? is exactly one character, and *. finds every name")
    def test_rules_that_differ_from_a_shell(self):
        self.populate("a", "ab", "abc", "a.b", "a.b.c")
        self.assertEqual(self.found("a.*"), ["a", "a.b", "a.b.c"])
        self.assertEqual(self.found("*."), ["a", "ab", "abc"])
        self.assertEqual(self.found("???"), ["a", "ab", "abc"])
        self.assertEqual(self.found("a??"), ["a", "ab", "abc"])

    @launcher.posix_only
    def test_a_name_with_wildcard_characters_is_found_by_itself(self):
        self.populate("a*", "a?", "ab")
        self.assertEqual(self.found("a?"), ["a?"])
        self.assertEqual(self.found("a*"), ["a*"])

    @launcher.posix_only
    def test_patterns_are_case_sensitive(self):
        self.populate("A.txt", "b.TXT")
        self.assertEqual(self.found("*.txt"), ["A.txt"])

    @launcher.posix_only
    def test_order_is_by_upper_cased_name_then_by_bytes(self):
        self.populate("b", "A", "a", "B", "_", "1", "\u00e4")
        self.assertEqual(self.found("*"), ["1", "A", "a", "B", "b", "_", "\u00e4"])


class Directories(TargetCase):
    def setUp(self):
        super().setUp()
        self.populate(os.path.join("top", "b.txt"), os.path.join("top", "a.txt"),
                      os.path.join("top", "mid", "c.txt"), os.path.join("top", "mid", "low", "d.txt"))

    def test_one_level_without_subdirs(self):
        self.assertEqual(self.found("top"), ["a.txt", "b.txt"])

    def test_all_levels_with_subdirs(self):
        self.assertEqual(self.found("-SUBDIRS", "top"), ["a.txt", "b.txt", "c.txt", "d.txt"])

    def test_paths_are_absolute_without_a_directory_part(self):
        found = self.found("-subdirs", "-verbosity=3", "top")
        self.assertEqual(found[3], launcher.shown(self.path("top", "mid", "low", "d.txt")))

    def test_an_absolute_target_works_at_every_depth(self):
        self.assertEqual(self.found("-subdirs", self.path("top"), directory="/"),
                         ["a.txt", "b.txt", "c.txt", "d.txt"])

    def test_a_relative_target_with_a_directory_part_leads_nowhere_inside_the_walk(self):
        mid = os.path.join("top", "mid")
        self.assertEqual(self.outcome(mid), ["c.txt", "  "])
        self.assertEqual(self.outcome("-subdirs", mid), ["c.txt", "  "])  # "low" cannot be entered either
        self.assertEqual(self.outcome("-verbosity=3", mid), [launcher.paths.join(mid, "c.txt"), "  "])

    def test_a_relative_target_resolves_below_the_walked_directory(self):
        self.populate(os.path.join("top", "mid", "top", "mid", "c.txt"))
        self.assertEqual(self.found(os.path.join("top", "mid")), ["c.txt"])

    def test_the_current_directory_is_restored_after_each_walk(self):
        self.populate("last")
        self.assertEqual(self.found("top", os.path.join("top", "a.txt"), "-subdirs", "top", "last"),
                         ["a.txt", "b.txt", "c.txt", "d.txt", "a.txt", "a.txt", "b.txt", "c.txt", "d.txt", "last"])

    def test_an_empty_directory_yields_nothing(self):
        os.mkdir(self.path("empty"))
        self.assertEqual(self.found("empty"), [])
        self.assertEqual(self.found("-subdirs", "empty"), [])

    def test_hidden_files_are_hashed_like_any_other(self):
        self.populate(os.path.join("hidden", ".rc"))
        self.assertEqual(self.found("hidden"), [".rc"])

    @launcher.posix_only
    def test_a_trailing_separator_is_dropped(self):
        self.assertEqual(self.found("top/"), ["a.txt", "b.txt"])
        self.assertEqual(self.found("-verbosity=3", "-subdirs", "top//")[3], self.path("top/mid/low/d.txt"))
        self.assertEqual(self.found("-subdirs", self.path("top/")), ["a.txt", "b.txt", "c.txt", "d.txt"])

    def test_the_root_as_current_directory_gives_two_separators(self):
        lines = self.fyrn("-hash=CRC-16", "-verbosity=3", "etc", directory="/").lines[2:]
        self.assertTrue(lines)
        separator = launcher.paths.sep
        for name in lines[0::2]:
            self.assertTrue(os.fsdecode(name).startswith(f"{launcher.shown('/')}{separator}etc{separator}"), name)

    @launcher.posix_only
    def test_paths_are_cut_at_259_characters(self):
        base = self.path("x" * 100)
        self.populate(os.path.join(base, "y" * 100, "short"), os.path.join(base, "y" * 100, "z" * 80))
        lines = self.outcome("-subdirs", "-verbosity=3", base)
        digest = "  " + md5(b"short")
        cut = os.path.join(base, "y" * 100, "z" * 80)[:259]
        self.assertEqual(lines, [os.path.join(base, "y" * 100, "short"), digest, cut, digest])

    def test_a_walk_ends_where_paths_are_cut(self):
        """A path that is cut behind its last separator names the directory that is walked already."""
        for length in range(252, 260):
            parent = self.path("w", "x" * 100)
            directory = os.path.join(parent, "y" * (length - len(launcher.shown(parent)) - 1))
            for name in ("f", os.path.join("s", "g"), os.path.join("s", "t", "h")):
                self.write(os.path.join(directory, name))
            lines = self.outcome("-subdirs", "-verbosity=3", launcher.shown(self.path("w")), timeout=60)
            shutil.rmtree(self.path("w"))
            files = [line for line in lines if not line.startswith("  ")]
            self.assertGreater(len(files), 0, length)
            self.assertLessEqual(len(files), 3, length)

    @launcher.posix_only
    def test_a_directory_is_not_entered_when_there_is_no_way_back(self):
        deep = self.path(*["n" * 100] * 3)
        self.populate(os.path.join(deep, "here"))
        self.assertEqual(self.found(self.path("top"), "here", self.path("top", "a.txt"), directory=deep), ["a.txt"])


@launcher.windows_only
class WindowsNames(TargetCase):
    def test_both_separators_count(self):
        self.populate("sub/a.txt", "sub/deep/b.txt")
        self.assertEqual(self.found("sub\\a.txt", "sub/a.txt", "sub\\deep/b.txt"), ["a.txt", "a.txt", "b.txt"])
        self.assertEqual(self.outcome("-verbosity=3", "sub\\deep/b.txt"), ["sub\\deep/b.txt", "  " + md5(b"b.txt")])

    def test_a_full_path_with_its_drive(self):
        self.populate("sub/a.txt")
        path = launcher.shown(self.path("sub", "a.txt"))
        self.assertEqual(self.found("-verbosity=3", path), [path])
        self.assertEqual(self.found("-verbosity=3", launcher.shown(self.path("sub"))), [path])

    def test_a_drive_without_a_directory_leads_nowhere(self):
        """The current directory is put behind the drive, though it brings its own."""
        self.populate("a.txt")
        self.assertEqual(self.outcome("Z:a.txt"), ["a.txt", "  "])

    def test_case_does_not_count_and_the_name_is_shown_as_stored(self):
        self.populate("a.TXT", "SUB/b.txt")
        self.assertEqual(self.found("A.txt", "*.txt", "sub/B.TXT"), ["a.TXT", "a.TXT", "b.txt"])

    def test_a_separator_at_the_end_finds_nothing(self):
        self.populate("sub/a.txt")
        self.assertEqual(self.found("sub\\", "sub/", "sub\\a.txt\\", "\\", "Z:\\", "Z:"), [])

    def test_dots_and_blanks_at_the_end_do_not_count(self):
        self.populate("a.txt")
        self.assertEqual(self.found("a.txt.", "a.txt ", "a.txt. ."), ["a.txt"] * 3)

    def test_of_an_argument_whose_directory_fits_no_buffer_the_name_alone_is_kept(self):
        directories = os.path.join("d" * 100, "e" * 100, "f" * 100)
        self.populate(os.path.join(directories, "a.txt"), os.path.join("d" * 100, "a.txt"))
        argument = "\\\\?\\" + launcher.shown(self.path(directories, "a.txt"))
        self.assertEqual(self.outcome("-verbosity=3", argument), [launcher.shown(self.path("a.txt")), "  "])

    def test_patterns_arrive_as_typed(self):
        """A runtime that expanded them would turn this name into an option."""
        self.populate("-hash=SHA1")
        self.assertEqual(self.found("*"), ["-hash=SHA1"])


@launcher.posix_only
class DirectoriesWithoutRights(TargetCase):
    def test_a_directory_that_cannot_be_entered_is_passed_over(self):
        self.populate("d/closed/x", "d/z")
        os.chmod(self.path("d/closed"), 0)
        self.assertEqual(self.found_unprivileged("-subdirs", "d"), ["z"])

    def test_a_directory_that_cannot_be_read_is_passed_over(self):
        self.populate("d/unreadable/x", "d/z")
        os.chmod(self.path("d/unreadable"), 0o300)
        self.assertEqual(self.found_unprivileged("-subdirs", "d"), ["z"])

    def found_unprivileged(self, *arguments):
        lines = self.fyrn_unprivileged("-hash=MD5", *arguments).lines[2:]
        return [line.decode() for line in lines[0::2]]


@launcher.posix_only
class DirectoriesMovedUnderWay(TargetCase):
    """The opening of a file that is leased stops until the lease is given up, which makes time for a move."""

    def test_a_walk_without_a_way_back_stops_and_the_outer_one_goes_on(self):
        self.populate("d/mid/low/x", "d/mid/z", "d/z2", "last")
        lease = os.open(self.path("d/mid/low/x"), os.O_WRONLY)
        self.addCleanup(os.close, lease)
        signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGIO])
        self.addCleanup(signal.pthread_sigmask, signal.SIG_UNBLOCK, [signal.SIGIO])
        try:
            fcntl.fcntl(lease, fcntl.F_SETLEASE, fcntl.F_WRLCK)
        except OSError as error:
            self.skipTest(f"no leases on this file system: {error}")
        process = subprocess.Popen(launcher.command("-hash=MD5", "-renamedel", "-subdirs", "d", "last"),
                                   cwd=self.scratch, stdout=subprocess.PIPE)
        self.assertIsNotNone(signal.sigtimedwait([signal.SIGIO], 20), "the file was not opened")
        os.rename(self.path("d/mid/low"), self.path("moved-low"))
        os.rename(self.path("d/mid"), self.path("moved-mid"))
        self.populate("d/mid/z")  # another directory at the place of the way back
        fcntl.fcntl(lease, fcntl.F_SETLEASE, fcntl.F_UNLCK)
        output = process.communicate(timeout=20)[0]
        self.assertEqual(process.returncode, 0)
        self.assertEqual(output.split(b"\n")[2:-1:2], [b"x", b"z2", b"last"])
        self.assertEqual(self.names(), sorted(["d", md5(b"last"), "moved-low", "moved-mid"]))
        self.assertEqual(self.names("moved-low"), ["x"])
        self.assertEqual(self.names("moved-mid"), ["z"])
        self.assertEqual(self.names("d"), sorted([md5(b"z2"), "mid"]))
        self.assertEqual(self.names("d/mid"), ["z"])


@launcher.posix_only
class Links(TargetCase):
    def test_a_link_to_a_file_is_a_file(self):
        self.populate("d/real")
        os.symlink("real", self.path("d/link"))
        self.assertEqual(self.outcome("d"), ["link", "  " + md5(b"real"), "real", "  " + md5(b"real")])

    def test_a_link_to_a_directory_is_a_directory(self):
        self.populate("real/a")
        os.symlink("real", self.path("link"))
        self.assertEqual(self.found("link"), ["a"])
        self.assertEqual(self.found("-verbosity=3", "link"), [self.path("link/a")])

    def test_a_link_into_the_walk_is_followed_with_subdirs(self):
        self.populate("real/a", "d/b")
        os.symlink("../real", self.path("d/link"))
        self.assertEqual(self.found("d"), ["b"])
        self.assertEqual(self.found("-subdirs", "d"), ["b", "a"])

    def test_dangling_links_are_passed_over(self):
        self.populate("d/a")
        os.symlink("missing", self.path("d/dangling"))
        self.assertEqual(self.found("d", "d/dangling", "d/d*"), ["a"])

    def test_loops_end(self):
        self.populate("d/a", "d/e/b")
        os.symlink(".", self.path("d/self"))
        os.symlink("../..", self.path("d/e/up"))
        os.symlink(self.path("d"), self.path("d/e/absolute"))
        os.symlink("turn", self.path("d/turn"))
        self.assertEqual(self.found("-subdirs", "d"), ["a", "b"])

    def test_one_directory_reached_twice_is_walked_twice(self):
        self.populate("d/e/b")
        os.symlink("e", self.path("d/f"))
        self.assertEqual(self.found("-subdirs", "d"), ["b", "b"])


@launcher.posix_only
class SpecialFiles(TargetCase):
    def make_pipe(self, name):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        os.mkfifo(self.path(name))

    def fed_pipe(self, name, content):
        """A named pipe that holds `content` already; the descriptor keeps it there."""
        self.make_pipe(name)
        descriptor = os.open(self.path(name), os.O_RDWR)
        self.addCleanup(lambda: os.close(descriptor))
        os.write(descriptor, content)

    def test_a_pipe_met_in_a_walk_is_never_opened(self):
        self.populate("d/a", "d/z")
        self.make_pipe("d/pipe")
        os.symlink("pipe", self.path("d/link"))
        self.assertEqual(self.found("d", timeout=20), ["a", "z"])
        self.assertEqual(self.found("-subdirs", "d", timeout=20), ["a", "z"])

    def test_a_pipe_matched_by_a_pattern_is_never_opened(self):
        self.populate("a")
        self.make_pipe("pipe")
        self.assertEqual(self.found("*", timeout=20), ["a"])
        self.assertEqual(self.found("pi*", timeout=20), [])

    def test_a_pipe_in_a_walk_keeps_its_content(self):
        self.fed_pipe("d/pipe", b"kept")
        self.assertEqual(self.found("d", timeout=20), [])
        descriptor = os.open(self.path("d/pipe"), os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, descriptor)
        self.assertEqual(os.read(descriptor, 100), b"kept")

    def test_a_socket_is_passed_over(self):
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        os.mkdir(self.path("d"))
        old = os.getcwd()
        os.chdir(self.path("d"))  # the name of a socket is limited to about 100 characters
        listener.bind("socket")
        os.chdir(old)
        self.assertEqual(self.outcome("d", "d/socket"), [])

    def test_standard_input_as_a_pipe(self):
        self.assertEqual(self.outcome("/dev/stdin", stdin=None, input=b"piped"), ["stdin", "  " + md5(b"piped")])

    def test_standard_input_as_a_file(self):
        self.write("a", b"content")
        with open(self.path("a"), "rb") as file:
            self.assertEqual(self.outcome("/dev/stdin", stdin=file), ["stdin", "  " + md5(b"content")])

    def test_a_device_named_exactly_is_read(self):
        self.assertEqual(self.outcome("/dev/null"), ["null", "  " + EMPTY_MD5])

    def test_a_pipe_can_be_read_once(self):
        lines = self.fyrn("-hash=MD4", "-hash=MD5", "-hash=SHA1", "-hash=SHA2-256", "/dev/stdin",
                          stdin=None, input=b"piped").lines
        # MD4 gets the content (its digest is not in Python everywhere); MD5 repeats the
        # line, as it always prints; the SHA rows are silent.
        self.assertEqual(lines[2], b"stdin")
        self.assertEqual(len(lines), 5)
        self.assertEqual(lines[3], lines[4])

    def test_a_named_pipe_is_read(self):
        self.make_pipe("pipe")
        script = 'printf fed > pipe & "$@"; wait'
        result = launcher.in_shell(script, "-hash=MD5", "pipe", directory=self.scratch, timeout=20)
        self.check_quiet_success(result)
        self.assert_lines(result, "Hashes: MD5 ", "", "pipe", "  " + md5(b"fed"))

    def test_two_named_pipes_are_read_in_turn(self):
        self.make_pipe("one")
        self.make_pipe("two")
        script = '(printf 1 > one; printf 2 > two) & "$@"; wait'
        result = launcher.in_shell(script, "-hash=MD5", "one", "two", "one", directory=self.scratch, timeout=20)
        self.check_quiet_success(result)
        self.assert_lines(result, "Hashes: MD5 ", "", "one", "  " + md5(b"1"), "two", "  " + md5(b"2"),
                          "one", "  " + md5(b"2"))

    def test_special_files_stay_where_they_are_when_renaming(self):
        result = self.fyrn("-hash=MD5", "-renamedel", "/dev/null", "/dev/stdin", stdin=None, input=b"piped")
        self.assertEqual(len(result.lines), 6)
        self.assertTrue(os.path.exists("/dev/null"))
        self.assertEqual(self.names(), [])


if __name__ == "__main__":
    unittest.main()
