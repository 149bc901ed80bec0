# SPDX-License-Identifier: MIT
"""Header, name lines and digest lines."""
import os
import pty
import subprocess
import threading
import unittest
import zlib

import launcher
from expected import ROWS, crc32, md5, sha1, sha256


class Header(launcher.ScratchCase):
    def header_names(self, *arguments):
        lines = self.fyrn(*arguments).lines
        self.assertEqual(lines[1:], [b""])
        self.assertTrue(lines[0].startswith(b"Hashes: "))
        return lines[0].removeprefix(b"Hashes: ").decode()

    def test_every_name_selects_its_row(self):
        for name in ROWS:
            self.assertEqual(self.header_names("-hash=" + name), name + " ")

    def test_names_are_matched_without_case_and_printed_in_upper_case(self):
        self.assertEqual(self.header_names("-HASH=whirlpool"), "WHIRLPOOL ")
        self.assertEqual(self.header_names("-Hash=sHa2-256"), "SHA2-256 ")

    def test_names_come_in_row_order(self):
        self.assertEqual(self.header_names("-hash=sha1", "-hash=MD5"), "MD5 SHA1 ")
        backwards = ["-hash=" + name for name in reversed(ROWS)]
        self.assertEqual(self.header_names(*backwards), " ".join(ROWS) + " ")

    def test_all_selects_every_row_once(self):
        self.assertEqual(self.header_names("-hash=ALL", "-hash=MD5"), " ".join(ROWS) + " ")
        self.assertEqual(self.header_names("-hash=MD5", "-hash=all"), " ".join(ROWS) + " ")

    def test_header_bytes(self):
        output = self.fyrn("-hash=sha1", "-hash=MD5").output
        end = b"\r\n" if launcher.WINDOWS else b"\n"
        self.assertEqual(output, b"Hashes: MD5 SHA1 " + end + end)

    def test_header_is_printed_at_every_verbosity(self):
        for verbosity in "123":
            self.assertEqual(self.header_names("-hash=MD5", "-verbosity=" + verbosity), "MD5 ")

    def test_a_name_must_match_whole(self):
        self.assertEqual(self.header_names("-hash=MD5", "-hash=SHA", "-hash=SHA1 ", "-hash=BLAKE2", "-hash=CRC"),
                         "MD5 ")

    def test_only_ascii_letters_fold(self):
        # U+0130 and U+212A fold to "i" and "k" in some locales, U+017F to "s" in upper case.
        self.assertEqual(self.header_names("-hash=MD5", "-hash=TİGER1-128", "-hash=\u212aECCAK-224", "-ha\u017fh=MD4"),
                         "MD5 ")


class Verbosity(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        self.write("File 1.txt", b"abc")

    def digest_lines(self):
        return ["  " + md5(b"abc"), "  " + sha256(b"abc")]

    def report(self, *arguments):
        result = self.fyrn("-hash=MD5", "-hash=SHA2-256", *arguments, "File 1.txt")
        self.assertEqual(result.lines[:2], [b"Hashes: MD5 SHA2-256 ", b""])
        return [line.decode() for line in result.lines[2:]]

    def test_one_prints_the_digests_alone(self):
        self.assertEqual(self.report("-verbosity=1"), self.digest_lines())

    def test_two_prints_the_name(self):
        self.assertEqual(self.report("-verbosity=2"), ["File 1.txt", *self.digest_lines()])

    def test_two_is_the_default(self):
        self.assertEqual(self.report(), self.report("-verbosity=2"))

    def test_three_prints_the_full_path(self):
        name, *digests = self.report("-verbosity=3")
        self.assertEqual(digests, self.digest_lines())
        if launcher.WINDOWS:
            self.assertRegex(name, r"^[A-Z]:\\.*\\File 1\.txt$")
        else:
            self.assertEqual(name, self.path("File 1.txt"))

    def test_only_the_first_character_of_the_value_counts(self):
        self.assertEqual(self.report("-verbosity=3abc"), self.report("-verbosity=3"))
        self.assertEqual(self.report("-verbosity=12"), self.report("-verbosity=1"))

    def test_other_values_change_nothing(self):
        for value in ("", "0", "4", "-1", " 1", "x", "\u00b9", "\u0661"):
            self.assertEqual(self.report("-verbosity=" + value), self.report("-verbosity=2"))
            self.assertEqual(self.report("-verbosity=1", "-verbosity=" + value), self.report("-verbosity=1"))

    def test_the_last_usable_value_wins(self):
        self.assertEqual(self.report("-verbosity=3", "-verbosity=1"), self.report("-verbosity=1"))

    def test_the_option_is_matched_without_case(self):
        self.assertEqual(self.report("-VERBOSITY=1"), self.report("-verbosity=1"))


class DigestLines(launcher.ScratchCase):
    def test_one_line_for_a_function_selected_twice(self):
        self.write("a", b"abc")
        self.assert_lines(self.fyrn("-hash=MD5", "-hash=md5", "a"), "Hashes: MD5 ", "", "a", "  " + md5(b"abc"))

    def test_files_come_in_the_order_of_the_arguments(self):
        self.write("b", b"1")
        self.write("a", b"2")
        result = self.fyrn("b", "-hash=MD5", "a", "b")
        self.assert_lines(result, "Hashes: MD5 ", "", "b", "  " + md5(b"1"), "a", "  " + md5(b"2"),
                          "b", "  " + md5(b"1"))

    def test_options_after_the_targets_count_as_well(self):
        self.write("a", b"abc")
        self.assert_lines(self.fyrn("a", "-verbosity=1", "-hash=MD5"), "Hashes: MD5 ", "", "  " + md5(b"abc"))

    def test_every_row_of_a_file_has_a_line(self):
        self.write("a", b"abc")
        lines = self.fyrn("-hash=ALL", "-verbosity=1", "a").lines[2:]
        self.assertEqual(len(lines), len(ROWS))
        self.assertEqual(lines[ROWS.index("MD5")].decode(), "  " + md5(b"abc"))
        self.assertEqual(lines[ROWS.index("SHA1")].decode(), "  " + sha1(b"abc"))
        self.assertEqual(lines[ROWS.index("CRC-32")].decode(), "  " + crc32(b"abc"))


# A relative target with a directory part leads nowhere inside the directory that is walked, so
# this is a file that is found but cannot be opened, on every system and for every user.
class FilesThatCannotBeOpened(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        self.write("outer/inner/lost.txt", b"lost")
        self.write("a.txt", b"abc")
        self.lost = os.path.join("outer", "inner")

    def test_rows_that_always_print_repeat_the_digest_before(self):
        result = self.fyrn("-hash=CRC-32", "-hash=SHA1", "a.txt", self.lost)
        self.assert_lines(result, "Hashes: CRC-32 SHA1 ", "", "a.txt", "  " + crc32(b"abc"), "  " + sha1(b"abc"),
                          "lost.txt", "  " + sha1(b"abc"))

    def test_rows_that_always_print_are_blank_before_the_first_digest(self):
        result = self.fyrn("-hash=CRC-32", "-hash=SHA1", self.lost, "a.txt")
        self.assert_lines(result, "Hashes: CRC-32 SHA1 ", "", "lost.txt", "  ", "a.txt", "  " + crc32(b"abc"),
                          "  " + sha1(b"abc"))

    def test_which_rows_always_print(self):
        lines = self.fyrn("-hash=ALL", "-verbosity=1", self.lost).lines[2:]
        always = [name for name in ROWS if name.startswith(("BLAKE2", "CRC", "MD"))]
        self.assertEqual(lines, [b"  "] * len(always))
        for name in ROWS:
            lines = self.fyrn("-hash=" + name, "-verbosity=1", self.lost).lines[2:]
            self.assertEqual(lines, [b"  "] if name in always else [], name)


@launcher.posix_only
class UnreadableFiles(launcher.ScratchCase):
    def test_a_file_without_read_permission_is_like_any_that_cannot_be_opened(self):
        self.write("a.txt", b"abc")
        os.chmod(self.write("locked", b"x"), 0)
        result = self.fyrn_unprivileged("-hash=CRC-32", "-hash=SHA1", "a.txt", "locked")
        self.assert_lines(result, "Hashes: CRC-32 SHA1 ", "", "a.txt", "  " + crc32(b"abc"), "  " + sha1(b"abc"),
                          "locked", "  " + sha1(b"abc"))


class InTime(launcher.ScratchCase):
    """A reader of the report sees what is finished while the run still works on the next file or function."""

    def start(self, *arguments):
        process = subprocess.Popen(launcher.command("-hash=CRC-32", *arguments), cwd=self.scratch,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def expect(self, process, *lines):
        """Waits for lines of the report, without a hurry, and for no others, while the run goes on."""
        received = []
        reader = threading.Thread(target=lambda: received.extend(process.stdout.readline() for _ in lines),
                                  daemon=True)
        reader.start()
        reader.join(30)
        self.assertIsNone(process.poll())
        self.assertEqual([line.rstrip(b"\r\n").decode() for line in received], list(lines))

    def test_while_a_large_file_is_read(self):
        self.write("a", b"abc")
        os.truncate(self.write("large"), 1 << 40)
        process = self.start("a", "large")
        self.expect(process, "Hashes: CRC-32 ", "", "a", "  " + crc32(b"abc"), "large")

    def test_while_a_file_is_read_for_the_next_function(self):
        size = 256 << 20
        os.truncate(self.write("large"), size)
        process = self.start("-hash=MD6-512", "-hash=SKEIN-1024", "-hash=WHIRLPOOL", "large")
        checksum = 0
        for _ in range(size >> 20):
            checksum = zlib.crc32(bytes(1 << 20), checksum)
        self.expect(process, "Hashes: CRC-32 MD6-512 SKEIN-1024 WHIRLPOOL ", "", "large", f"  {checksum:08x}")

    @launcher.posix_only
    def test_while_the_writer_of_a_pipe_is_awaited(self):
        self.write("a", b"abc")
        os.mkfifo(self.path("pipe"))
        process = self.start("a", self.path("pipe"), "a")
        self.expect(process, "Hashes: CRC-32 ", "", "a", "  " + crc32(b"abc"), "pipe")
        with open(self.path("pipe"), "wb") as pipe:
            pipe.write(b"late")
        rest = f"  {crc32(b'late')}\na\n  {crc32(b'abc')}\n"
        self.assertEqual(process.communicate(timeout=60)[0], rest.encode())

    @launcher.posix_only
    def test_while_a_device_is_read_for_the_next_function(self):
        user, terminal = pty.openpty()
        self.addCleanup(os.close, user)
        self.addCleanup(os.close, terminal)
        process = self.start("-hash=MD5", os.ttyname(terminal))
        os.write(user, b"typed\n\x04")
        name = os.path.basename(os.ttyname(terminal))
        self.expect(process, "Hashes: CRC-32 MD5 ", "", name, "  " + crc32(b"typed\n"))
        os.write(user, b"typed\n\x04")
        self.assertEqual(process.communicate(timeout=60)[0], f"  {md5(b'typed' + bytes([10]))}\n".encode())


if __name__ == "__main__":
    unittest.main()
