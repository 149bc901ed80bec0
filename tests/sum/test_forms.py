# SPDX-License-Identifier: MIT
"""The lines of every function in every form, against Python's hashlib and zlib and the tools of the system."""
import base64
import hashlib
import json
import os
import subprocess
import unittest
import zlib

from program import SumCase, native_only, posix_only

CONTENT = bytes(range(256)) * 700 + b"end"

# The name for -a, the tag, and how Python computes the digest.
FUNCTIONS = [("md5", "MD5", hashlib.md5), ("sha1", "SHA1", hashlib.sha1), ("sha224", "SHA224", hashlib.sha224),
             ("sha256", "SHA256", hashlib.sha256), ("sha384", "SHA384", hashlib.sha384),
             ("sha512", "SHA512", hashlib.sha512), ("sha3-224", "SHA3-224", hashlib.sha3_224),
             ("sha3-256", "SHA3-256", hashlib.sha3_256), ("sha3-384", "SHA3-384", hashlib.sha3_384),
             ("sha3-512", "SHA3-512", hashlib.sha3_512), ("blake2b", "BLAKE2b", hashlib.blake2b),
             ("blake2b-256", "BLAKE2b-256", lambda data: hashlib.blake2b(data, digest_size=32))]


class Crc32:
    def __init__(self, data):
        self.value = zlib.crc32(data)

    def digest(self):
        return self.value.to_bytes(4, "big")


FUNCTIONS.append(("crc32", "CRC32", Crc32))


def tools_digests(content):
    """What the system's tools say, by the name for -a."""
    digests = {}
    for name in ("sm3",):
        line = subprocess.run(["cksum", "-a", name, "--untagged"], input=content, capture_output=True,
                              check=True).stdout
        digests[name] = bytes.fromhex(line.split()[0].decode())
    for name, openssl in (("sha512-256", "sha512-256"), ("sha512-224", "sha512-224"), ("rmd160", "rmd160")):
        line = subprocess.run(["openssl", "dgst", "-r", "-" + openssl], input=content, capture_output=True,
                              check=False).stdout
        if line:
            digests[name] = bytes.fromhex(line.split()[0].decode())
    return digests


class Forms(SumCase):
    def setUp(self):
        super().setUp()
        self.write("a file", CONTENT)

    def test_every_function_in_every_line_form(self):
        for name, tag, compute in FUNCTIONS:
            digest = compute(CONTENT).digest()
            text, text64 = digest.hex(), base64.b64encode(digest).decode()
            with self.subTest(name):
                self.check(self.fyrnsum("-a", name, "a file"), f"{text}  a file\n")
                self.check(self.fyrnsum("-a", name, "-b", "a file"), f"{text} *a file\n")
                self.check(self.fyrnsum("-a", name, "--tag", "a file"), f"{tag} (a file) = {text}\n")
                self.check(self.fyrnsum("-a", name, "-z", "a file"), f"{text}  a file\0")
                self.check(self.fyrnsum("-a", name, "--base64", "a file"), f"{text64}  a file\n")
                self.check(self.fyrnsum("-a", name, "--base64", "--tag", "a file"), f"{tag} (a file) = {text64}\n")
                result = self.fyrnsum("-a", name, "--raw", "a file")
                self.assertEqual((result.output, result.status), (digest, 0))
                self.check(self.fyrnsum("-a", name, "--json", "a file"),
                           json.dumps({"path": "a file", "size": len(CONTENT), name: text},
                                      separators=(",", ":")) + "\n")
                self.check(self.fyrnsum("-a", name, stdin=CONTENT), f"{text}  -\n")

    @native_only
    def test_functions_that_python_lacks(self):
        digests = tools_digests(CONTENT)
        self.assertIn("sm3", digests)
        for name, digest in digests.items():
            with self.subTest(name):
                self.check(self.fyrnsum("-a", name, "a file"), f"{digest.hex()}  a file\n")

    def test_any_length_of_blake2b_and_shake(self):
        for bits in (8, 200, 384, 504):
            digest = hashlib.blake2b(CONTENT, digest_size=bits // 8).hexdigest()
            self.check(self.fyrnsum("-a", "blake2b", f"-l{bits}", "--tag", "a file"),
                       f"BLAKE2b-{bits} (a file) = {digest}\n")
        for name in ("shake128", "shake256"):
            digest = getattr(hashlib, name[:5] + "_" + name[5:])(CONTENT).hexdigest(125)
            self.check(self.fyrnsum("-a", name, "--length=1000", "a file"), f"{digest}  a file\n")

    def test_several_functions_share_one_reading_and_keep_their_order(self):
        names = [name for name, _, _ in FUNCTIONS]
        lines = [f"{tag} (a file) = {compute(CONTENT).digest().hex()}\n" for _, tag, compute in FUNCTIONS]
        self.check(self.fyrnsum("-a", ",".join(names), "a file"), "".join(lines))
        self.check(self.fyrnsum("-a", ",".join(names), stdin=CONTENT), "".join(lines).replace("a file", "-"))
        result = json.loads(self.fyrnsum("-a", ",".join(names), "--json", "a file").output)
        self.assertEqual(result, {"path": "a file", "size": len(CONTENT),
                                  **{name: compute(CONTENT).digest().hex() for name, _, compute in FUNCTIONS}})

    def test_forms_of_other_programs(self):
        crc, md5 = f"{zlib.crc32(CONTENT):08X}", hashlib.md5(CONTENT).hexdigest()
        sha256 = hashlib.sha256(CONTENT).hexdigest()
        self.check(self.fyrnsum("--format=sfv", "a file"), f"; Written by fyrnsum\na file {crc}\n")
        self.check(self.fyrnsum("--format=hashdeep", "a file"),
                   f"%%%% HASHDEEP-1.0\n%%%% size,md5,sha256,filename\n{len(CONTENT)},{md5},{sha256},a file\n")
        self.check(self.fyrnsum("--format=bagit", "a file"), f"{sha256}  a file\n")
        self.check(self.fyrnsum("--format=bsd", "a file"), f"SHA256 (a file) = {sha256}\n")
        self.check(self.fyrnsum("--format=gnu", "-a", "md5,sha256", "a file"), f"{md5}  a file\n{sha256}  a file\n")

    @posix_only
    def test_names_are_kept_byte_for_byte(self):
        digest = hashlib.md5(b"").hexdigest()
        for name, line in ((b"a\nb", b"\\%s  a\\nb\n"), (b"a\\b", b"\\%s  a\\\\b\n"), (b"a\rb", b"\\%s  a\\rb\n"),
                           (b"\xff\xfe", b"%s  \xff\xfe\n"), (b" a ", b"%s   a \n"), (b"a\x1b[2J", b"%s  a\x1b[2J\n")):
            self.write(name)
            with self.subTest(name):
                self.check(self.fyrnsum("-a", "md5", b"--", name), line % digest.encode())
                self.check(self.fyrnsum("-za", "md5", b"--", name), digest.encode() + b"  " + name + b"\0")
        self.check(self.fyrnsum("-a", "md5", "--json", b"\xff\xfe"),
                   '{"path_base64":"//4=","size":0,"md5":"%s"}\n' % digest)
        self.check(self.fyrnsum("--format=sfv", b"a\nb"), "; Written by fyrnsum\n",
                   "fyrnsum: 'a'$'\\n''b': this name cannot be written in lists of this form\n", 1)

    @posix_only
    @native_only
    def test_lines_are_those_of_gnu(self):
        self.write("other")
        for tool in ("md5sum", "sha1sum", "sha224sum", "sha256sum", "sha384sum", "sha512sum", "b2sum", "cksum", "sum"):
            for options in ([], ["-z"], ["--tag"], ["-b"], ["-t"]):
                if tool == "sum" and options or tool == "cksum" and options != ["-z"]:
                    continue
                command = [tool, *options, "a file", "other"]
                expected = subprocess.run(command, cwd=self.scratch, capture_output=True, check=True).stdout
                with self.subTest(command):
                    self.check(self.tool(*command), expected)
                    expected = subprocess.run([tool, *options], input=CONTENT, capture_output=True, check=True).stdout
                    self.check(self.tool(tool, *options, stdin=CONTENT), expected)
        for function in ("bsd", "sysv", "crc", "md5", "sha1", "sha224", "sha256", "sha384", "sha512", "blake2b", "sm3"):
            for options in ([], ["--untagged"], ["--tag"], ["-z"]):
                command = ["cksum", "-a", function, *options, "a file", "-"]
                expected = subprocess.run(command, cwd=self.scratch, capture_output=True, input=CONTENT,
                                          check=True).stdout
                with self.subTest(command):
                    self.check(self.tool(*command, stdin=CONTENT), expected)

    def test_the_oldest_checksums_have_decimal_lines(self):
        # The POSIX example of cksum is 4294967295 for nothing; sum's are those of coreutils' own tests.
        self.write("f", b"message digest")
        self.check(self.fyrnsum("-a", "bsd", "f"), "26423     1 f\n")
        self.check(self.fyrnsum("-a", "sysv", "f"), "1413 1 f\n")
        self.check(self.fyrnsum("-a", "crc", os.devnull, stdin=b""), f"4294967295 0 {os.devnull}\n")
        self.check(self.tool("cksum", "-a", "crc32b", "f"), f"{zlib.crc32(b'message digest')} 14 f\n")
        self.check(self.tool("cksum", stdin=b""), "4294967295 0\n")
        result = self.tool("cksum", "--raw", stdin=b"")
        self.assertEqual(result.output, b"\xff\xff\xff\xff")


if __name__ == "__main__":
    unittest.main()
