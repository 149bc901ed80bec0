#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""fyrnsum on one core: beside fyrn, several functions of one reading, and a list of many small files.

usage: fyrnsum.py FYRN FYRNSUM [--size MIB] [--files N] [--rounds N]

Commands take turns, A B A B ..., on one processor, and what counts is the best processor time of each: other work on the
machine is left out, and a drift of its speed meets all of them.
"""
import argparse
import math
import os
import resource
import shutil
import subprocess
import sys
import tempfile

from small_files import write_files

# fyrn's name of a function, and fyrnsum's.
FUNCTIONS = [("CRC-32", "crc32"), ("MD5", "md5"), ("SHA1", "sha1"), ("SHA2-256", "sha256"), ("SHA2-512", "sha512"),
             ("BLAKE2-512", "blake2b"), ("SHA3-256", "sha3-256")]
TOGETHER = ("md5", "sha256", "sha512")


def seconds(command):
    """Processor time of one command."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def best_of(rounds, commands):
    """The best time of each command, which take turns."""
    best = [math.inf] * len(commands)
    for _ in range(rounds):
        best = [min(known, seconds(command)) for known, command in zip(best, commands)]
    return best


def compare_with_fyrn(options, file):
    print("| Function | fyrn, s | fyrnsum, s | fyrnsum's time over fyrn's |\n| --- | ---: | ---: | ---: |")
    for row, name in FUNCTIONS:
        fyrn, fyrnsum = best_of(options.rounds, [[options.fyrn, f"-hash={row}", file],
                                                 [options.fyrnsum, "-j1", "-a", name, file]])
        print(f"| {row} | {fyrn:.3f} | {fyrnsum:.3f} | {fyrnsum / fyrn:.3f} |", flush=True)


def compare_several(options, file):
    """Several functions, against their single times less all readings but one."""
    command = [options.fyrnsum, "-j1", "-a"]
    commands = [[*command, name, file] for name in TOGETHER]
    commands += [[*command, ",".join(TOGETHER), file], ["dd", f"if={file}", "of=/dev/null", "bs=256K", "status=none"]]
    *alone, together, reading = best_of(options.rounds, commands)
    allowed = sum(alone) - (len(TOGETHER) - 1) * reading
    print(f"{'+'.join(TOGETHER)}: {together:.3f} s; alone {' + '.join(f'{time:.3f}' for time in alone)} s, one reading "
          f"{reading:.3f} s: {together / allowed:.3f} of the sum less {len(TOGETHER) - 1} readings", flush=True)


def compare_lists(options, directory):
    write_files(directory, options.files)
    with open(os.path.join(directory, "LIST"), "wb") as output:
        subprocess.run([options.fyrnsum, "-r", directory, "--exclude=LIST"], stdout=output, check=True)
    size = sum(entry.stat().st_size for entry in os.scandir(directory))
    theirs, ours = best_of(options.rounds, [["sha256sum", "--quiet", "-c", os.path.join(directory, "LIST")],
                                            [options.fyrnsum, "-j1", "--quiet", "-c", os.path.join(directory, "LIST")]])
    print(f"a list of {options.files} files, {size / options.files:.0f} bytes on average: sha256sum {theirs:.2f} s, "
          f"fyrnsum {ours:.2f} s, {theirs / ours:.2f} times as fast")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("fyrn")
    parser.add_argument("fyrnsum")
    parser.add_argument("--size", type=int, default=256, help="of the large file, MiB")
    parser.add_argument("--files", type=int, default=100000)
    parser.add_argument("--rounds", type=int, default=15)
    options = parser.parse_args()
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    directory = tempfile.mkdtemp(prefix="fyrnsum-", dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
    try:
        large = os.path.join(directory, "large")
        with open(large, "wb") as file:
            for _ in range(options.size):
                file.write(os.urandom(1 << 20))
        compare_with_fyrn(options, large)
        compare_several(options, large)
        os.remove(large)
        compare_lists(argparse.Namespace(**{**vars(options), "rounds": min(options.rounds, 5)}), directory)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    sys.exit(main())
