# SPDX-License-Identifier: MIT
"""Where the salt goes, and which functions take it."""
import hashlib
import os
import unittest

import launcher
from expected import md5, sha1

CONTENT = b"the file's content"
SALT = b"\x00salt\r\n\x1a\xff"


class SaltCase(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        self.write("a", CONTENT)
        self.write("salt", SALT)

    def digests(self, *arguments):
        """Digest text by function name."""
        lines = [line.decode() for line in self.fyrn(*arguments, "-verbosity=1", "a").lines]
        names = lines[0].removeprefix("Hashes: ").split()
        return dict(zip(names, (line.strip() for line in lines[2:]), strict=True))


class Salt(SaltCase):
    def md5_with(self, *arguments):
        return self.digests("-hash=MD5", *arguments)["MD5"]

    def test_placements(self):
        self.assertEqual(self.md5_with("-salt=salt", "-salttype=before"), md5(SALT + CONTENT))
        self.assertEqual(self.md5_with("-salt=salt", "-salttype=after"), md5(CONTENT + SALT))
        self.assertEqual(self.md5_with("-salt=salt", "-salttype=both"), md5(SALT + CONTENT + SALT))

    def test_placement_names_are_matched_without_case_and_whole(self):
        self.assertEqual(self.md5_with("-salt=salt", "-salttype=Before"), md5(SALT + CONTENT))
        self.assertEqual(self.md5_with("-SALT=salt", "-SALTTYPE=BOTH"), md5(SALT + CONTENT + SALT))
        for value in ("none", "", "BEFORE ", " before", "befor", "beforehand", "1", "before,after"):
            self.assertEqual(self.md5_with("-salt=salt", "-salttype=" + value), md5(CONTENT), value)

    def test_the_last_placement_wins(self):
        self.assertEqual(self.md5_with("-salttype=before", "-salt=salt", "-salttype=after"), md5(CONTENT + SALT))
        self.assertEqual(self.md5_with("-salttype=before", "-salt=salt", "-salttype=none"), md5(CONTENT))
        self.assertEqual(self.md5_with("-salttype=before", "-salt=salt", "-salttype=what"), md5(CONTENT))

    def test_the_last_path_wins(self):
        self.write("other", b"other")
        self.assertEqual(self.md5_with("-salt=salt", "-salt=other", "-salttype=before"), md5(b"other" + CONTENT))
        self.assertEqual(self.md5_with("-salt=salt", "-salt=", "-salttype=before"), md5(CONTENT))

    def test_path_or_placement_alone_load_nothing(self):
        self.assertEqual(self.md5_with("-salt=salt"), md5(CONTENT))
        self.assertEqual(self.md5_with("-salttype=both"), md5(CONTENT))

    def test_a_salt_that_cannot_be_used_is_no_salt(self):
        os.mkdir(self.path("directory"))
        self.write("empty")
        for path in ("missing", "directory", "empty", "missing/salt"):
            self.assertEqual(self.md5_with("-salt=" + path, "-salttype=before"), md5(CONTENT), path)

    def test_a_salt_named_from_another_directory(self):
        self.write("deep/salt", b"deep")
        self.assertEqual(self.md5_with("-salt=" + os.path.join("deep", "salt"), "-salttype=after"),
                         md5(CONTENT + b"deep"))

    @launcher.posix_only
    def test_a_path_is_cut_at_259_characters(self):
        name = "s" * 200
        self.write(name, b"long")
        path = "./" * 29 + "/" + name
        self.assertEqual(len(path), 259)
        self.assertEqual(self.md5_with("-salt=" + path, "-salttype=before"), md5(b"long" + CONTENT))
        self.assertEqual(self.md5_with("-salt=" + path + "cut away", "-salttype=before"), md5(b"long" + CONTENT))

    @launcher.posix_only
    def test_a_pipe_as_a_salt_is_no_salt_and_nobody_waits_for_it(self):
        os.mkfifo(self.path("pipe"))
        result = self.fyrn("-hash=MD5", "-salt=pipe", "-salttype=both", "-verbosity=1", "a", timeout=20)
        self.assertEqual(result.lines[2:], [b"  " + md5(CONTENT).encode()])

    @launcher.posix_only
    def test_a_device_as_a_salt_is_no_salt(self):
        for device in ("/dev/zero", "/dev/null"):
            self.assertEqual(self.md5_with("-salt=" + device, "-salttype=both"), md5(CONTENT))

    @launcher.posix_only
    def test_a_pipe_named_as_salt_is_left_for_the_target(self):
        result = self.fyrn("-hash=MD5", "-salt=/dev/stdin", "-salttype=both", "-verbosity=1", "/dev/stdin",
                           stdin=None, input=b"piped")
        self.assertEqual(result.lines[2:], [b"  " + md5(b"piped").encode()])

    @launcher.posix_only
    @unittest.skipIf(launcher.INSTRUMENTED or launcher.LAUNCHER, "sanitizers and emulators hold descriptors themselves")
    def test_salt_and_files_are_closed_again(self):
        self.write("salt", b"salt")
        result = launcher.in_shell('ulimit -n 4; "$@"', "-hash=MD5", "-salt=salt", "-salttype=before", "-verbosity=1",
                                   "a", "a", directory=self.scratch)
        self.assertEqual(result.lines[2:], [b"  " + md5(b"salt" + CONTENT).encode()] * 2)


class SaltedFunctions(SaltCase):
    """Which rows change under a salt before the file."""

    def salted(self, *names):
        options = ["-hash=" + name for name in names]
        plain = self.digests(*options)
        salted = self.digests(*options, "-salt=salt", "-salttype=before")
        return [name for name in plain if plain[name] != salted[name]]

    def test_all_functions_but_blake2_and_shake_take_it(self):
        plain = self.digests("-hash=ALL")
        unsalted = [name for name in plain if name not in self.salted("ALL")]
        self.assertEqual(unsalted, [
            "BLAKE2-128", "BLAKE2-160", "BLAKE2-224", "BLAKE2-256", "BLAKE2-384", "BLAKE2-512",
            "SHAKE-128", "SHAKE-256", "SHAKE-512"])

    def test_every_salted_function_takes_it_alone(self):
        for name in self.digests("-hash=ALL"):
            takes = not name.startswith(("BLAKE2", "SHAKE", "KECCAK"))
            self.assertEqual(self.salted(name), [name] if takes else [], name)

    def test_keccak_alone_loads_no_salt(self):
        self.assertEqual(self.salted("KECCAK-224", "KECCAK-256", "KECCAK-384", "KECCAK-512"), [])
        self.assertEqual(self.salted("KECCAK-256", "MD5", "CRC-32", "WHIRLPOOL"), ["CRC-32", "MD5", "WHIRLPOOL"])

    def test_keccak_is_salted_along_with_each_sha_function(self):
        for name in ("SHA1", "SHA2-256", "SHA2-384", "SHA2-512", "SHA3-224", "SHA3-256", "SHA3-384", "SHA3-512"):
            self.assertEqual(self.salted("KECCAK-512", name), ["KECCAK-512", name])

    def test_sha_digests_are_those_of_salt_and_file(self):
        digests = self.digests("-hash=SHA1", "-hash=SHA2-512", "-salt=salt", "-salttype=both")
        self.assertEqual(digests["SHA1"], sha1(SALT + CONTENT + SALT))
        self.assertEqual(digests["SHA2-512"], hashlib.sha512(SALT + CONTENT + SALT).hexdigest())


if __name__ == "__main__":
    unittest.main()
