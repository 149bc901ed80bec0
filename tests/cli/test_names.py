# SPDX-License-Identifier: MIT
"""File names come out byte for byte as they are, in every locale and to every kind of output; on Windows the first
256 characters as one byte each, and "?" for any other."""
import os
import pty
import subprocess
import termios
import threading
import unittest

import launcher
from expected import md5

NAMES = [
    b"plain.txt",
    "\u00fcml\u00e4ut.\u00e9xt".encode(),
    "\u65e5\u672c\u8a9e.\u6587".encode(),
    "\U0001f600.\U00010fff".encode(),
    b"new\nline.a\nb",
    b"carriage\rreturn",
    b"tab\tname",
    b"back\\slash.b\\c",
    b"colon:name:c.d:e",
    b"percent%s%n%d%%.%S",
    b"\xff\xfe.\x80\x81",
    b"half\xe2\x82.\xc3",
    b"surrogate\xed\xa0\x80\xed\xb2\x80",
    b"overlong\xc0\xaf",
    b"above\xf4\x90\x80\x80",
    b"escape\x1b[31m",
    b"delete\x7f.\x01",
    b"trailing blank ",
    b" leading blank",
    b"quote'\"",
    b"dots...",
]


def read_to_end(terminal, received):
    """Reads a terminal until its other side is closed, which shows as an error."""
    try:
        while piece := os.read(terminal, 65536):
            received.append(piece)
    except OSError:
        pass
    os.close(terminal)


@launcher.posix_only
class ExactNames(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        for name in NAMES:
            self.write(b"d/" + name, name)

    def expected(self, names):
        return b"Hashes: MD5 \n\n" + b"".join(name + b"\n  " + md5(name).encode() + b"\n" for name in names)

    def environments(self):
        for locale in ("C", "C.UTF-8", "POSIX", "en_US.ISO-8859-1", "no_SUCH"):
            yield {**os.environ, "LC_ALL": locale, "LANG": locale}

    def test_as_arguments_in_every_locale(self):
        for environment in self.environments():
            result = self.fyrn("-hash=MD5", *NAMES, directory=self.path("d"), env=environment)
            self.assertEqual(result.output, self.expected(NAMES), environment["LC_ALL"])

    def test_in_a_walk_in_every_locale(self):
        in_order = sorted(NAMES, key=lambda name: (name.upper(), name))
        for environment in self.environments():
            result = self.fyrn("-hash=MD5", "d", env=environment)
            self.assertEqual(result.output, self.expected(in_order), environment["LC_ALL"])

    def test_with_the_full_path(self):
        base = os.fsencode(self.path("d"))
        result = self.fyrn("-hash=MD5", "-verbosity=3", *NAMES, directory=self.path("d"))
        names = b"".join(base + b"/" + name + b"\n  " + md5(name).encode() + b"\n" for name in NAMES)
        self.assertEqual(result.output, b"Hashes: MD5 \n\n" + names)

    def test_in_a_directory_of_such_a_name(self):
        directory = b"d\xff\xe2\x82%s\n"
        self.write(directory + b"/a\xfe", b"a\xfe")
        result = self.fyrn("-hash=MD5", "-verbosity=3", directory)
        path = os.path.join(os.fsencode(self.scratch), directory, b"a\xfe")
        self.assertEqual(result.output, b"Hashes: MD5 \n\n" + path + b"\n  " + md5(b"a\xfe").encode() + b"\n")

    def test_the_same_bytes_to_a_file(self):
        with open(self.path("output"), "wb") as file:
            self.fyrn("-hash=MD5", *NAMES, directory=self.path("d"), stdout=file)
        self.assertEqual(self.read("output"), self.expected(NAMES))

    def test_the_same_bytes_to_a_terminal(self):
        terminal, device = pty.openpty()
        attributes = termios.tcgetattr(device)
        attributes[1] = 0  # no output processing, which would turn LF into CR LF
        termios.tcsetattr(device, termios.TCSANOW, attributes)
        received = []
        reader = threading.Thread(target=read_to_end, args=(terminal, received))
        reader.start()
        self.fyrn("-hash=MD5", *NAMES, directory=self.path("d"), stdout=device)
        os.close(device)
        reader.join(20)
        self.assertEqual(b"".join(received), self.expected(NAMES))

    def test_renamed_files_keep_their_extension_byte_for_byte(self):
        self.fyrn("-hash=MD5", "-rename", "d")
        found = sorted(os.listdir(os.fsencode(self.path("d"))))
        self.assertEqual(found, sorted(md5(name).encode() + os.path.splitext(b"x" + name)[1] for name in NAMES))

    def test_the_invocation_name_in_the_usage_text(self):
        name = b"fy\xffrn\n%s"
        link = os.path.join(os.fsencode(self.scratch), name)
        os.symlink(os.path.abspath(launcher.PROGRAM), link)
        done = subprocess.run([link], stdout=subprocess.PIPE, check=True)
        self.assertIn(b"\nUsage: " + link + b" <-hash>", done.stdout)


@launcher.windows_only
class WindowsNames(launcher.ScratchCase):
    NAMES = {
        "na\u00efve.txt": b"na\xefve.txt",
        "\u0100.\u20ac": b"?.?",
        "\u65e5\u672c\u8a9e": b"???",
        "a\U0001f600b.x": b"a??b.x",
    }

    def setUp(self):
        super().setUp()
        for name in self.NAMES:
            self.write("d/" + name, name.encode())

    def lines(self, *names):
        return [line for name in names for line in (self.NAMES[name], b"  " + md5(name.encode()).encode())]

    def test_as_arguments(self):
        result = self.fyrn("-hash=MD5", *self.NAMES, directory=self.path("d"))
        self.assertEqual(result.lines[2:], self.lines(*self.NAMES))

    def test_in_a_walk(self):
        result = self.fyrn("-hash=MD5", "d")
        self.assertEqual(result.lines[2:], self.lines(*sorted(self.NAMES)))

    def test_every_line_ends_in_carriage_return_and_line_feed(self):
        output = self.fyrn("-hash=MD5", "d").output
        lines = [b"Hashes: MD5 ", b"", *self.lines(*sorted(self.NAMES))]
        self.assertEqual(output, b"".join(line + b"\r\n" for line in lines))

    def test_the_same_bytes_to_a_file(self):
        with open(self.path("output"), "wb") as file:
            self.fyrn("-hash=MD5", "d", stdout=file)
        self.assertEqual(self.read("output"), self.fyrn("-hash=MD5", "d").output)

    def test_with_the_full_path(self):
        os.rename(self.path("d"), self.path("\u20ac"))
        result = self.fyrn("-hash=MD5", "-verbosity=3", self.path("\u20ac", "na\u00efve.txt"))
        self.assertEqual(result.lines[2], os.fsencode(self.scratch) + b"/?/na\xefve.txt")

    def test_renamed_files_keep_their_extension(self):
        self.fyrn("-hash=MD5", "-rename", "d")
        self.assertEqual(self.names("d"), sorted(md5(name.encode()) + os.path.splitext(name)[1] for name in self.NAMES))


if __name__ == "__main__":
    unittest.main()
