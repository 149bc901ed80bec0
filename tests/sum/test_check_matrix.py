#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every kind of list against everything that may be wrong with it: status, both outputs and totals."""
import hashlib
import os
import shutil
import subprocess
import unittest

from checking import (CheckCase, DIFFERENT, MALFORMED, UNREAD, base64_of, bsd_sum, crc32, digest_of, posix_cksum,
                      sysv_sum, warning)
from program import WINDOWS, posix_only

NEWLINE = "new\nline"
BACKSLASH = "back\\slash"
CLOSING = "x) = y"
SHOWN = {NEWLINE: "'new'$'\\n''line'", BACKSLASH: "'back\\slash'", CLOSING: "'x) = y'"}
PLAIN, VICTIM, LAST = "first", "victim", "last.txt"

PERCENT_CODES = str.maketrans({"%": "%25", "\n": "%0A", "\r": "%0D"})


def escaped(name):
    """The name as GNU's tools write it, and what stands before the line then."""
    text = name.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r")
    return ("\\" if text != name else ""), text


class Kind:
    """A kind of list: how a line tells of a file."""

    options = ()
    head = tail = ""
    list_name = "list"
    tells_newline = False  # a name with a line feed can be told
    ends = "\n"
    note = ""              # what is said before all results
    cut_changes = False    # a digest with its last digit cut is another digest, and not malformed
    lines_per_cut = 1      # malformed lines when a digest is cut

    def __init__(self, name, line, **settings):
        self.name, self.line = name, line
        for key, value in settings.items():
            getattr(self, key)
            setattr(self, key, value)

    def digest(self, data):
        raise NotImplementedError

    def text(self, entries):
        return self.head + "".join(self.line(name, digest, size) + self.ends for name, digest, size in entries) + self.tail


def hex_kind(function, name, line, **settings):
    kind = Kind(name, line, **settings)
    kind.digest = lambda data: digest_of(function, data)
    return kind


def kind_of(digest, name, line, **settings):
    kind = Kind(name, line, **settings)
    kind.digest = digest
    return kind


def gnu(between, upper=False):
    def line(name, digest, _size):
        mark, text = escaped(name)
        return mark + (digest.upper() if upper else digest) + between + text
    return line


def tagged(before, after):
    def line(name, digest, _size):
        mark, text = escaped(name)
        return mark + before + text + after + digest
    return line


def blake2b_256(data):
    return hashlib.blake2b(data, digest_size=32).hexdigest()


def report(name, digest, _size):
    return f"{name}\n  {digest}"


def upper(line):
    return lambda name, digest, size: line(name, digest.upper(), size)


def xxh3(data):
    """Of 64 bits, by xxhsum, whose newer versions also write XXH3_ before it."""
    done = subprocess.run(["xxhsum", "-H3"], input=data, capture_output=True, check=True)
    return done.stdout.decode().split()[-1]


SIGNED = "-----BEGIN PGP SIGNED MESSAGE-----\nHash: SHA512\n\n"
SIGNATURE = "-----BEGIN PGP SIGNATURE-----\n\niQEzBAEBCgAdFiEE\n=Ab3d\n-----END PGP SIGNATURE-----\n"
TABLE = "%%%% HASHDEEP-1.0\n%%%% size,md5,sha256,filename\n## Invoked from: /\n## \n"
GUESSED = "fyrnsum: list: nothing tells the function; the digests are of BLAKE2b-256\n"

KINDS = [
    hex_kind("sha256", "two blanks", gnu("  "), tells_newline=True),
    hex_kind("md5", "star", gnu(" *"), tells_newline=True),
    hex_kind("sha512", "one blank", gnu(" "), tells_newline=True),
    hex_kind("sha1", "tab", gnu("\t"), tells_newline=True),
    hex_kind("sha256", "upper case", gnu("  ", upper=True), tells_newline=True),
    hex_kind("sha256", "named function", gnu("  "), tells_newline=True, options=("-a", "sha256")),
    hex_kind("sha384", "tag", tagged("SHA384 (", ") = "), tells_newline=True),
    hex_kind("sha512", "upper case after a tag", upper(tagged("SHA512 (", ") = ")), tells_newline=True),
    hex_kind("sha3_256", "tag without blanks", tagged("SHA3-256(", ")= "), tells_newline=True),
    hex_kind("md5", "aligned tag", tagged("MD5   (", ") = "), tells_newline=True),
    kind_of(blake2b_256, "tag with a length", tagged("BLAKE2b-256 (", ") = "), tells_newline=True),
    kind_of(blake2b_256, "guessed", gnu("  "), tells_newline=True, note=GUESSED),
    kind_of(lambda data: base64_of("sha256", data), "base64", gnu("  "), tells_newline=True),
    kind_of(lambda data: base64_of("sha512", data), "base64 with a tag", tagged("SHA512 (", ") = "), tells_newline=True),
    hex_kind("sha256", "function and colon", lambda name, digest, _: f"sha256:{digest}  {name}"),
    hex_kind("sha256", "size column", lambda name, digest, size: f"{size:10}  {digest}  {name}"),
    kind_of(lambda data: str(len(data)), "size", tagged("SIZE (", ") = "), cut_changes=True, tells_newline=True),
    kind_of(lambda data: str(posix_cksum(data)), "cksum", lambda name, digest, size: f"{digest} {size} {name}",
            cut_changes=True),
    kind_of(lambda data: f"{bsd_sum(data):05}", "sum", lambda name, digest, size: f"{digest} {-(-size // 1024):5} {name}",
            cut_changes=True, options=("-a", "bsd")),
    kind_of(lambda data: str(sysv_sum(data)), "sum -s", lambda name, digest, size: f"{digest} {-(-size // 512)} {name}",
            cut_changes=True, options=("-a", "sysv")),
    kind_of(crc32, "SFV", lambda name, digest, _: f"{name} {digest}", head="; made by nobody\n;\n"),
    hex_kind("md5", "name first", lambda name, digest, _: f"{name}  {digest}"),
    hex_kind("sha256", "hashdeep", lambda name, digest, size: f"{size},{name_md5(name)},{digest},{name}", head=TABLE),
    hex_kind("sha256", "BagIt", lambda name, digest, _: f"{digest}  {name.translate(PERCENT_CODES)}",
             list_name="manifest-sha256.txt", tells_newline=True),
    hex_kind("sha256", "report", report, head="Hashes: SHA2-256 \n\n", lines_per_cut=2),
    hex_kind("sha256", "PGP", gnu("  "), head=SIGNED, tail=SIGNATURE, tells_newline=True),
    hex_kind("sha256", "NUL", lambda name, digest, _: f"{digest}  {name}", ends="\0", tells_newline=True),
    hex_kind("sha256", "NUL with tags", lambda name, digest, _: f"SHA256 ({name}) = {digest}", ends="\0",
             tells_newline=True),
]
if shutil.which("xxhsum"):
    KINDS.append(kind_of(xxh3, "function and underscore", lambda name, digest, _: f"XXH3_{digest}  {name}"))

CONTENTS = {PLAIN: b"a", VICTIM: b"some bytes " * 100, LAST: b"", NEWLINE: b"n", BACKSLASH: b"b", CLOSING: b"c" * 600}


def name_md5(name):
    """Of the file as it is; what stands beside it decides."""
    return hashlib.md5(CONTENTS.get(name, b"")).hexdigest()


class Matrix(CheckCase):
    """Each test tries one thing with every kind of list."""

    def setUp(self):
        super().setUp()
        for name, content in CONTENTS.items():
            if not WINDOWS or name not in (NEWLINE, BACKSLASH):
                self.write(name, content)
        self.write("bagit.txt", b"BagIt-Version: 1.0\n")

    def entries(self, kind, victim=VICTIM, digest=None):
        """Three entries, of which the second one is special."""
        names = (PLAIN, victim, LAST)
        entries = [(name, kind.digest(CONTENTS.get(name, b"?")), len(CONTENTS.get(name, b"?"))) for name in names]
        if digest is not None:
            entries[1] = (victim, digest, entries[1][2])
        return entries

    def expect(self, kind, text, status, victim_line, errors=""):
        """Checks the list, and that the entries around the special one are found as they are."""
        content = text if isinstance(text, bytes) else os.fsencode(text)
        self.write(kind.list_name, content)
        output = f"{PLAIN}: OK\n{victim_line}{LAST}: OK\n"
        with self.subTest(kind=kind.name):
            self.assert_check((*kind.options, kind.list_name), status, output, kind.note + errors)

    def test_right(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind)), 0, f"{VICTIM}: OK\n")

    def test_wrong_digest(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind, digest=kind.digest(b"other"))), 1, f"{VICTIM}: FAILED\n",
                        warning(1, DIFFERENT))

    def test_digest_cut(self):
        for kind in KINDS:
            text = kind.text(self.entries(kind, digest=kind.digest(CONTENTS[VICTIM])[:-1]))
            if kind.cut_changes:
                self.expect(kind, text, 1, f"{VICTIM}: FAILED\n", warning(1, DIFFERENT))
            else:
                self.expect(kind, text, 0, "", warning(kind.lines_per_cut, MALFORMED))

    def test_file_missing(self):
        os.remove(self.path(VICTIM))
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind)), 1, f"{VICTIM}: FAILED open or read\n",
                        f"fyrnsum: {VICTIM}: No such file or directory\n" + warning(1, UNREAD))

    @posix_only
    def test_file_unreadable(self):
        os.remove(self.path(VICTIM))
        os.symlink(VICTIM, self.path(VICTIM))
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind)), 1, f"{VICTIM}: FAILED open or read\n",
                        f"fyrnsum: {VICTIM}: Too many levels of symbolic links\n" + warning(1, UNREAD))

    @posix_only
    def test_names_with_newline(self):
        tried = [kind for kind in KINDS if kind.tells_newline]
        for kind in tried:
            self.expect(kind, kind.text(self.entries(kind, NEWLINE)), 0, f"{SHOWN[NEWLINE]}: OK\n")
        self.assertGreater(len(tried), 10)

    @posix_only
    def test_names_with_backslash(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind, BACKSLASH)), 0, f"{SHOWN[BACKSLASH]}: OK\n")

    def test_names_with_closing_parenthesis(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind, CLOSING)), 0, f"{SHOWN[CLOSING]}: OK\n")

    def test_carriage_returns(self):
        for kind in KINDS:
            if kind.ends == "\n":
                self.expect(kind, kind.text(self.entries(kind)).replace("\n", "\r\n"), 0, f"{VICTIM}: OK\n")

    def test_byte_order_mark(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind)).encode("utf-8-sig"), 0, f"{VICTIM}: OK\n")

    def test_utf16(self):
        for kind in KINDS:
            for codec in ("utf-16-le", "utf-16-be"):
                self.expect(kind, ("\ufeff" + kind.text(self.entries(kind))).encode(codec), 0, f"{VICTIM}: OK\n")

    def test_no_final_line_end(self):
        for kind in KINDS:
            self.expect(kind, kind.text(self.entries(kind)).removesuffix(kind.ends), 0, f"{VICTIM}: OK\n")

    def test_a_digest_alone(self):
        """The list is named after its one file, and holds nothing else."""
        right = hashlib.sha256(CONTENTS[VICTIM]).hexdigest()
        ok, failed = f"{VICTIM}: OK\n", f"{VICTIM}: FAILED\n"
        none = "fyrnsum: victim.sha256: no properly formatted checksum lines found\n"
        for text, status, output, errors in (
                (right + "\n", 0, ok, ""), (hashlib.sha256(b"other").hexdigest() + "\n", 1, failed, warning(1, DIFFERENT)),
                (right[:-1] + "\n", 1, "", none), (right + "\r\n", 0, ok, ""), (right, 0, ok, ""), ("\ufeff" + right, 0, ok, ""),
                (("\ufeff" + right + "\n").encode("utf-16-le"), 0, ok, ""), (("\ufeff" + right).encode("utf-16-be"), 0, ok, "")):
            self.write("victim.sha256", text if isinstance(text, bytes) else text.encode())
            with self.subTest(text=text):
                self.assert_check(("victim.sha256",), status, output, errors)
        os.remove(self.path(VICTIM))
        self.write("victim.sha256", right.encode())
        self.assert_check(("victim.sha256",), 1, f"{VICTIM}: FAILED open or read\n",
                          f"fyrnsum: {VICTIM}: No such file or directory\n" + warning(1, UNREAD))


if __name__ == "__main__":
    unittest.main()
