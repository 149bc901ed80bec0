#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Processor time per file of fyrn and its peers on many small files, as whole commands.

usage: small_files.py FYRN [--files N] [--rounds N]
"""
import argparse
import math
import os
import random
import resource
import shutil
import subprocess
import sys
import tempfile


def write_files(directory, count):
    """Files of 0 to 4,096 bytes with a fixed distribution of sizes."""
    sizes = random.Random(20260101)
    for number in range(count):
        with open(os.path.join(directory, f"{number:06}.dat"), "wb") as file:
            file.write(os.urandom(sizes.randint(0, 4096)))


def seconds(command):
    """Processor time of a command line and all that it starts: other work on the machine is left out."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, shell=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def contest(fyrn, row, directory):
    names = f"find {directory} -type f -print0 | xargs -0"
    commands = {"fyrn": f"'{fyrn}' -hash={row} {directory}"}
    rhash = {"CRC-32": "crc32", "MD5": "md5", "SHA1": "sha1", "SHA2-256": "sha256", "SHA2-512": "sha512",
             "BLAKE2-512": "blake2b", "SHA3-256": "sha3-256", "TIGER1-192": "tiger", "WHIRLPOOL": "whirlpool"}
    coreutils = {"CRC-32": "cksum", "MD5": "md5sum", "SHA1": "sha1sum", "SHA2-256": "sha256sum",
                 "SHA2-512": "sha512sum", "BLAKE2-512": "b2sum"}
    openssl = {"MD5": "md5", "SHA1": "sha1", "SHA2-256": "sha256", "SHA2-512": "sha512", "SHA3-256": "sha3-256",
               "BLAKE2-512": "blake2b512"}
    if row in rhash and shutil.which("rhash"):
        commands["RHash"] = f"rhash --{rhash[row]} -r {directory}"
    if row in coreutils:
        commands[coreutils[row]] = f"{names} {coreutils[row]}"
    if row in openssl and shutil.which("openssl"):
        commands["OpenSSL"] = f"{names} openssl dgst -{openssl[row]}"
    if shutil.which("xxhsum"):
        commands["xxhsum"] = f"{names} xxhsum"
    return commands


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("fyrn")
    parser.add_argument("--files", type=int, default=20000)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("rows", nargs="*")
    options = parser.parse_intermixed_args()
    rows = options.rows or ["CRC-32", "MD5", "MD6-256", "SHA1", "SHA2-256", "SHA2-512", "SHA3-256", "SHAKE-128",
                            "BLAKE2-512", "SKEIN-512", "TIGER1-192", "WHIRLPOOL"]
    place = "/dev/shm" if os.path.isdir("/dev/shm") else None
    directory = tempfile.mkdtemp(prefix="fyrn-small-", dir=place)
    try:
        write_files(directory, options.files)
        print(f"{options.files} files of 0 to 4,096 bytes, microseconds a file, best of {options.rounds}")
        for row in rows:
            commands = contest(options.fyrn, row, directory)
            best = dict.fromkeys(commands, math.inf)
            for _ in range(options.rounds):
                for name, command in commands.items():
                    best[name] = min(best[name], seconds(command))
            figures = "  ".join(f"{name} {best[name] / options.files * 1e6:.1f}" for name in best)
            others = [best[name] for name in best if name != "fyrn"]
            ratio = f"  ({min(others) / best['fyrn']:.2f}x of the fastest)" if others else ""
            print(f"{row:<12}{figures}{ratio}", flush=True)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    sys.exit(main())
