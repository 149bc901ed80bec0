# SPDX-License-Identifier: MIT
"""What the tests of --check share: running the command, and lists whose digests Python computes."""
import base64
import hashlib
import os
import zlib

import program

MALFORMED = ("line is improperly formatted", "lines are improperly formatted")
UNREAD = ("listed file could not be read", "listed files could not be read")
DIFFERENT = ("computed checksum did NOT match", "computed checksums did NOT match")


def warning(count, words):
    """The line about so many of them, nothing when there are none."""
    return f"fyrnsum: WARNING: {count} {words[count != 1]}\n" if count else ""


def crc32(data):
    return f"{zlib.crc32(data):08X}"


def posix_cksum(data):
    """The CRC of POSIX cksum, bit by bit from the standard's definition."""
    length, tail = len(data), b""
    while length:
        tail += bytes([length & 255])
        length >>= 8
    crc = 0
    for byte in data + tail:
        crc ^= byte << 24
        for _ in range(8):
            crc = (crc << 1 ^ (0x04C11DB7 if crc >> 31 else 0)) & 0xFFFFFFFF
    return crc ^ 0xFFFFFFFF


def bsd_sum(data):
    """The rotating sum of BSD in 16 bits."""
    total = 0
    for byte in data:
        total = (total >> 1 | (total & 1) << 15) + byte & 0xFFFF
    return total


def sysv_sum(data):
    """The sum of System V: all bytes, folded twice into 16 bits."""
    total = sum(data)
    total = (total & 0xFFFF) + (total >> 16 & 0xFFFF)
    return (total & 0xFFFF) + (total >> 16)


def digest_of(function, data):
    return hashlib.new(function, data).hexdigest()


def base64_of(function, data):
    return base64.b64encode(hashlib.new(function, data).digest()).decode()


class CheckCase(program.SumCase):
    """A test with a directory of its own, where lists are checked."""

    def assert_check(self, arguments, status, output, errors, **options):
        """Checks with these options and lists. Outputs are text; the form of line ends does not matter."""
        result = self.fyrnsum("--check", *arguments, **options)
        shown = [os.fsdecode(text.replace(b"\r\n", b"\n")) for text in (result.output, result.errors)]
        self.assertEqual((result.status, *shown), (status, output, errors))
