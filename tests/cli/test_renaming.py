# SPDX-License-Identifier: MIT
"""Renaming by digest: names, collisions, and that nothing is ever lost."""
import os
import random
import shutil
import tempfile
import unittest

import launcher
from expected import md5, sha1, sha256


class RenamingCase(launcher.ScratchCase):
    def contents(self, directory="."):
        """Content by name of every file in a directory."""
        return {name: self.read(os.path.join(directory, name)) for name in self.names(directory)
                if os.path.isfile(self.path(directory, name))}


class NewNames(RenamingCase):
    def test_a_file_is_named_by_its_digest_and_extension(self):
        self.write("d/a.txt", b"abc")
        result = self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.contents("d"), {md5(b"abc") + ".txt": b"abc"})
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  " + md5(b"abc"))

    def test_only_the_last_extension_is_kept(self):
        self.write("d/a.tar.gz", b"1")
        self.write("d/.rc", b"2")
        self.write("d/none", b"3")
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.contents("d"), {md5(b"1") + ".gz": b"1", md5(b"2") + ".rc": b"2", md5(b"3"): b"3"})

    def test_the_last_selected_row_names_the_file(self):
        self.write("d/a", b"abc")
        self.fyrn("-hash=SHA2-256", "-rename", "-hash=MD5", "d")
        self.assertEqual(self.names("d"), [sha256(b"abc")])

    def test_without_the_option_nothing_is_renamed(self):
        self.write("a.txt", b"abc")
        self.fyrn("-hash=MD5", "-renam", "-rename=", "-renamedel ", "a.txt")
        self.assertEqual(self.names(), ["a.txt"])

    def test_options_are_matched_without_case(self):
        self.write("a", b"abc")
        self.fyrn("-hash=MD5", "-RENAME", "a")
        self.assertEqual(self.names(), [md5(b"abc")])

    def test_a_file_in_a_walk_stays_in_its_directory(self):
        self.write("top/a", b"1")
        self.write("top/mid/b", b"2")
        self.write("top/mid/low/c", b"3")
        self.fyrn("-hash=MD5", "-rename", "-subdirs", "top")
        self.assertEqual(self.contents("top"), {md5(b"1"): b"1"})
        self.assertEqual(self.contents("top/mid"), {md5(b"2"): b"2"})
        self.assertEqual(self.contents("top/mid/low"), {md5(b"3"): b"3"})

    def test_a_file_named_directly_moves_to_the_start_directory(self):
        self.write("elsewhere/a.txt", b"abc")
        self.fyrn("-hash=MD5", "-rename", os.path.join("elsewhere", "a.txt"))
        self.assertEqual(self.names("elsewhere"), [])
        self.assertEqual(self.contents(), {md5(b"abc") + ".txt": b"abc"})

    def test_a_file_named_with_its_full_path_moves_to_the_start_directory(self):
        self.write("elsewhere/a.txt", b"abc")
        os.mkdir(self.path("start"))
        self.fyrn("-hash=MD5", "-rename", self.path("elsewhere/a.txt"), directory=self.path("start"))
        self.assertEqual(self.contents("start"), {md5(b"abc") + ".txt": b"abc"})
        self.assertEqual(self.names("elsewhere"), [])

    def test_a_matched_file_moves_to_the_start_directory(self):
        self.write("elsewhere/a.txt", b"1")
        self.write("elsewhere/b.txt", b"2")
        self.fyrn("-hash=MD5", "-rename", os.path.join("elsewhere", "*.txt"))
        self.assertEqual(self.contents(), {md5(b"1") + ".txt": b"1", md5(b"2") + ".txt": b"2"})


class Collisions(RenamingCase):
    def test_equal_files_are_numbered(self):
        for name in ("d/a.x", "d/b.x", "d/c.x"):
            self.write(name, b"same")
        self.fyrn("-hash=MD5", "-rename", "d")
        digest = md5(b"same")
        self.assertEqual(self.names("d"), [digest + ".x", digest + "_00.x", digest + "_01.x"])

    def test_equal_files_with_other_extensions_do_not_collide(self):
        self.write("d/a.x", b"same")
        self.write("d/a.y", b"same")
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.names("d"), [md5(b"same") + ".x", md5(b"same") + ".y"])

    def test_equal_files_are_deleted_with_renamedel(self):
        for name in ("d/a.x", "d/b.x", "d/c.x"):
            self.write(name, b"same")
        self.fyrn("-hash=MD5", "-renamedel", "d")
        self.assertEqual(self.contents("d"), {md5(b"same") + ".x": b"same"})

    def test_the_later_option_decides(self):
        for directory in ("d", "e"):
            self.write(directory + "/a", b"same")
            self.write(directory + "/b", b"same")
        self.fyrn("-hash=MD5", "-renamedel", "-rename", "d")
        self.assertEqual(self.names("d"), [md5(b"same"), md5(b"same") + "_00"])
        self.fyrn("-hash=MD5", "-rename", "-renamedel", "e")
        self.assertEqual(self.names("e"), [md5(b"same")])

    def test_another_file_of_the_name_is_never_replaced(self):
        self.write("d/a", b"abc")
        self.write("d/e/inner", b"abc")
        self.write("d/" + sha1(b"abc"), b"something else")
        self.fyrn("-hash=SHA1", "-rename", os.path.join("d", "a"), directory=self.scratch)
        self.assertEqual(self.contents(), {sha1(b"abc"): b"abc"})
        self.write("d/a", b"abc")
        self.fyrn("-hash=SHA1", "-rename", "d")
        self.assertEqual(self.contents("d"), {sha1(b"something else"): b"something else", sha1(b"abc") + "_00": b"abc"})

    def test_a_directory_of_the_name_counts_as_taken(self):
        self.write("d/a", b"abc")
        os.mkdir(self.path("d", md5(b"abc")))
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.contents("d"), {md5(b"abc") + "_00": b"abc"})

    def test_a_file_keeps_its_name_when_all_numbers_are_taken(self):
        digest = md5(b"abc")
        self.write("d/z.txt", b"abc")
        for number in range(100):
            self.write(f"{digest}_{number:02}.txt", b"taken")
        self.write(digest + ".txt", b"taken")
        before = self.contents()
        self.fyrn("-hash=MD5", "-rename", os.path.join("d", "z.txt"))
        self.assertEqual(self.contents("d"), {"z.txt": b"abc"})
        self.assertEqual(self.contents(), before)

    def test_the_last_free_number_is_used(self):
        digest = md5(b"abc")
        self.write("d/z.txt", b"abc")
        for number in range(99):
            self.write(f"{digest}_{number:02}.txt", b"taken")
        self.write(digest + ".txt", b"taken")
        self.fyrn("-hash=MD5", "-rename", os.path.join("d", "z.txt"))
        self.assertEqual(self.names("d"), [])
        self.assertEqual(self.read(digest + "_99.txt"), b"abc")

    def test_a_second_run_changes_nothing(self):
        for number in range(20):
            self.write(f"d/{number}.x", b"%d" % (number % 7))
        for option in ("-rename", "-renamedel"):
            self.fyrn("-hash=MD5", option, "d")
            before = self.contents("d")
            self.fyrn("-hash=MD5", option, "d")
            self.assertEqual(self.contents("d"), before)
        self.assertEqual(before, {md5(b"%d" % n) + ".x": b"%d" % n for n in range(7)})

    def test_a_file_that_bears_its_name_already_is_never_deleted(self):
        self.write(md5(b"abc") + ".x", b"abc")
        for target in (md5(b"abc") + ".x", "*", os.path.join(".", md5(b"abc") + ".x")):
            for option in ("-rename", "-renamedel"):
                self.fyrn("-hash=MD5", option, target)
                self.assertEqual(self.contents(), {md5(b"abc") + ".x": b"abc"})

    def test_a_file_named_twice_is_not_lost(self):
        self.write("a", b"abc")
        self.fyrn("-hash=MD5", "-renamedel", "a", "a", md5(b"abc"))
        self.assertEqual(self.contents(), {md5(b"abc"): b"abc"})


class FailedDigests(RenamingCase):
    def test_a_file_that_cannot_be_opened_is_not_moved(self):
        """Its path leads nowhere, so that the move fails as well; the stale digest harms nothing."""
        self.write("a", b"abc")
        self.write("outer/inner/lost", b"lost")
        for option in ("-rename", "-renamedel"):
            self.fyrn("-hash=MD5", option, md5(b"abc") if option == "-renamedel" else "a",
                      os.path.join("outer", "inner"))
            self.assertEqual(self.contents(os.path.join("outer", "inner")), {"lost": b"lost"})
            self.assertEqual(self.contents(), {md5(b"abc"): b"abc"})

    @launcher.posix_only
    def test_an_unreadable_file_is_renamed_by_the_text_before(self):
        """Deliberate: the buffer is not cleared, so the bare extension, or the digest before, names the file."""
        os.chmod(self.write("d/locked.x", b"locked"), 0)
        self.fyrn_unprivileged("-hash=MD5", "-rename", "d")
        self.assertEqual(self.names("d"), [".x"])
        self.write("d/.a", b"abc")
        self.fyrn_unprivileged("-hash=MD5", "-rename", "d")
        self.assertEqual(self.names("d"), [md5(b"abc") + ".a", md5(b"abc") + ".x"])


@launcher.posix_only
class Links(RenamingCase):
    """A link is hashed like the file that it leads to, but neither it nor a file is moved or deleted for it."""

    def link(self, target, name):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        os.symlink(target, path)

    def assert_link(self, name, target):
        self.assertEqual(os.readlink(self.path(name)), target)

    def test_a_link_is_hashed_and_keeps_its_name(self):
        self.write("target", b"abc")
        self.link("../target", "d/link.x")
        for option in ("-rename", "-renamedel"):
            result = self.fyrn("-hash=MD5", option, "d")
            self.assert_lines(result, "Hashes: MD5 ", "", "link.x", "  " + md5(b"abc"))
            self.assertEqual(self.names("d"), ["link.x"])
        self.assert_link("d/link.x", "../target")
        self.assertEqual(self.read("target"), b"abc")

    def test_a_link_that_comes_before_its_file_costs_nothing(self):
        for option in ("-rename", "-renamedel"):
            for target in ("d", "d/*", "both"):
                shutil.rmtree(self.path("d"), ignore_errors=True)
                self.write("d/z.jpg", b"precious")
                self.link("z.jpg", "d/latest.jpg")
                targets = ("d/latest.jpg", "d/z.jpg") if target == "both" else (target,)
                self.fyrn("-hash=SHA2-256", option, *targets)
                home = "d" if target == "d" else "."
                self.assertEqual(self.contents(home), {sha256(b"precious") + ".jpg": b"precious"}, (option, target))
                self.assert_link("d/latest.jpg", "z.jpg")
                os.unlink(self.path(home, sha256(b"precious") + ".jpg"))

    def test_a_link_named_before_the_file_that_it_leads_to(self):
        for option in ("-rename", "-renamedel"):
            self.write("real.txt", b"precious")
            shutil.rmtree(self.path("d"), ignore_errors=True)
            self.link("../real.txt", "d/l.txt")
            self.fyrn("-hash=MD5", option, "d/l.txt", "real.txt")
            self.assertEqual(self.contents(), {md5(b"precious") + ".txt": b"precious"})
            self.assert_link("d/l.txt", "../real.txt")
            os.unlink(self.path(md5(b"precious") + ".txt"))

    def test_a_link_at_the_digest_name_deletes_nothing(self):
        digest = md5(b"precious")
        for target in ("z.jpg", "missing", "/", digest + ".jpg"):
            self.write("d/z.jpg", b"precious")
            self.link(target, f"d/{digest}.jpg")
            self.fyrn("-hash=MD5", "-renamedel", "d")
            self.assertEqual(self.read("d/z.jpg"), b"precious")
            self.assert_link(f"d/{digest}.jpg", target)
            self.fyrn("-hash=MD5", "-rename", "d")
            self.assertEqual(self.read(f"d/{digest}_00.jpg"), b"precious")
            self.assert_link(f"d/{digest}.jpg", target)
            self.assertEqual(len(self.names("d")), 2)
            shutil.rmtree(self.path("d"))

    def test_a_link_that_equals_a_file_of_the_digest_name_is_not_deleted(self):
        self.write("d/" + md5(b"abc"), b"abc")
        self.link(md5(b"abc"), "d/link")
        self.fyrn("-hash=MD5", "-renamedel", "d")
        self.assertEqual(self.names("d"), sorted([md5(b"abc"), "link"]))

    def test_hard_links_of_one_file_collide_like_copies(self):
        self.write("d/a", b"abc")
        os.link(self.path("d/a"), self.path("d/b"))
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.contents("d"), {md5(b"abc"): b"abc", md5(b"abc") + "_00": b"abc"})

    def test_a_walk_through_a_link_renames_in_the_directory_behind_it(self):
        self.write("real/a", b"abc")
        os.symlink("real", self.path("link"))
        self.fyrn("-hash=MD5", "-rename", "link")
        self.assertEqual(self.contents("real"), {md5(b"abc"): b"abc"})

    def test_a_special_file_is_neither_renamed_nor_deleted(self):
        os.mkfifo(self.path("pipe"))
        script = 'printf fed > pipe & "$@"; wait'
        for option in ("-rename", "-renamedel"):
            result = launcher.in_shell(script, "-hash=MD5", option, "pipe", directory=self.scratch, timeout=20)
            self.check_quiet_success(result)
            self.assertEqual(self.names(), ["pipe"])

    def test_nothing_under_proc_or_dev_is_moved(self):
        before = sorted(os.listdir("/dev"))
        self.fyrn("-hash=MD5", "-renamedel", "/proc/version", "/dev/null")
        self.assertEqual(self.names(), [])
        self.assertEqual(sorted(os.listdir("/dev")), before)


@launcher.windows_only
class WindowsFiles(RenamingCase):
    def test_a_file_moves_from_another_drive(self):
        self.write("elsewhere/a.txt", b"abc")
        self.write("elsewhere/b.txt", b"other")
        start = tempfile.mkdtemp(dir=os.path.join(os.environ["WINEPREFIX"], "drive_c"))
        self.addCleanup(shutil.rmtree, start)
        names = [launcher.shown(self.path("elsewhere", name)) for name in ("a.txt", "b.txt")]
        self.fyrn("-hash=MD5", "-rename", *names, directory=start)
        moved = {md5(b"abc") + ".txt": b"abc", md5(b"other") + ".txt": b"other"}
        self.assertEqual(self.contents("elsewhere"), {})
        self.assertEqual(self.contents(start), moved)
        for option, kept in (("-renamedel", {}), ("-rename", {md5(b"abc") + "_00.txt": b"abc"})):
            self.write("elsewhere/a.txt", b"abc")
            self.fyrn("-hash=MD5", option, names[0], directory=start)
            self.assertEqual(self.contents("elsewhere"), {})
            self.assertEqual(self.contents(start), moved | kept)

    def test_a_file_that_bears_its_name_in_full_is_never_deleted(self):
        name = md5(b"abc") + ".x"
        self.write(name, b"abc")
        for target in (launcher.shown(self.path(name)), ".\\" + name, name.upper()):
            for option in ("-rename", "-renamedel"):
                self.fyrn("-hash=MD5", option, target)
                self.assertEqual(self.contents(), {name: b"abc"}, target)

    def test_a_file_that_may_not_be_written_is_renamed_but_not_deleted(self):
        self.write("d/a", b"abc")
        os.chmod(self.write("d/b", b"abc"), 0o444)
        os.chmod(self.write("d/c", b"other"), 0o444)
        self.fyrn("-hash=MD5", "-renamedel", "d")
        self.assertEqual(self.contents("d"), {md5(b"abc"): b"abc", "b": b"abc", md5(b"other"): b"other"})

    @launcher.wine_differs("a name is not changed where only its case differs")
    def test_a_name_in_upper_case_becomes_lower_case(self):
        self.write("d/" + md5(b"abc").upper(), b"abc")
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.contents("d"), {md5(b"abc"): b"abc"})


@launcher.posix_only
class ClosedStandardStreams(RenamingCase):
    """The next file opened would take the number of a closed stream, and the report would go into it."""

    def test_files_are_not_damaged(self):
        for closed in ("<&-", ">&-", "2>&-", "<&- >&-", "<&- 2>&-", ">&- 2>&-", "<&- >&- 2>&-"):
            for number in range(5):
                self.write(f"d/{number}", b"content %d" % number)
            result = launcher.in_shell(f'"$@" {closed}', "-hash=MD5", "-hash=SHA1", "-renamedel", "d",
                                       directory=self.scratch, timeout=60)
            self.assertEqual(result.status, 0, closed)
            self.assertEqual(result.errors, b"", closed)
            contents = [b"content %d" % number for number in range(5)]
            self.assertEqual(self.contents("d"), {sha1(content): content for content in contents}, closed)


class ManyFiles(RenamingCase):
    SEED = 20260131
    COUNT = 1000 if launcher.WINDOWS else 10_000  # Wine reads the whole directory to look for one name

    def test_no_content_is_lost_and_second_runs_change_nothing(self):
        print(f"seed {self.SEED}")
        generator = random.Random(self.SEED)
        count = self.COUNT
        distinct = [generator.randbytes(generator.randrange(64)) + b"%d" % n for n in range(count * 2 // 3 + 1)]
        duplicates = [generator.choice(distinct[:50]) for _ in range(count // 10)] + distinct[count // 10:count // 3]
        contents = distinct + duplicates
        generator.shuffle(contents)
        self.assertEqual(len(contents), count)
        extensions = (".a", ".b", "")
        for number, content in enumerate(contents):
            self.write(f"d/{number}{extensions[len(content) % 3]}", content)

        self.run_twice("-rename")
        self.assertEqual(sorted(self.contents("d").values()), sorted(contents))
        self.run_twice("-renamedel")
        expected = {md5(content) + extensions[len(content) % 3]: content for content in distinct}
        self.assertEqual(self.contents("d"), expected)

    def run_twice(self, option):
        self.fyrn("-hash=MD5", option, "d")
        before = self.names("d")
        self.fyrn("-hash=MD5", option, "d")
        self.assertEqual(self.names("d"), before)


if __name__ == "__main__":
    unittest.main()
