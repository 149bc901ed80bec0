# SPDX-License-Identifier: MIT
"""--audit and --update one by one: what is said, what is trusted, and what happens to the list."""
import hashlib
import os
import subprocess
import time
import unittest

from program import LAUNCHER, PROGRAM, SumCase, native_only, posix_only

OLD = 1_600_000_000 * 10**9
SECOND = 10**9


def sha256(content):
    return hashlib.sha256(content).hexdigest()


class TreeTest(SumCase):
    def write_old(self, name, content, time_ns=OLD):
        self.write(name, content)
        os.utime(self.path(*name.split("/")), ns=(time_ns, time_ns))

    def assert_run(self, arguments, status, output, errors=""):
        result = self.fyrnsum(*arguments)
        shown = [os.fsdecode(text.replace(b"\r\n", b"\n")) for text in (result.output, result.errors)]
        self.assertEqual((result.status, *shown), (status, output, errors))


class Audit(TreeTest):
    def setUp(self):
        super().setUp()
        for name, content in (("a", b"one"), ("b", b"two"), ("d/c", b"three")):
            self.write_old("tree/" + name, content)
        self.check(self.fyrnsum("-r", "tree", "-o", "LIST"), "")

    def test_words_and_totals(self):
        self.assert_run(["--audit=LIST", "tree"], 0, "", "fyrnsum: 3 OK\n")
        os.rename(self.path("tree/b"), self.path("tree/d/it's b"))
        self.write("tree/a", b"changed")
        self.write("tree/copy", b"three")
        self.assert_run(["--audit=LIST", "tree"], 1, "tree/a: CHANGED\ntree/copy: COPY of tree/d/c\n"
                        "\"tree/d/it's b\": RENAMED from tree/b\n", "fyrnsum: 1 OK; 1 CHANGED; 1 RENAMED; 1 COPY\n")
        self.assert_run(["--audit=LIST", "tree", "--quiet", "--exclude=d"], 1, "tree/a: CHANGED\n"
                        "tree/b: MISSING\ntree/copy: NEW\n")
        self.assert_run(["--audit=LIST", "tree", "--status"], 1, "")

    def test_every_digest_of_a_file_counts(self):
        with open(self.path("LIST"), "a", encoding="ascii") as file:
            file.write("0" * 128 + "  tree/a\n")
        for arguments in ([], ["--quick"]):
            self.assert_run(["--audit=LIST", "tree", *arguments], 1, "tree/a: CHANGED\n",
                            "fyrnsum: 2 OK; 1 CHANGED\n")

    def test_the_report_does_not_replace_the_list(self):
        before = self.read("LIST")
        for option in ("--audit", "--update"):
            for output in ("LIST", "tree/../LIST"):
                self.assert_run([f"{option}=LIST", "-o", output, "tree"], 2, "",
                                f"fyrnsum: {output}: the output file is the list\n")
        self.assertEqual(self.read("LIST"), before)

    def test_only_what_a_run_itself_makes_is_overlooked(self):
        self.write("tree/.fyrnsum-evil", b"new")
        self.check(self.fyrnsum("-r", "tree", "-o", "tree/LIST"), "")
        self.assert_run(["--audit=tree/LIST", "tree"], 0, "", "fyrnsum: 4 OK\n")
        self.write("tree/.fyrnsum-evil2", b"newer")
        self.assert_run(["--audit=tree/LIST", "tree"], 1, "tree/.fyrnsum-evil2: NEW\n",
                        "fyrnsum: 4 OK; 1 NEW\n")

    @posix_only
    def test_what_is_listed_behind_links_is_compared(self):
        os.symlink("a", self.path("tree/link"))
        os.symlink("d", self.path("tree/e"))
        with open(self.path("LIST"), "a", encoding="ascii") as file:
            file.write(f"{sha256(b'one')}  tree/link\n{sha256(b'three')}  tree/e/c\n{sha256(b'x')}  tree/e/gone\n")
        self.assert_run(["--audit=LIST", "tree"], 1, "tree/e/gone: MISSING\n", "fyrnsum: 5 OK; 1 MISSING\n")

    @posix_only
    def test_nothing_is_written_or_read_through_what_stands_beside_the_list(self):
        self.write("mine", b"precious")
        before = self.read("LIST")
        for name in ("LIST~", "LIST.state"):
            for make in (lambda path: os.symlink(self.path("mine"), path), os.mkfifo, os.mkdir):
                make(self.path(name))
                for option in ("--audit", "--update"):
                    self.assert_run([f"{option}=LIST", "tree"], 2, "",
                                    f"fyrnsum: {name}: not a regular file, and needed for one\n")
                (os.rmdir if os.path.isdir(self.path(name)) else os.remove)(self.path(name))
        os.symlink(self.path("mine"), self.path("NEW.resume"))
        self.assert_run(["-r", "tree", "-o", "NEW", "--resume"], 1, "",
                        "fyrnsum: NEW.resume: not a regular file, and needed for one\n")
        self.assertEqual((self.read("mine"), self.read("LIST")), (b"precious", before))

    def test_what_no_operand_names_is_left_out(self):
        os.remove(self.path("tree/a"))
        self.assert_run(["--audit=LIST", "tree/d"], 0, "", "fyrnsum: 1 OK; 2 LEFT OUT\n")
        self.assert_run(["--audit=LIST", "tree/a", "./tree//d/"], 1, "tree/a: MISSING\n",
                        "fyrnsum: 1 OK; 1 MISSING; 1 LEFT OUT\n")

    def test_spelling_does_not_count_and_names_are_below_a_directory(self):
        for arguments in (["tree/."], ["./tree"], ["."], []):
            result = self.fyrnsum("--audit=LIST", *arguments)
            self.assertEqual((result.status, result.errors), (0, b"fyrnsum: 3 OK\n"), arguments)
        os.mkdir(self.path("elsewhere"))
        self.check(self.fyrnsum("--audit=../LIST", "-C", "..", "tree", directory=self.path("elsewhere")), "",
                   "fyrnsum: 3 OK\n")
        made = self.fyrnsum("-r", ".", directory=self.path("tree")).output
        self.check(self.fyrnsum("--audit=-", "-C", "tree", stdin=made), "", "fyrnsum: 3 OK\n")

    def test_an_operand_that_is_gone_loses_no_entries(self):
        os.rename(self.path("tree"), self.path("away"))
        self.assert_run(["--update=LIST", "tree", "-v"], 2, "tree: NOT READ: No such file or directory\n" + "".join(
            f"tree/{name}: NOT READ: No such file or directory\n" for name in ("a", "b", "d/c")),
            "fyrnsum: 0 OK; 4 NOT READ\n")
        self.assertEqual(len(self.read("LIST").splitlines()), 3)

    def test_trouble_has_a_status_of_its_own(self):
        self.assert_run(["--audit=none", "tree"], 2, "", "fyrnsum: none: No such file or directory\n")
        self.write("words", b"this is no list\n")
        self.assert_run(["--audit=words", "tree"], 2, "",
                        "fyrnsum: words: no properly formatted checksum lines found\n")
        self.assertEqual(self.fyrnsum("--audit=LIST", "--update=LIST").status, 2)
        self.assertEqual(self.fyrnsum("--audit=LIST", "--tag", "tree").status, 2)
        self.assertEqual(self.fyrnsum("--audit=LIST", "--accept-changes", "tree").status, 2)
        self.assertEqual(self.fyrnsum("--update=-", "tree").status, 2)
        self.assertEqual(self.fyrnsum("--quick", "tree/a").status, 1)

    def test_lines_that_are_not_understood_are_told(self):
        with open(self.path("LIST"), "ab") as file:
            file.write(b"nonsense\n")
        self.assert_run(["--audit=LIST", "tree"], 0, "",
                        "fyrnsum: WARNING: 1 line is improperly formatted\nfyrnsum: 3 OK\n")
        self.assertEqual(self.fyrnsum("--audit=LIST", "--strict", "tree").status, 2)
        self.assertEqual(self.fyrnsum("--update=LIST", "tree").status, 2)
        self.assertTrue(self.read("LIST").endswith(b"nonsense\n"))

    def test_the_function_is_found_out_from_one_file(self):
        self.check(self.fyrnsum("-a", "blake2b-256", "-r", "tree", "-o", "plain"), "")
        os.rename(self.path("tree/a"), self.path("tree/z"))
        self.assert_run(["--audit=plain", "tree", "--quiet"], 1, "tree/z: RENAMED from tree/a\n",
                        "fyrnsum: plain: nothing tells the function; the digests are of BLAKE2b-256\n")

    @posix_only
    def test_a_link_to_the_list_in_the_tree_is_no_file_of_it(self):
        os.rename(self.path("LIST"), self.path("tree/real"))
        os.symlink("tree/real", self.path("LIST"))
        self.assert_run(["--update=LIST", "tree"], 0, "", "fyrnsum: 3 OK\n")
        self.assertTrue(os.path.islink(self.path("LIST")))
        os.rename(self.path("tree/real"), self.path("tree/LIST"))
        self.write("tree/.fyrnsum-a1B2c3", b"what a killed run may have left")
        self.assert_run(["--update=./tree/../tree/LIST", "tree"], 0, "", "fyrnsum: 3 OK\n")
        self.assertEqual(sorted(os.listdir(self.path("tree"))),
                         [".fyrnsum-a1B2c3", "LIST", "LIST.state", "LIST~", "a", "b", "d"])
        self.assert_run(["--audit=tree/LIST", "tree"], 0, "", "fyrnsum: 3 OK\n")


class Trust(TreeTest):
    """What --quick takes for granted, and how decay is told from change."""

    def change_unseen(self, name, time_ns):
        self.write_old(name, b"two", time_ns)

    def test_an_old_file_is_not_read_and_its_decay_is_told_by_reading(self):
        self.write_old("tree/a", b"one")
        self.check(self.fyrnsum("-r", "tree", "-o", "LIST"), "")
        self.assert_run(["--update=LIST", "tree"], 0, "", "fyrnsum: 1 OK\n")
        old = self.read("LIST")
        self.change_unseen("tree/a", OLD)
        self.assert_run(["--audit=LIST", "tree", "--quick"], 0, "", "fyrnsum: 1 OK\n")
        decayed = "tree/a: CHANGED, same size and time\n"
        for options in ([], ["--accept-changes"], ["--quick", "--accept-changes"]): # noticed once, it stays so
            self.assert_run(["--update=LIST", "tree", *options], 1, decayed,
                            "fyrnsum: 0 OK; 1 CHANGED, same size and time\n")
            self.assertEqual(self.read("LIST"), old)
        self.assert_run(["--audit=LIST", "tree", "--quick", "--quiet"], 1, decayed)
        self.assert_run(["--update=LIST", "tree", "--accept-changes=all", "--quiet"], 0, decayed)
        self.assertEqual(self.read("LIST"), f"{sha256(b'two')}  tree/a\n".encode())

    def test_a_young_file_is_always_read(self):
        # Ages in seconds when the update begins; negative ones are of the future.
        for age in (0, 0.5, 1, 1.5, -1, -3600):
            with self.subTest(age=age):
                modified = time.time_ns() - int(age * SECOND)
                self.write_old("tree/a", b"one", modified)
                self.write("LIST", f"{sha256(b'one')}  tree/a\n".encode())
                self.assert_run(["--update=LIST", "tree"], 0, "", "fyrnsum: 1 OK\n")
                self.assertNotIn(b"mtime", self.read("LIST.state"))
                self.change_unseen("tree/a", modified)
                self.assert_run(["--audit=LIST", "tree", "--quick"], 1, "tree/a: CHANGED\n",
                                "fyrnsum: 0 OK; 1 CHANGED\n")

    def test_state_of_other_digests_is_not_believed(self):
        self.write_old("tree/a", b"one")
        for state in (f'{{"path":"tree/a","size":3,"mtime":{OLD},"sha256":"{"00" * 32}"}}\n',
                      f'{{"path":"tree/a","size":3,"mtime":{OLD}}}\n', "", "nonsense\n", '{"path":"tree/a","si'):
            self.write("LIST.state", state.encode())
            self.write("LIST", f"{sha256(b'two')}  tree/a\n".encode())
            self.assert_run(["--audit=LIST", "tree", "--quick", "--quiet"], 1, "tree/a: CHANGED\n")


class Lists(TreeTest):
    """The list after an update."""

    def setUp(self):
        super().setUp()
        for name in ("b", "d", "f"):
            self.write_old("t/" + name, name.encode())

    def line(self, name, content=None):
        return f"{sha256((content or name).encode())}  t/{name}\n"

    def update_to(self, before, after, coding="utf-8", status=0):
        self.write("LIST", before.encode(coding))
        self.assertEqual(self.fyrnsum("--update=LIST", "t").status, status)
        self.assertEqual(self.read("LIST").decode(coding), after)

    def test_comments_and_blank_lines_stay(self):
        self.write("t/c", b"c")
        self.update_to("# head\n" + self.line("b") + "\n# of d\n" + self.line("d") + self.line("e") + "# end\n",
                       "# head\n" + self.line("b") + self.line("c") + "\n# of d\n" + self.line("d") +
                       self.line("f") + "# end\n")

    def test_line_ends_stay(self):
        self.update_to(self.line("b").replace("\n", "\r\n") + self.line("d").strip(),
                       "".join(self.line(name).replace("\n", "\r\n") for name in "bdf"))
        whole = "".join(self.line(name) for name in "bdf").strip()
        self.update_to(whole, whole)

    def test_byte_order_marks_and_utf_16_stay(self):
        for coding in ("utf-8-sig", "utf-16"):
            self.update_to(self.line("b") + self.line("d"), "".join(self.line(name) for name in "bdf"), coding)
            self.assertEqual(self.read("LIST"), "".join(self.line(name) for name in "bdf").encode(coding))

    def test_an_order_of_its_own_stays(self):
        self.write("t/a", b"a")
        self.update_to(self.line("f") + self.line("x", "d") + self.line("b"),
                       self.line("f") + self.line("d") + self.line("b") + self.line("a"))

    def test_lists_that_cannot_be_written_stay(self):
        signed = ("-----BEGIN PGP SIGNED MESSAGE-----\nHash: SHA256\n\n" + self.line("b") +
                  "-----BEGIN PGP SIGNATURE-----\n\nabcd\n-----END PGP SIGNATURE-----\n")
        report = "Hashes: SHA2-256 \n\nt/b\n  " + sha256(b"b") + "\n"
        for text, reason in ((signed, "the list is signed, and cannot be updated"),
                             (report, "3: lines of this form cannot be written")):
            self.write("LIST", text.encode())
            self.assert_run(["--update=LIST", "t"], 2, "", f"fyrnsum: LIST: {reason}\n")
            self.assertEqual(sorted(os.listdir(self.scratch)), ["LIST", "t"])
            self.assertEqual(self.read("LIST"), text.encode())

    @posix_only
    def test_a_name_that_the_form_cannot_hold_is_told(self):
        self.write("LIST.sfv", b"; head\n")
        self.write("t/line\nend", b"x")
        result = self.fyrnsum("--update=LIST.sfv", "t", "--quiet")
        self.assertEqual(result.status, 2)
        self.assertIn(b"this name cannot be written in lists of this form", result.errors)
        self.assertEqual(len(self.read("LIST.sfv").splitlines()), 4)

    @posix_only
    def test_rights_of_the_list_stay(self):
        self.write("LIST", self.line("b").encode())
        os.chmod(self.path("LIST"), 0o640)
        self.assertEqual(self.fyrnsum("--update=LIST", "t").status, 0)
        for name in ("LIST", "LIST~", "LIST.state"):
            self.assertEqual(os.stat(self.path(name)).st_mode & 0o777, 0o640, name)

    @posix_only
    @native_only
    def test_a_disk_without_space_leaves_the_old_list(self):
        old = self.line("b")
        self.write("LIST", old.encode())
        done = subprocess.run(["sh", "-c", 'trap "" XFSZ; ulimit -f 0; exec "$0" --update=LIST --status t', PROGRAM],
                              cwd=self.scratch, capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (2, b"fyrnsum: LIST~: File too large\n"))
        self.assertEqual(sorted(os.listdir(self.scratch)), ["LIST", "t"])
        self.assertEqual(self.read("LIST"), old.encode())

    @posix_only
    @native_only
    def test_a_directory_without_rights_is_told_before_anything_is_read(self):
        if os.geteuid() != 0:
            self.skipTest("needs root, to be another user")
        self.write("LIST", self.line("b").encode())
        os.chmod(self.scratch, 0o755)
        result = self.fyrnsum("--update=LIST", "t", user=65534, group=65534, extra_groups=[])
        self.check(result, "", "fyrnsum: LIST: Permission denied\n", 2)

    def test_a_file_that_is_listed_without_a_digest_of_its_own_is_not_a_list(self):
        os.mkdir(self.path("folder"))
        self.assertEqual(self.fyrnsum("--update=folder", "t").status, 2)


if __name__ == "__main__":
    unittest.main()
