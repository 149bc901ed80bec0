# SPDX-License-Identifier: MIT
"""The manual page is well formed, names everything there is, and every example in it does what it says."""
import hashlib
import os
import re
import shutil
import subprocess
import unittest

from expected import ROWS, crc16, crc32, md5, sha1, sha256
from launcher import LAUNCHER, PROGRAM, SOURCE_DIRECTORY, WINDOWS, ScratchCase, posix_only

PAGE = os.path.join(SOURCE_DIRECTORY, "docs", "fyrn.1")
ESCAPES = ((r"\-", "-"), (r"\(aq", "'"), (r"\(dq", '"'), (r"\e", "\\"))


def page():
    with open(PAGE, encoding="utf-8") as file:
        return file.read()


def section(name):
    return re.search(rf"^\.Sh {name}\n(.*?)(?=^\.Sh |\Z)", page(), re.MULTILINE | re.DOTALL)[1]


def examples(prompt):
    """The commands of the section, in order, without their prompt."""
    commands = []
    for block in re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed", section("EXAMPLES"), re.MULTILINE | re.DOTALL):
        for written, meant in ESCAPES:
            block = block.replace(written, meant)
        commands += [line[2:] for line in block.splitlines() if line.startswith(prompt + " ")]
    return commands


def report(names, *lines):
    return "".join(f"{line}\n" for line in (f"Hashes: {names} ", "", *lines))


LETTER, PICTURE, OTHER, OLD, SALT = b"Dear reader\n", b"\xff\xd8picture", b"\xff\xd8other", b"\xff\xd8old", b"salt\r\n"


class Page(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mandoc"), "needs mandoc")
    def test_the_linter_finds_nothing(self):
        done = subprocess.run(["mandoc", "-T", "lint", PAGE], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))

    def test_every_function_stands_in_its_place(self):
        self.assertEqual(re.findall(r"^\.It (\S+) Ta", section("ALGORITHMS"), re.MULTILINE), ROWS)

    def test_every_option_of_the_usage_text_is_described(self):
        with open(os.path.join(SOURCE_DIRECTORY, "tests", "data", "usage.txt"), encoding="utf-8") as file:
            options = set(re.findall(r"^  -(\w+) +:", file.read(), re.MULTILINE))
        tags = "\n".join(re.findall(r"^\.It (.*)$", section("DESCRIPTION"), re.MULTILINE))
        self.assertEqual(len(options), 10)
        self.assertEqual(options, set(re.findall(r"Fl (\w+?)(?:=|$)", tags, re.MULTILINE)))

    def test_the_warning_comes_before_the_description(self):
        names = re.findall(r"^\.Sh (.*)$", page(), re.MULTILINE)
        self.assertEqual(names[:4], ["NAME", "SYNOPSIS", "WARNING", "DESCRIPTION"])
        for name in ("FILES", "EXIT STATUS", "EXAMPLES", "ALGORITHMS", "LIMITS", "KNOWN BEHAVIOUR"):
            self.assertIn(name, names)
        for option in ("rename", "renamedel"):
            self.assertIn(f".Fl {option}\n", section("WARNING"))


class Examples(ScratchCase):
    """Every example is looked up by its text: one that is new or changed has no test, and fails."""

    def setUp(self):
        super().setUp()
        for name, content in (("letter.txt", LETTER), ("a.jpg", PICTURE), ("b.jpg", OTHER), (".c.jpg", PICTURE),
                              ("photos/x.jpg", PICTURE), ("photos/y", OTHER), ("photos/2024/z.jpg", OLD),
                              ("my salt.bin", SALT), ("-rename", b"abc")):
            self.write(name, content)

    def shell(self, line):
        os.makedirs(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin", "fyrn"))
        done = subprocess.run(["sh", "-c", line], cwd=self.scratch, stdin=subprocess.DEVNULL, capture_output=True,
                              env=os.environ | {"PATH": self.path("bin") + ":/usr/bin:/bin"}, text=True, check=True)
        shutil.rmtree(self.path("bin"))
        self.assertEqual(done.stderr, "")
        return done.stdout

    def check_one_file(self, line):
        self.assertEqual(self.shell(line), report("MD5 SHA2-256", "letter.txt", f"  {md5(LETTER)}", f"  {sha256(LETTER)}"))

    def check_a_pattern(self, line):
        self.assertEqual(self.shell(line), report("SHA1", ".c.jpg", f"  {sha1(PICTURE)}", "a.jpg", f"  {sha1(PICTURE)}",
                                                  "b.jpg", f"  {sha1(OTHER)}"))

    def check_a_tree(self, line):
        digest = hashlib.sha3_256(OLD).hexdigest()
        self.write("photos/2024/deeper/w.jpg", OLD)
        self.assertEqual(self.shell(line), report("SHA3-256", self.path("photos/2024/deeper/w.jpg"), f"  {digest}",
                                                  self.path("photos/2024/z.jpg"), f"  {digest}"))

    def check_a_bare_digest(self, line):
        self.assertEqual(self.shell(line), sha256(LETTER) + "\n")

    def check_standard_input(self, line):
        self.assertEqual(self.shell(line), report("MD5", f"  {md5(b'abc')}"))

    def check_a_salt(self, line):
        digest = hashlib.sha512(SALT + LETTER).hexdigest()
        self.assertEqual(self.shell(line), report("SHA2-512", "letter.txt", f"  {digest}"))

    def check_a_polynomial(self, line):
        self.assertEqual(self.shell(line), report("CRC-16", "letter.txt", f"  {crc16(LETTER, 0x8408)}"))

    def check_a_name_like_an_option(self, line):
        self.assertEqual(self.shell(line), report("MD5", "-rename", f"  {md5(b'abc')}"))
        self.assertIn("-rename", self.names())

    def check_every_file_below(self, line):
        lines = self.shell(line).splitlines()
        contents = {"letter.txt": LETTER, "a.jpg": PICTURE, "b.jpg": OTHER, ".c.jpg": PICTURE, "photos/x.jpg": PICTURE,
                    "photos/y": OTHER, "photos/2024/z.jpg": OLD, "my salt.bin": SALT, "-rename": b"abc"}
        expected = {f"./{name}": "  " + hashlib.blake2b(content, digest_size=32).hexdigest()
                    for name, content in contents.items()}
        self.assertEqual(lines[:2], ["Hashes: BLAKE2-256 ", ""])
        pairs = dict(zip(lines[2::2], lines[3::2]))
        self.assertEqual(pairs, expected)

    def check_renaming(self, line):
        self.assertEqual(self.shell(line), report("SHA2-256", "x.jpg", f"  {sha256(PICTURE)}", "y", f"  {sha256(OTHER)}"))
        self.assertEqual(self.names("photos"), sorted(["2024", sha256(PICTURE) + ".jpg", sha256(OTHER)]))

    def check_deleting(self, line):
        digests = [sha256(PICTURE), sha256(PICTURE), sha256(OTHER)]
        names = [".c.jpg", "a.jpg", "b.jpg"]
        self.assertEqual(self.shell(line), report("SHA2-256", *(text for name, digest in zip(names, digests)
                                                                for text in (name, "  " + digest))))
        pictures = [name for name in self.names() if name.endswith(".jpg")]
        self.assertEqual(pictures, sorted({digest + ".jpg" for digest in digests}))

    CHECKS = {
        "fyrn -hash=MD5 -hash=SHA2-256 letter.txt": check_one_file,
        "fyrn -hash=SHA1 '*.jpg'": check_a_pattern,
        'fyrn -hash=SHA3-256 -subdirs -verbosity=3 "$PWD/photos/2024"': check_a_tree,
        "fyrn -hash=SHA2-256 -verbosity=1 letter.txt | tail -n 1 | cut -c 3-": check_a_bare_digest,
        "printf abc | fyrn -hash=MD5 -verbosity=1 /dev/stdin": check_standard_input,
        'fyrn -hash=SHA2-512 -salt="my salt.bin" -salttype=before letter.txt': check_a_salt,
        "fyrn -hash=CRC-16 -poly16=0x0884 letter.txt": check_a_polynomial,
        "fyrn -hash=MD5 ./-rename": check_a_name_like_an_option,
        "find . -type f -print0 | xargs -0 fyrn -hash=BLAKE2-256 -verbosity=3": check_every_file_below,
        "fyrn -hash=SHA2-256 -rename photos": check_renaming,
        "fyrn -hash=SHA2-256 -renamedel '*.jpg'": check_deleting,
    }

    @posix_only
    def test_every_example_does_what_it_says(self):
        self.assertEqual(examples("$"), list(self.CHECKS))
        for line, check in self.CHECKS.items():
            with self.subTest(line):
                self.setUp()
                check(self, line)


@unittest.skipUnless(WINDOWS, "needs the Windows program")
class WindowsExamples(ScratchCase):
    def setUp(self):
        super().setUp()
        for name, content in (("letter.txt", LETTER), ("a.jpg", PICTURE), ("My Files/File 1.txt", OTHER),
                              ("My Files/salt.bin", SALT), ("photos/x.jpg", PICTURE), ("photos/2024/z.jpg", OLD)):
            self.write(name, content)

    def batch(self, line):
        shutil.copy(PROGRAM, self.path("fyrn.exe"))
        self.write("run.bat", f"@{line}\r\n".encode())
        done = subprocess.run([*LAUNCHER, "cmd", "/c", "run.bat"], cwd=self.scratch, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True)
        return done.stdout.replace("\r\n", "\n")

    def check_one_file(self, line):
        self.assertEqual(self.batch(line), report("SHA2-256", "File 1.txt", f"  {sha256(OTHER)}"))

    def check_a_pattern_and_a_tree(self, line):
        lines = self.batch(line).splitlines()
        self.assertEqual(lines[:2] + lines[3::2], ["Hashes: CRC-32 ", "", f"  {crc32(PICTURE)}", f"  {crc32(OLD)}"])
        self.assertRegex(lines[2], r"^[A-Z]:\\.*\\a\.jpg$")
        self.assertRegex(lines[4], r"^[A-Z]:\\.*\\photos\\2024\\z\.jpg$")

    def check_a_salt(self, line):
        self.assertEqual(self.batch(line), report("SHA1", "letter.txt", f"  {sha1(SALT + LETTER + SALT)}"))

    def check_renaming(self, line):
        self.assertEqual(self.batch(line), report("SHA2-256", "x.jpg", f"  {sha256(PICTURE)}"))
        self.assertEqual(self.names("photos"), sorted(["2024", sha256(PICTURE) + ".jpg"]))

    CHECKS = {
        'fyrn -hash=SHA2-256 "My Files\\File 1.txt"': check_one_file,
        'fyrn -hash=CRC-32 -subdirs -verbosity=3 *.jpg "%CD%\\photos\\2024"': check_a_pattern_and_a_tree,
        'fyrn -hash=SHA1 -salt="My Files\\salt.bin" -salttype=both letter.txt': check_a_salt,
        "fyrn -hash=SHA2-256 -rename photos": check_renaming,
    }

    def test_every_example_does_what_it_says(self):
        self.assertEqual(examples(">"), list(self.CHECKS))
        for line, check in self.CHECKS.items():
            with self.subTest(line):
                check(self, line)


if __name__ == "__main__":
    unittest.main()
