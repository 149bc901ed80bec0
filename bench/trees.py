#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Whole trees: fyrnsum on all cores beside the fastest that other tools can do there, as whole commands.

usage: trees.py FYRNSUM [--rounds N] [--large N] [--small N] [--cold] [FUNCTION...]

Two trees in the page cache: 64 files of 16 MiB, and 20,000 files of 0 to 64 KiB. Commands alternate; wall time, medians.
Checking a list of each tree is timed too. With --cold the second tree is read after the caches were dropped (as root).
"""
import argparse
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

CORES = len(os.sched_getaffinity(0))
COREUTILS = {"md5": "md5sum", "sha1": "sha1sum", "sha256": "sha256sum", "sha512": "sha512sum", "blake2b": "b2sum"}
RHASH = {"md4": "md4", "md5": "md5", "sha1": "sha1", "sha256": "sha256", "sha512": "sha512", "sha3-256": "sha3-256",
         "tiger": "tiger", "whirlpool": "whirlpool", "blake2b": "blake2b"}
OPENSSL = {"md5": "md5", "sha1": "sha1", "sha256": "sha256", "sha512": "sha512", "sha3-256": "sha3-256",
           "blake2b": "blake2b512", "sm3": "sm3"}
HASHDEEP = {"md5", "sha1", "sha256", "tiger", "whirlpool"}
FUNCTIONS = ["md5", "md4", "sha1", "sha256", "sha512", "sha3-256", "blake2b", "skein-512", "tiger", "blake3"]


def write_tree(directory, count, size_of):
    sizes = random.Random(20260101)
    for number in range(count):
        folder = os.path.join(directory, f"{number // 500:03}")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, f"{number:06}.dat"), "wb") as file:
            file.write(sizes.randbytes(size_of(sizes)))


def peers(function, directory):
    """Command lines of other tools; those that know one thread only are given a process for each core."""
    spread = f"find {directory} -type f -print0 | xargs -0 -P{CORES} -n"
    commands = {}
    for batch in (1, 200):
        if function in COREUTILS:
            commands[f"{COREUTILS[function]} by {batch}"] = f"{spread}{batch} {COREUTILS[function]}"
        if function in RHASH and shutil.which("rhash"):
            commands[f"RHash by {batch}"] = f"{spread}{batch} rhash --{RHASH[function]}"
        if function in OPENSSL and shutil.which("openssl"):
            commands[f"OpenSSL by {batch}"] = f"{spread}{batch} openssl dgst -{OPENSSL[function]}"
        if function == "blake3" and shutil.which("b3sum"):
            commands[f"b3sum by {batch}"] = f"{spread}{batch} b3sum --num-threads 1"
    if function in HASHDEEP and shutil.which("hashdeep"):
        commands["hashdeep"] = f"hashdeep -j{CORES} -c {function} -r {directory}"
    if function == "blake3" and shutil.which("b3sum"):
        commands["b3sum"] = f"find {directory} -type f -print0 | xargs -0 b3sum"
    return commands


def drop_caches():
    os.sync()
    with open("/proc/sys/vm/drop_caches", "w", encoding="ascii") as file:
        file.write("3")


def seconds(command, cold):
    if cold:
        drop_caches()
    before = time.monotonic()
    subprocess.run(command, shell=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=True)
    return time.monotonic() - before


def contest(commands, rounds, cold):
    """Command -> median. What is more than twice as slow as the fastest other tool is not run again."""
    times = {name: [seconds(command, cold)] for name, command in commands.items()}
    for turn in range(rounds - 1):
        limit = 2 * min((min(found) for name, found in times.items() if not name.startswith("fyrnsum")), default=0)
        names = [name for name in commands if name.startswith("fyrnsum") or min(times[name]) <= limit]
        for name in names if turn % 2 else reversed(names):
            times[name].append(seconds(commands[name], cold))
    return {name: statistics.median(found) for name, found in times.items()}


def compare(options, title, directory, function):
    lists = os.path.join(options.place, "list")
    own = f"'{options.fyrnsum}' -a {function}"
    with open(lists, "w", encoding="utf-8") as file:
        subprocess.run(f"{own} -r {directory}", shell=True, stdout=file, check=True)
    commands = {"fyrnsum": f"{own} -r {directory}", "fyrnsum -c": f"{own} --quiet -c {lists}"}
    if not options.cold:
        commands["fyrnsum -j1"] = f"{own} -j1 -r {directory}"
    others = peers(function, directory)
    medians = contest(commands | others, options.rounds, options.cold)
    figures = "  ".join(f"{name} {medians[name]:.2f} s" for name in commands)
    if others:
        best = min(others, key=medians.get)
        figures += f"  {best} {medians[best]:.2f} s  ({medians[best] / medians['fyrnsum']:.2f}x, " \
                   f"checking {medians[best] / medians['fyrnsum -c']:.2f}x)"
    print(f"{title:<6}{function:<11}{figures}", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("fyrnsum")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--large", type=int, default=64)
    parser.add_argument("--small", type=int, default=20000)
    parser.add_argument("--cold", action="store_true")
    parser.add_argument("functions", nargs="*")
    options = parser.parse_intermixed_args()
    in_memory = "/dev/shm" if os.path.isdir("/dev/shm") and not options.cold else "/var/tmp"
    options.place = tempfile.mkdtemp(prefix="fyrn-trees-", dir=in_memory)
    try:
        print(f"{CORES} cores, medians of {options.rounds}: {options.large} files of 16 MiB, {options.small} of 0 to 64 KiB")
        large, small = os.path.join(options.place, "large"), os.path.join(options.place, "small")
        if not options.cold:
            write_tree(large, options.large, lambda _: 16 << 20)
        write_tree(small, options.small, lambda sizes: sizes.randrange(65537))
        for function in options.functions or FUNCTIONS:
            if not options.cold:
                compare(options, "large", large, function)
            compare(options, "cold" if options.cold else "small", small, function)
    finally:
        shutil.rmtree(options.place)


if __name__ == "__main__":
    sys.exit(main())
