# SPDX-License-Identifier: MIT
"""Digests to compare with, computed by Python or straight from the definition; never by the program."""
import hashlib

EMPTY_MD5 = "d41d8cd98f00b204e9800998ecf8427e"

ROWS = (
    "BLAKE2-128 BLAKE2-160 BLAKE2-224 BLAKE2-256 BLAKE2-384 BLAKE2-512 CRC-16 CRC-32 CRC-64 "
    "KECCAK-224 KECCAK-256 KECCAK-384 KECCAK-512 MD4 MD5 "
    "MD6-128 MD6-160 MD6-192 MD6-224 MD6-256 MD6-384 MD6-512 "
    "SHA1 SHA2-256 SHA2-384 SHA2-512 SHA3-224 SHA3-256 SHA3-384 SHA3-512 SHAKE-128 SHAKE-256 SHAKE-512 "
    "SKEIN-256 SKEIN-512 SKEIN-1024 "
    "TIGER1-128 TIGER1-160 TIGER1-192 TIGER2-128 TIGER2-160 TIGER2-192 WHIRLPOOL"
).split()


def md5(content):
    return hashlib.md5(content).hexdigest()


def sha1(content):
    return hashlib.sha1(content).hexdigest()


def sha256(content):
    return hashlib.sha256(content).hexdigest()


def crc(content, width, polynomial, value):
    """The right-shifting CRC, bit by bit; `value` is both the initial value and the final XOR."""
    register = value
    for byte in content:
        register ^= byte
        for _ in range(8):
            register = register >> 1 ^ (polynomial if register & 1 else 0)
    return f"{register ^ value:0{width // 4}x}"


def crc16(content, polynomial=0xA001):
    return crc(content, 16, polynomial, 0xFFFF)


def crc32(content, polynomial=0xEDB88320, value=0xFFFFFFFF):
    return crc(content, 32, polynomial, value)


def crc64(content, polynomial=0xD800000000000000, value=0xFFFFFFFFFFFFFFFF):
    return crc(content, 64, polynomial, value)
