#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What GNU's tools print, say and return, in one table. Some of it came with versions that this system need not have.

Each scenario bears the version that brought it. The tools of this system are asked as well when they are new enough, so
that what the table expects is what they do; `script/test -R gnu_scenarios` on a newer system asks them for more.
"""
import base64
import hashlib
import re
import shlex
import subprocess
import unittest

import checking
from program import Result, SumCase, native_only, posix_only, run_command

F, G = b"abc", b"def\n" * 300
FILES = {"f": F, "g": G, "empty": b"", "two words": F, "new\nline": F, "back\\slash": F, "it's": F, "é": F}


def sha3(bits):
    return lambda data: hashlib.new(f"sha3_{bits}", data)


def blake2b(bits):
    return lambda data: hashlib.blake2b(data, digest_size=bits // 8)


COMPUTE = {"md5": hashlib.md5, "sha1": hashlib.sha1, "sha224": hashlib.sha224, "sha256": hashlib.sha256,
           "sha384": hashlib.sha384, "sha512": hashlib.sha512, "blake2b": hashlib.blake2b,
           **{f"sha3-{bits}": sha3(bits) for bits in (224, 256, 384, 512)},
           **{f"blake2b-{bits}": blake2b(bits) for bits in (8, 128, 256, 384)}}


def old_sum(match):
    """{bsd f} and the like, with the size in blocks as the tool writes it."""
    name, data = match[1], FILES[match[2]]
    if name == "crc":
        return f"{checking.posix_cksum(data)} {len(data)}"
    if name == "bsd":
        return f"{checking.bsd_sum(data):05} {-(-len(data) // 1024):5}"
    return f"{checking.sysv_sum(data)} {-(-len(data) // 512)}"


def digest(match):
    """{sha256 f} in hexadecimal, {sha256:64 f} in base64."""
    name, encoding, file = match.groups()
    value = COMPUTE[name](FILES[file]).digest()
    return base64.b64encode(value).decode() if encoding else value.hex()


def filled(text):
    text = re.sub(r"\{(crc|bsd|sysv) (\w+)\}", old_sum, text)
    return re.sub(r"\{([a-z0-9-]+)(:64)? (\w+)\}", digest, text)


class Scenario:
    def __init__(self, since, command, output="", errors="", status=0, stdin=""):
        self.since = since
        self.command = shlex.split(command)
        self.output, self.errors, self.stdin = (filled(text) for text in (output, errors, stdin))
        self.status = status


def refused(since, command, *messages, advice=True):
    """A command line that ends the run before anything is read."""
    tool = command.split()[0]
    lines = [f"{tool}: {message}" for message in messages]
    if advice:
        lines.append(f"Try '{tool} --help' for more information.")
    return Scenario(since, command, errors="\n".join(lines) + "\n", status=1)


def checked(since, command, stdin, output="", errors="", status=0):
    return Scenario(since, command, output, errors, status, stdin)


NONE_FOUND = "{0}: 'standard input': no properly formatted checksum lines found\n".format
LENGTHS = "224, 256, 384, or 512"

SCENARIOS = [
    # cksum's own default, and the sums that are older.
    Scenario("9.0", "cksum f g", "{crc f} f\n{crc g} g\n"),
    Scenario("9.0", "cksum", "{crc f}\n", stdin="abc"),
    Scenario("9.0", "cksum -", "{crc f} -\n", stdin="abc"),
    Scenario("9.0", "cksum --untagged f", "{crc f} f\n"),
    Scenario("9.0", "cksum -z f g", "{crc f} f\0{crc g} g\0"),
    Scenario("9.0", "sum f g empty", "{bsd f} f\n{bsd g} g\n{bsd empty} empty\n"),
    Scenario("9.0", "sum -s f g", "{sysv f} f\n{sysv g} g\n"),
    Scenario("9.0", "sum", "{bsd f}\n", stdin="abc"),
    Scenario("9.0", "sum -s -", "{sysv f} -\n", stdin="abc"),
    Scenario("9.0", "cksum -a bsd f g", "{bsd f} f\n{bsd g} g\n"),
    Scenario("9.0", "cksum -a sysv f g", "{sysv f} f\n{sysv g} g\n"),
    Scenario("9.6", "cksum -a crc32b f empty", "891568578 3 f\n0 0 empty\n"),

    # Tags, marks and line ends.
    Scenario("9.0", "cksum -a md5 f g", "MD5 (f) = {md5 f}\nMD5 (g) = {md5 g}\n"),
    Scenario("9.0", "cksum -a md5", "MD5 (-) = {md5 f}\n", stdin="abc"),
    Scenario("9.0", "cksum -a sha512 --untagged f", "{sha512 f}  f\n"),
    Scenario("9.0", "cksum -a sha1 --tag --untagged f", "{sha1 f}  f\n"),
    Scenario("9.0", "cksum -a sha1 --untagged --tag f", "SHA1 (f) = {sha1 f}\n"),
    Scenario("9.0", "cksum -a sha224 -z f g", "SHA224 (f) = {sha224 f}\0SHA224 (g) = {sha224 g}\0"),
    Scenario("9.0", "cksum -a md5 --untagged -z 'new\nline' f", "{md5 f}  new\nline\0{md5 f}  f\0"),
    Scenario("9.0", "cksum -a md5 'new\nline' 'back\\slash'",
             "\\MD5 (new\\nline) = {md5 f}\n\\MD5 (back\\\\slash) = {md5 f}\n"),
    Scenario("9.0", "md5sum 'new\nline' 'back\\slash' f", "\\{md5 f}  new\\nline\n\\{md5 f}  back\\\\slash\n{md5 f}  f\n"),
    Scenario("9.0", "sha256sum -b f", "{sha256 f} *f\n"),
    Scenario("9.0", "sha256sum --tag f", "SHA256 (f) = {sha256 f}\n"),
    refused("9.0", "md5sum --tag --text f", "--tag does not support --text mode"),
    refused("9.5", "cksum -a md5 --tag --text f", "--tag does not support --text mode"),

    # Lengths.
    Scenario("9.0", "b2sum -l 256 f", "{blake2b-256 f}  f\n"),
    Scenario("9.0", "b2sum -l 8 --tag f", "BLAKE2b-8 (f) = {blake2b-8 f}\n"),
    Scenario("9.0", "b2sum -l 0 --tag f", "BLAKE2b (f) = {blake2b f}\n"),
    Scenario("9.0", "b2sum -l 512 --tag f", "BLAKE2b (f) = {blake2b f}\n"),
    Scenario("9.0", "cksum -a blake2b -l 384 f", "BLAKE2b-384 (f) = {blake2b-384 f}\n"),
    Scenario("9.0", "cksum -l 384 -a blake2b --untagged f", "{blake2b-384 f}  f\n"),
    refused("9.0", "b2sum -l 9 f", "invalid length: '9'", "length is not a multiple of 8", advice=False),
    refused("9.0", "b2sum -l 520 f", "invalid length: '520'", "maximum digest length for 'BLAKE2b' is 512 bits",
            advice=False),
    refused("9.0", "b2sum -l x f", "invalid length: 'x'", advice=False),
    refused("9.0", "cksum -a blake2b -l 1024 f", "invalid length: '1024'",
            "maximum digest length for 'BLAKE2b' is 512 bits", advice=False),
    Scenario("9.8", "cksum -a sha2 -l 256 f", "SHA256 (f) = {sha256 f}\n"),
    Scenario("9.8", "cksum --algorithm=sha2 --length=224 f g", "SHA224 (f) = {sha224 f}\nSHA224 (g) = {sha224 g}\n"),
    Scenario("9.8", "cksum -l 384 -a sha2 --untagged f", "{sha384 f}  f\n"),
    Scenario("9.8", "cksum -a sha2 -l 512 -z f", "SHA512 (f) = {sha512 f}\0"),
    Scenario("9.8", "cksum -a sha3 -l 224 f", "SHA3-224 (f) = {sha3-224 f}\n"),
    Scenario("9.8", "cksum -a sha3 -l 256 -", "SHA3-256 (-) = {sha3-256 f}\n", stdin="abc"),
    Scenario("9.8", "cksum -a sha3 -l 384 --untagged f", "{sha3-384 f}  f\n"),
    Scenario("9.8", "cksum -a sha3 -l 512 f g", "SHA3-512 (f) = {sha3-512 f}\nSHA3-512 (g) = {sha3-512 g}\n"),
    refused("9.8", "cksum -a sha2 f", f"--algorithm=sha2 requires specifying --length {LENGTHS}", advice=False),
    refused("9.8", "cksum -a sha3 f", f"--algorithm=sha3 requires specifying --length {LENGTHS}", advice=False),
    refused("9.8", "cksum -a sha2 -l 128 f", "invalid length: '128'", f"digest length for 'SHA2' must be {LENGTHS}",
            advice=False),
    refused("9.8", "cksum -a sha3 -l 1024 f", "invalid length: '1024'", f"digest length for 'SHA3' must be {LENGTHS}",
            advice=False),
    refused("9.8", "cksum -a sha256 -l 256 f", "--length is only supported with --algorithm blake2b, sha2, or sha3",
            advice=False),
    refused("9.8", "cksum -a md5 -l 128 f", "--length is only supported with --algorithm blake2b, sha2, or sha3",
            advice=False),

    # Digests in base64.
    Scenario("9.2", "cksum --base64 -a md5 f", "MD5 (f) = {md5:64 f}\n"),
    Scenario("9.2", "cksum --base64 -a sha256 --untagged f g", "{sha256:64 f}  f\n{sha256:64 g}  g\n"),
    Scenario("9.2", "cksum --base64 -a blake2b -l 128 f", "BLAKE2b-128 (f) = {blake2b-128:64 f}\n"),
    Scenario("9.2", "cksum --base64 f", "{crc f} f\n"),
    Scenario("9.2", "cksum --base64 -a bsd f", "{bsd f} f\n"),
    Scenario("9.8", "cksum --base64 -a sha2 -l 384 f", "SHA384 (f) = {sha384:64 f}\n"),
    Scenario("9.8", "cksum --base64 -a sha3 -l 512 f", "SHA3-512 (f) = {sha3-512:64 f}\n"),
    checked("9.2", "cksum -c", "MD5 (f) = {md5:64 f}\nSHA512 (g) = {sha512:64 g}\n", "f: OK\ng: OK\n"),
    checked("9.2", "cksum -c --strict", "BLAKE2b-128 (f) = {blake2b-128:64 f}\n", "f: OK\n"),
    checked("9.2", "cksum -a sha1 -c", "{sha1:64 f}  f\n{sha1 g}  g\n", "f: OK\ng: OK\n"),
    checked("9.2", "cksum -a md5 -c", "{md5:64 g}  f\n", "f: FAILED\n",
            "cksum: WARNING: 1 computed checksum did NOT match\n", 1),
    checked("9.8", "cksum -c", "SHA3-256 (f) = {sha3-256:64 f}\nSHA384 (f) = {sha384:64 f}\n", "f: OK\nf: OK\n"),
    checked("9.2", "cksum -c", "MD5 (f) = kAFQmDzST7DWlj99KOF/cg=\n", errors=NONE_FOUND("cksum"), status=1),
    checked("9.2", "cksum -c", "MD5 (f) = kAFQmDzST7DWlj99KOF/cg\n", errors=NONE_FOUND("cksum"), status=1),

    # The digest of one file as bytes.
    refused("9.2", "cksum --raw --base64 -a md5 f", "--base64 and --raw are mutually exclusive"),
    refused("9.2", "cksum --raw f g", "the --raw option is not supported with multiple files", advice=False),

    # Lists of the families.
    checked("9.8", "cksum -c", "SHA2-384 (f) = {sha384 f}\nSHA384 (f) = {sha384 f}\n", "f: OK\nf: OK\n"),
    checked("9.8", "cksum -c --strict -a sha384", "SHA2-384 (f) = {sha384 f}\n", "f: OK\n"),
    checked("9.8", "cksum -c --strict -a sha2", "SHA2-224 (f) = {sha224 f}\nSHA512 (g) = {sha512 g}\n", "f: OK\ng: OK\n"),
    checked("9.8", "cksum -c --strict -a sha2 -l 384", "SHA2-384 (f) = {sha384:64 f}\nSHA384 (g) = {sha384 g}\n",
            "f: OK\ng: OK\n"),
    checked("9.8", "cksum -c -a sha2", "SHA3-256 (f) = {sha3-256 f}\n", errors=NONE_FOUND("cksum"), status=1),
    checked("9.8", "cksum -c -a sha3", "SHA3-256 (f) = {sha3-256 f}\nSHA3-512 (g) = {sha3-512 g}\n", "f: OK\ng: OK\n"),
    checked("9.8", "cksum -c -a sha3", "SHA256 (f) = {sha256 f}\n", errors=NONE_FOUND("cksum"), status=1),
    checked("9.8", "cksum -c -a sha2 -l 256", "{sha256 f}  f\n", "f: OK\n"),
    checked("9.8", "cksum -c -a sha3 -l 512", "{sha3-512 f}  f\n", "f: OK\n"),
    checked("9.8", "cksum -c -a sha3 -l 512", "{sha3-512 g}  f\n", "f: FAILED\n",
            "cksum: WARNING: 1 computed checksum did NOT match\n", 1),
    checked("9.8", "cksum -c", "SHA2-256 (f) = {sha384 f}\nSHA3-384 (f) = {md5 f}\nSHA2-128 (f) = {md5 f}\n",
            errors=NONE_FOUND("cksum"), status=1),

    # Lists in general.
    checked("9.0", "cksum -c", "MD5 (f) = {md5 f}\nBLAKE2b-256 (g) = {blake2b-256 g}\n", "f: OK\ng: OK\n"),
    checked("9.0", "cksum -c", " \\MD5 (f) = {md5 f}\n\t\\SHA1 (g) = {sha1 g}\n", "f: OK\ng: OK\n"),
    checked("9.0", "cksum -c --tag", "MD5 (f) = {md5 f}\n", "f: OK\n"),
    checked("9.0", "cksum -c --untagged", "MD5 (f) = {md5 f}\n", "f: OK\n"),
    checked("9.5", "cksum -c -b", "MD5 (f) = {md5 f}\n", "f: OK\n"),
    checked("9.0", "cksum -c -a sha1", "MD5 (f) = {md5 f}\n", errors=NONE_FOUND("cksum"), status=1),
    checked("9.0", "cksum -c", "{md5 f}  f\n", errors=NONE_FOUND("cksum"), status=1),
    checked("9.0", "b2sum -c", "{blake2b-256 f}  f\nBLAKE2b-8 (g) = {blake2b-8 g}\n", "f: OK\ng: OK\n"),
    checked("9.0", "md5sum -c", "{md5 f}  d\n{md5 g}  g\n", "d: FAILED open or read\ng: OK\n",
            "md5sum: d: Is a directory\nmd5sum: WARNING: 1 listed file could not be read\n", 1),
    checked("9.0", "md5sum -c", "{md5 f}  /proc/self/mem\n{md5 g}  g\n", "/proc/self/mem: FAILED open or read\ng: OK\n",
            "md5sum: /proc/self/mem: Input/output error\nmd5sum: WARNING: 1 listed file could not be read\n", 1),
    checked("9.0", "md5sum -c --ignore-missing", "{md5 f}  none\n{md5 g}  g\n", "g: OK\n"),
    checked("9.0", "md5sum -c --ignore-missing", "{md5 f}  none\n", errors=
            "md5sum: 'standard input': no file was verified\n", status=1),
    checked("9.0", "md5sum -c --strict", "{md5 f}  f\nnothing\n", "f: OK\n",
            "md5sum: WARNING: 1 line is improperly formatted\n", 1),
    checked("9.0", "md5sum -c --warn", "{md5 f}  f\nnothing\n", "f: OK\n",
            "md5sum: 'standard input': 2: improperly formatted MD5 checksum line\n"
            "md5sum: WARNING: 1 line is improperly formatted\n"),
    refused("9.0", "md5sum -c --tag f", "the --tag option is meaningless when verifying checksums"),
    refused("9.0", "md5sum -c -z f", "the --zero option is not supported when verifying checksums"),
    refused("9.0", "cksum -c -z f", "the --zero option is not supported when verifying checksums"),
    refused("9.0", "md5sum -c -b f", "the --binary and --text options are meaningless when verifying checksums"),
    refused("9.0", "md5sum --strict f", "the --strict option is meaningful only when verifying checksums"),
    refused("9.0", "cksum -a md5 --quiet f", "the --quiet option is meaningful only when verifying checksums"),

    # Names in messages are quoted as a shell wants them.
    Scenario("9.0", "md5sum 'no pe' f", "{md5 f}  f\n", "md5sum: 'no pe': No such file or directory\n", 1),
    Scenario("9.0", "md5sum \"no'pe\"", errors="md5sum: \"no'pe\": No such file or directory\n", status=1),
    Scenario("9.0", "cksum 'no\npe' '$x' 'a*' ''", errors=
             "cksum: 'no'$'\\n''pe': No such file or directory\ncksum: '$x': No such file or directory\n"
             "cksum: 'a*': No such file or directory\ncksum: '': No such file or directory\n", status=1),
    Scenario("9.0", "sum no:pe", errors="sum: 'no:pe': No such file or directory\n", status=1),
    Scenario("9.0", "b2sum \"\x1b[1m\"", errors="b2sum: ''$'\\033''[1m': No such file or directory\n", status=1),

    # Files that cannot be read: the run goes on.
    Scenario("9.5", "cksum f d g", "{crc f} f\n{crc g} g\n", "cksum: d: Is a directory\n", 1),
    Scenario("9.0", "cksum -a sha256 d f", "SHA256 (f) = {sha256 f}\n", "cksum: d: Is a directory\n", 1),
    Scenario("9.0", "sum d f", "{bsd f} f\n", "sum: d: Is a directory\n", 1),
    Scenario("9.0", "sum -s d", errors="sum: d: Is a directory\n", status=1),
    Scenario("9.0", "md5sum d /proc/self/mem f", "{md5 f}  f\n",
             "md5sum: d: Is a directory\nmd5sum: /proc/self/mem: Input/output error\n", 1),
    Scenario("9.5", "cksum /proc/self/mem", errors="cksum: /proc/self/mem: Input/output error\n", status=1),
    Scenario("9.0", "sum /proc/self/mem", errors="sum: /proc/self/mem: Input/output error\n", status=1),
    Scenario("9.0", "sum -s /proc/self/mem", errors="sum: /proc/self/mem: Input/output error\n", status=1),
    Scenario("9.0", "sha1sum f/x", errors="sha1sum: f/x: Not a directory\n", status=1),
]

# The raw digests, which are no text.
RAW = [("9.2", "cksum --raw f", b"\x48\xaa\x78\xa2"), ("9.2", "cksum --raw -a bsd f", b"\x40\xac"),
       ("9.2", "cksum --raw -a sysv f", b"\x01\x26"), ("9.2", "cksum --raw -a md5 f", hashlib.md5(F).digest()),
       ("9.2", "cksum --raw -a blake2b -l 128 f", blake2b(128)(F).digest()),
       ("9.6", "cksum --raw -a crc32b f", b"\x35\x24\x41\xc2"),
       ("9.8", "cksum --raw -a sha2 -l 512 f", hashlib.sha512(F).digest()),
       ("9.8", "cksum --raw -a sha3 -l 224 -z f", sha3(224)(F).digest())]


def number(version):
    return tuple(int(part) for part in version.split("."))


def installed(tool):
    """Path and version of GNU's tool of this system, if it has one."""
    done = subprocess.run(["sh", "-c", 'command -v -- "$0" && "$0" --version', tool], capture_output=True, text=True, check=False)
    match = re.match(r"(.+)\n.*\(GNU coreutils\) (\d+\.\d+)", done.stdout)
    return (match[1], number(match[2])) if match else (None, (0, 0))


@posix_only
class Scenarios(SumCase):
    def setUp(self):
        super().setUp()
        for name, content in FILES.items():
            self.write(name, content)
        self.write("d/file")

    def all(self):
        for scenario in SCENARIOS:
            expected = Result(scenario.status, scenario.output.encode(), scenario.errors.encode())
            yield scenario.since, scenario.command, scenario.stdin.encode(), expected
        for since, command, output in RAW:
            yield since, shlex.split(command), b"", Result(0, output, b"")

    def test_this_program_does_as_the_table_says(self):
        for _, (tool, *arguments), stdin, expected in self.all():
            with self.subTest([tool, *arguments], stdin=stdin):
                self.assertEqual(self.tool(tool, *arguments, stdin=stdin), expected)

    @native_only
    def test_the_tools_of_this_system_do_as_the_table_says(self):
        asked = 0
        for since, (tool, *arguments), stdin, expected in self.all():
            path, version = installed(tool)
            if version < number(since):
                continue
            asked += 1
            theirs = run_command([path, *arguments], directory=self.scratch, stdin=stdin, env={"LC_ALL": "C"})
            for name in (path, "command -v -- " + tool):
                theirs.errors = theirs.errors.replace(f"'{name} --help'".encode(), f"'{tool} --help'".encode())
                theirs.errors = re.sub(rf"(?m)^{re.escape(name)}:".encode(), tool.encode() + b":", theirs.errors)
            with self.subTest([tool, *arguments], stdin=stdin):
                self.assertEqual(theirs, expected)
        print(f"{asked} of {len(SCENARIOS) + len(RAW)} scenarios were put to the tools of this system")


if __name__ == "__main__":
    unittest.main()
