# SPDX-License-Identifier: MIT
"""A quick selection of what test_injected_faults_slow.py does ten thousand times, and the faults that once did harm."""
import errno
import os
import random
import resource
import shutil
import unittest

import launcher
from expected import sha1
from injected import CONTENTS, SEED, SYSTEM_TROUBLE, Fault, InjectedCase


class EveryFault(InjectedCase):
    def test_each_of_the_first_allocations_fails_in_turn(self):
        self.build_tree()
        whole = self.run_with(Fault("none"), "-hash=SHA1", "-subdirs", self.path("d")).splitlines()
        self.assertEqual(len(whole), 2 + 2 * len(CONTENTS))
        for number in range(1, 201):
            fault = Fault(f"fail malloc {number} 1 {errno.ENOMEM}")
            left = iter(whole)
            *lines, last = self.run_with(fault, "-hash=SHA1", "-subdirs", self.path("d")).split("\n")
            for line in lines:
                self.assertTrue(line in left, (fault, line))  # some may be missing; none is wrong or out of order
            self.assertTrue(any(line.startswith(last) for line in whole), (fault, last))
        self.assertGreater(self.injected, 20)

    def check_one_loss(self, whole, left, fault):
        """Of a report one file may be missing, or all files of one directory, and nothing else."""
        missing = [line for line in whole if line not in left]
        self.assertEqual(left, [line for line in whole if line not in missing], fault)
        directories = {os.path.dirname(line) for line in missing if line.startswith("/")}
        self.assertLessEqual(len(directories), 1, fault)
        if len(missing) > 2:
            self.assertEqual(len(missing), 2 * self.FILES, fault)

    FILES = 60

    def test_an_allocation_that_fails_costs_one_file_or_one_directory(self):
        for directory in ("d", "e", "f", "g"):
            for number in range(self.FILES):
                name = f"{directory}/{number:0100}"
                self.write(name, name.encode())
        targets = [self.path(name) for name in ("d", "e", "f", "g/*")]
        _, _, *whole = self.run_with(Fault("none"), "-hash=SHA1", "-verbosity=3", *targets).splitlines()
        self.assertEqual(len(whole), 4 * 2 * self.FILES)
        silent = 0
        for number in range(1, 2000):
            before = self.injected
            fault = Fault(f"fail malloc {number} 1 {errno.ENOMEM}")
            lines = self.run_with(fault, "-hash=SHA1", "-verbosity=3", *targets).splitlines()
            if self.injected == before:
                break
            if lines:
                self.check_one_loss(whole, lines[2:], fault)
            else:
                silent += 1  # there was no memory for the command line itself
        self.assertLess(silent, 20)
        self.assertGreater(number, 4 * self.FILES)

    def test_a_hundred_faults_while_hashing(self):
        print(f"seed {SEED}")
        plans = self.random_plans(random.Random(SEED))
        while self.injected < 100:
            self.check_report(next(plans))

    def test_a_hundred_faults_while_renaming(self):
        print(f"seed {SEED}")
        plans = self.random_plans(random.Random(SEED + 1))
        while self.injected < 100:
            fault = next(plans)
            self.check_renaming(fault, "-rename")
            self.check_renaming(fault, "-renamedel")


class Reading(InjectedCase):
    """One file, and what is promised for one failure each."""

    ROWS = ("-hash=CRC-32", "-hash=SHA1")

    def test_a_read_error_ends_the_file_there(self):
        self.write("f", CONTENTS["a.txt"])
        output = self.run_with(Fault("eio 4096"), "-hash=SHA1", "f")
        self.assertEqual(output.splitlines()[2:], ["f", "  " + sha1(CONTENTS["a.txt"][:4096])])
        self.assertEqual(self.injected, 1)

    def test_a_file_that_was_not_read_to_its_end_is_neither_renamed_nor_deleted(self):
        for option in ("-rename", "-renamedel"):
            self.write("d/a", b"same start, a")
            self.write("d/b", b"same start, b")
            self.run_with(Fault("eio 10"), "-hash=SHA1", option, "d")
            self.assertEqual(self.names("d"), ["a", "b"])

    def test_a_file_that_trouble_of_the_system_kept_closed_is_neither_renamed_nor_deleted(self):
        for call in ("open", "stat"):
            for error in SYSTEM_TROUBLE:
                for option in ("-rename", "-renamedel"):
                    self.write("d/a", b"a")
                    self.write("d/b", b"b")
                    # The files are named, so that each is looked at, opened and moved in turn.
                    for number in range(1, 30):
                        self.run_with(Fault(f"fail {call} {number} 1 {error}"), "-hash=SHA1", option, "d/a", "d/b",
                                      directory=self.scratch)
                        contents = {self.read(name) for name in ("d/a", "d/b") if os.path.exists(self.path(name))}
                        names = set(os.listdir(self.scratch))
                        contents |= {self.read(name) for name in names if len(name) >= 40}
                        if call == "open":
                            self.assertEqual(contents, {b"a", b"b"}, (call, error, option, number))
                        for name in names:
                            if len(name) >= 40:
                                self.assertTrue(name.startswith(sha1(self.read(name))), name)
                                os.unlink(self.path(name))
                        self.write("d/a", b"a")
                        self.write("d/b", b"b")

    def test_only_the_file_that_trouble_kept_from_being_looked_at_keeps_its_name(self):
        names = ["a", "b", "c", "d"]
        for targets in ([self.path("w")], [os.path.join("w", name) for name in names]):
            for error in SYSTEM_TROUBLE:
                kept = 0
                for number in range(1, 30):
                    for name in names:
                        self.write("w/" + name, name.encode())
                    # Both the opening of a file and the look at what stands in its way fail.
                    fault = Fault(f"fail open,stat {number} 2 {error}")
                    output = self.run_with(fault, "-hash=SHA1", "-rename", *targets)
                    listed = [line for line in output.splitlines()[2:] if not line.startswith("  ")]
                    left = [name for name in listed if os.path.exists(self.path("w", name))]
                    # The first call that fails may be the last look at a file that was hashed, the second one the
                    # opening of the next file.
                    hashed = [name for name in left if "  " + sha1(name.encode()) in output]
                    self.assertLessEqual(max(len(hashed), len(left) - len(hashed)), 1, (fault, targets))
                    kept += len(left)
                    for directory in (self.path("w"), self.scratch):
                        for name in os.listdir(directory):
                            if len(name) >= 40:
                                path = os.path.join(directory, name)
                                with open(path, "rb") as file:
                                    self.check_name(name, file.read(), (fault, targets))
                                os.unlink(path)
                self.assertGreater(kept, 0, (error, targets))

    def test_a_file_whose_opening_found_no_memory_keeps_its_name(self):
        for number in range(1, 60):
            for name in ("a.txt", "b.txt"):
                self.write("w/" + name, name.encode())
            fault = Fault(f"fail malloc {number} 1 {errno.ENOMEM}")
            self.run_with(fault, "-hash=SHA1", "-rename", self.path("w"))
            for name in self.names("w"):
                if name not in ("a.txt", "b.txt"):
                    self.assertEqual(name, sha1(self.read("w/" + name)) + ".txt", fault)
                    os.unlink(self.path("w", name))

    def test_files_that_cannot_be_looked_at_once_they_are_open_use_up_no_descriptors(self):
        names = [f"f{number:02}" for number in range(60)]
        for name in names:
            self.write(name, name.encode())
        few = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (30, 30))}
        lines = self.run_with(Fault(f"fail fstat 1 59 {errno.EIO}"), "-hash=SHA1", *names, **few).splitlines()
        self.assertEqual(self.injected, 59)
        self.assertEqual(lines[2:], [*names, "  " + sha1(b"f59")])

    def test_interrupted_calls_change_nothing(self):
        self.write("f", CONTENTS["a.txt"])
        plain = launcher.run("-hash=ALL", "f", directory=self.scratch).output.decode()
        for call in ("read", "open"):
            for count in (1, 2, 50):
                self.assertEqual(self.run_with(Fault(f"storm {call} {count}"), "-hash=ALL", "f"), plain)
        self.assertGreater(self.injected, 1000)

    def test_short_reads_change_no_digest_of_any_row(self):
        self.write("f", CONTENTS["a.txt"])
        plain = launcher.run("-hash=ALL", "f", directory=self.scratch).output.decode()
        for count in (1, 3, 62, 63, 64, 65, 127, 1000, 4096):
            self.assertEqual(self.run_with(Fault(f"short read {count}"), "-hash=ALL", "f"), plain, count)


class Walking(InjectedCase):
    """What a walk is told by the system, and how it comes back."""

    def listed(self, output):
        """File names and the SHA1 lines below them."""
        return output.splitlines()[2:]

    def line(self, content):
        return "  " + sha1(content)

    def test_a_file_system_that_tells_no_kinds_is_walked_like_any_other(self):
        self.build_tree()
        os.mkfifo(self.path("d/pipe"))
        os.symlink("s/f.txt", self.path("d/link"))
        os.symlink("s/t", self.path("d/directory"))
        os.symlink("missing", self.path("d/dangling"))
        for arguments in (("-subdirs", "d"), ("d",), ("d/*",)):
            plain = self.run_with(Fault("none"), "-hash=SHA1", "-verbosity=3", *arguments)
            self.assertGreater(len(self.listed(plain)), 8)
            before = self.injected
            self.assertEqual(self.run_with(Fault("untyped readdir"), "-hash=SHA1", "-verbosity=3", *arguments), plain)
            self.assertGreater(self.injected, before)

    def test_a_pipe_that_takes_a_files_place_during_a_walk_is_not_waited_for(self):
        for number in range(1, 12):
            for name in ("a", "b", "c"):
                self.write("w/" + name, name.encode())
            output = self.run_with(Fault(f"pipe open,stat {number} {self.path('w', 'b')}"), "-hash=SHA1",
                                   self.path("w"))
            for name in ("a", "c"):
                self.assertIn(self.line(name.encode()), self.listed(output), number)
            os.unlink(self.path("w", "b"))
        self.assertGreater(self.injected, 5)

    # The first call enters the first directory, the next two would lead back.
    LOST = Fault(f"fail chdir,fchdir 2 2 {errno.EACCES}")

    def build_two_places(self):
        """A start directory, and files elsewhere."""
        shutil.rmtree(self.path("start"), ignore_errors=True)
        shutil.rmtree(self.path("other"), ignore_errors=True)
        for name in ("start/near", "start/p/near", "other/one/a", "other/two/b", "other/c"):
            self.write(name, name.encode())

    def walk(self, fault, *arguments):
        self.build_two_places()
        return self.listed(self.run_with(fault, "-hash=SHA1", *arguments, directory=self.path("start")))

    def test_where_the_way_back_is_lost_full_paths_are_still_processed_and_relative_ones_are_not(self):
        one, two, c = self.path("other/one"), self.path("other/two"), self.path("other/c")
        arguments = (one, "near", "./near", "p", "*", two, "near", c)
        first = ["a", self.line(b"other/one/a")]
        near = ["near", self.line(b"start/near")]
        below = ["near", self.line(b"start/p/near")]
        others = ["b", self.line(b"other/two/b")], ["c", self.line(b"other/c")]
        self.assertEqual(self.walk(Fault("none"), *arguments),
                         [*first, *near, *near, *below, *near, *below, *others[0], *near, *others[1]])
        self.assertEqual(self.walk(self.LOST, *arguments), [*first, *others[0], *others[1]])

    def test_where_the_way_back_is_lost_the_matches_of_a_full_path_are_still_processed(self):
        lines = ["c", self.line(b"other/c"), "a", self.line(b"other/one/a"), "b", self.line(b"other/two/b")]
        self.assertEqual(self.walk(self.LOST, self.path("other/*")), lines)

    def test_where_the_way_back_is_lost_a_file_named_directly_keeps_its_name(self):
        """Nobody can tell into which directory it would be moved."""
        for option in ("-rename", "-renamedel"):
            self.walk(self.LOST, option, self.path("other/one"), self.path("other/c"), self.path("other/two"))
            self.assertEqual(self.names("start"), ["near", "p"])
            self.assertEqual(self.names("other"), ["c", "one", "two"])
            self.assertEqual(self.names("other/one"), [sha1(b"other/one/a")])
            self.assertEqual(self.names("other/two"), [sha1(b"other/two/b")])


class Moving(InjectedCase):
    """The ways round a rename that fails: a link, a placeholder, a copy."""

    def test_every_way_leads_to_the_digest_name(self):
        for error in (errno.EXDEV, errno.EINVAL, errno.ENOSYS, errno.EOPNOTSUPP):
            with self.subTest(error=os.strerror(error)):
                self.write("d/a.txt", CONTENTS["e.bin"])
                self.run_with(Fault(f"fail renameat2 1 1 {error}"), "-hash=SHA1", "-rename", "d")
                name = sha1(CONTENTS["e.bin"]) + ".txt"
                self.assertEqual(self.names("d"), [name])
                self.assertEqual(self.read("d/" + name), CONTENTS["e.bin"])
                os.unlink(self.path("d", name))
        self.assertEqual(self.injected, 4)


if __name__ == "__main__":
    unittest.main()
