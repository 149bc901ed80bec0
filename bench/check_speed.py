#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Fails when a kernel or a whole command is slower than it should be.

usage: check_speed.py [--record] [--processor NAME] [--size MIB] RECORDS FIGURES KERNEL-RATIOS FYRN [ROW...]

Only ratios are compared, of programs that take turns on the same machine.

- Kernels, on every machine: the one in use must not be more than 3 percent slower than another that could be used.
- Kernels, on a processor with records: none, compared with the portable one, has lost more than a quarter.
- Whole commands, on every machine: fyrn over a file, compared with openssl, rhash and cksum, as many as are installed,
  keeps most of the ratio that FIGURES (docs/performance.md) tells, and prints the digest that they print.

What is too slow is measured again, and fails when that stands. With --record the ratios of this machine's kernels take
the place of its records.
"""
import argparse
import collections
import hashlib
import os
import re
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import zlib

TRIES = 9    # of a kernel that seems slow
PAUSE = 0.3  # seconds between them
ROUNDS = 80  # turns of each kernel in a try
LEAST_RECORDED = 0.75  # of a recorded ratio
LEAST_IN_USE = 0.97    # of the fastest other kernel

COMMAND_TRIES = 3   # the best one counts
COMMAND_ROUNDS = 7  # runs of each command in a try
# Of a ratio in the figures. They were measured with kernels for newer processors: where only the portable one can run,
# peers may have their own, and less is asked.
LEAST_OF_FIGURE = 0.7
LEAST_WITH_PORTABLE = 0.35

OPENSSL = ["openssl", "dgst"]

# The row, the algorithm of the kernel behind it, and the peers' commands by their names in the figures.
Row = collections.namedtuple("Row", "name algorithm peers")
ROWS = (
    Row("MD5", "Md5", {"OpenSSL": [*OPENSSL, "-md5"], "RHash": ["rhash", "--md5"]}),
    Row("SHA1", "Sha1", {"OpenSSL": [*OPENSSL, "-sha1"], "RHash": ["rhash", "--sha1"]}),
    Row("SHA2-256", "Sha256", {"OpenSSL": [*OPENSSL, "-sha256"], "RHash": ["rhash", "--sha256"]}),
    Row("SHA2-512", "Sha512", {"OpenSSL": [*OPENSSL, "-sha512"], "RHash": ["rhash", "--sha512"]}),
    Row("SHA3-256", "Keccak-136", {"OpenSSL": [*OPENSSL, "-sha3-256"], "RHash": ["rhash", "--sha3-256"]}),
    Row("BLAKE2-512", "Blake2b", {"OpenSSL": [*OPENSSL, "-blake2b512"], "RHash": ["rhash", "--blake2b"]}),
    Row("WHIRLPOOL", "Whirlpool", {"RHash": ["rhash", "--whirlpool"]}),
    Row("TIGER1-192", "Tiger", {"RHash": ["rhash", "--tiger"]}),
    Row("CRC-32", "Crc", {"coreutils": ["cksum"]}),
)
OTHER_FUNCTION = ("cksum",)  # of the same cost

# What can be had without a peer.
TRUE_DIGESTS = {
    "MD5": lambda data: hashlib.md5(data).hexdigest(),
    "SHA1": lambda data: hashlib.sha1(data).hexdigest(),
    "SHA2-256": lambda data: hashlib.sha256(data).hexdigest(),
    "SHA2-512": lambda data: hashlib.sha512(data).hexdigest(),
    "SHA3-256": lambda data: hashlib.sha3_256(data).hexdigest(),
    "BLAKE2-512": lambda data: hashlib.blake2b(data).hexdigest(),
    "CRC-32": lambda data: f"{zlib.crc32(data):08x}",
}


def this_processor():
    """Maker, family, model and the features that decide which kernels are used."""
    fields = {}
    try:
        with open("/proc/cpuinfo", encoding="ascii", errors="replace") as info:
            for line in info:
                name, _, value = line.partition(":")
                fields.setdefault(name.strip(), value.strip())
    except OSError:
        return "unknown"
    features = {"avx2", "avx512f", "avx512vbmi", "bmi2", "gfni", "pclmulqdq", "sha_ni", "vpclmulqdq"} & set(fields.get("flags", "").split())
    known = [fields.get(name, "unknown") for name in ("vendor_id", "cpu family", "model")]
    return " ".join(known + sorted(features))


# Records: processor -> (algorithm, kernel) -> ratio to the portable kernel

def read_records(path):
    """Lines: "[processor]", or algorithm, kernel and ratio."""
    records, current = collections.defaultdict(dict), None
    with open(path, encoding="ascii") as file:
        for line in file:
            line = line.partition("#")[0].strip()
            if line.startswith("["):
                current = records[line.strip("[]")]
            elif line:
                algorithm, kernel, ratio = line.split()
                current[algorithm, kernel] = float(ratio)
    return records


def write_records(path, records):
    with open(path, encoding="ascii") as file:
        head = [line for line in file if line.startswith("#")]
    with open(path, "w", encoding="ascii") as file:
        file.writelines(head)
        for processor in sorted(records):
            file.write(f"\n[{processor}]\n")
            for (algorithm, kernel), ratio in records[processor].items():
                file.write(f"{algorithm:<12}{kernel:<10}{ratio:.2f}\n")


def read_figures(path):
    """Row -> peer -> how many times as fast as it fyrn is, from the table with lines
    "| ROW | MB/s | times the fastest | PEER MB/s, PEER MB/s... |"."""
    figures = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            peers = re.findall(r"(\S+) (\d+)(?:,|$)", cells[-1])
            if len(cells) == 4 and cells[1].isdigit() and peers:
                figures[cells[0]] = {peer: int(cells[1]) / int(rate) for peer, rate in peers}
    return figures


# Kernels

class Kernels:
    """The kernels that this machine can run. Another program on the same core slows some kernels more than others, so
    two figures must agree on a loss: the median of all tries, and the best speeds of all tries, since each kernel meets
    a quiet moment in one of them."""

    def __init__(self, program):
        self.program = program
        self.tries = collections.defaultdict(list)  # algorithm -> kernel -> MB/s of each try
        self.in_use = {}                            # algorithm -> kernel
        self.measure()

    def measure(self, *algorithms):
        """One try of these algorithms, or of all."""
        output = subprocess.run([self.program, str(ROUNDS), *algorithms], check=True, capture_output=True, text=True).stdout
        measured = collections.defaultdict(dict)
        for line in output.splitlines():
            algorithm, kernel, _, speed = line.split()[:4]
            measured[algorithm][kernel] = float(speed)
            if line.endswith("in use"):
                self.in_use[algorithm] = kernel
        for algorithm, speeds in measured.items():
            self.tries[algorithm].append(speeds)

    def kernels(self, algorithm):
        return list(self.tries[algorithm][0])

    def speed(self, algorithm, combine, others):
        """The kernel in use against the fastest of the others, over all tries so far."""
        used = self.in_use[algorithm]
        if combine is max:
            best = {kernel: max(speeds[kernel] for speeds in self.tries[algorithm]) for kernel in (used, *others)}
            return best[used] / max(best[kernel] for kernel in others)
        return combine(speeds[used] / max(speeds[kernel] for kernel in others) for speeds in self.tries[algorithm])

    def ratio(self, algorithm, others):
        return max(self.speed(algorithm, combine, others) for combine in (statistics.median, max))


def comparisons(kernels, recorded):
    """Algorithm -> list of (the kernels compared with, the least ratio, what it is)."""
    wanted = {}
    for algorithm, in_use in kernels.in_use.items():
        others = [kernel for kernel in kernels.kernels(algorithm) if kernel != in_use]
        wanted[algorithm] = [(others, LEAST_IN_USE, "the fastest other")] if others else []
        if (algorithm, in_use) in recorded:
            before = recorded[algorithm, in_use]
            wanted[algorithm].append((["portable"], LEAST_RECORDED * before, f"portable, recorded {before:.2f}"))
    return wanted


def check_kernels(kernels, recorded):
    """Prints every comparison. How many kernels fail."""
    wanted = comparisons(kernels, recorded)

    def slow(algorithm):
        return any(kernels.ratio(algorithm, others) < least for others, least, _ in wanted[algorithm])

    for _ in range(TRIES - 1):
        suspects = list(filter(slow, wanted))
        if not suspects:
            break
        time.sleep(PAUSE)
        kernels.measure(*suspects)
    for algorithm, compared in wanted.items():
        told = "".join(f"  {kernels.ratio(algorithm, others):5.2f} times {what}" for others, _, what in compared)
        print(f"kernel  {algorithm:<12}{kernels.in_use[algorithm]:<10}{told}{'  SLOW' if slow(algorithm) else ''}", flush=True)
    unused = sum(kernels.in_use.get(algorithm) != kernel for algorithm, kernel in recorded)
    if unused:
        print(f"{unused} records are for kernels that are not in use here")
    return sum(map(slow, wanted))


# Whole commands

def run(command):
    """Seconds of processor time, and the output. Raises OSError or CalledProcessError."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    output = subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True, text=True).stdout
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime, output


class Commands:
    """Whole commands over one file, their start left out."""

    def __init__(self, fyrn, scratch, size):
        self.fyrn = fyrn
        self.data = os.urandom(size)
        self.path = os.path.join(scratch, "message")
        self.empty = os.path.join(scratch, "empty")
        for path, content in ((self.path, self.data), (self.empty, b"")):
            with open(path, "wb") as file:
                file.write(content)

    def command(self, row):
        return [self.fyrn, f"-hash={row.name}", "-verbosity=1"]

    def wrong_digest(self, row, peers):
        """What fyrn printed where it is not the digest of the file; None where it is."""
        digest = (run([*self.command(row), self.path])[1].split() or [""])[-1]
        known = [TRUE_DIGESTS[row.name](self.data)] if row.name in TRUE_DIGESTS else []
        for command in peers.values():
            if command[0] not in OTHER_FUNCTION:
                known.append(run([*command, self.path])[1].lower())
        good = re.fullmatch("[0-9a-f]{8,}", digest) and all(digest in text for text in known)
        return None if good else digest

    def ratios(self, row, peers):
        """Peer -> how many times as fast as it fyrn is, by the medians of runs that take turns."""
        contestants = {"fyrn": self.command(row), **peers}
        times = {(name, path): [] for name in contestants for path in (self.path, self.empty)}
        for _ in range(COMMAND_ROUNDS):
            for name, command in contestants.items():
                for path in (self.path, self.empty):
                    times[name, path].append(run([*command, path])[0])
        seconds = {name: max(statistics.median(times[name, self.path]) - statistics.median(times[name, self.empty]), 1e-6)
                   for name in contestants}
        return {peer: seconds[peer] / seconds["fyrn"] for peer in peers}


def share_wanted(kernels, algorithm):
    """Which part of a figure this machine must reach."""
    only_portable = algorithm in kernels.in_use and kernels.kernels(algorithm) == ["portable"]
    return LEAST_WITH_PORTABLE if only_portable else LEAST_OF_FIGURE


def best_ratios(commands, row, peers, floors):
    """Peer -> the best ratio of up to three tries; the first that is good enough ends them."""
    best = dict.fromkeys(peers, 0.0)
    for _ in range(COMMAND_TRIES):
        if all(best[peer] >= floors[peer] for peer in peers):
            break
        for peer, ratio in commands.ratios(row, peers).items():
            best[peer] = max(best[peer], ratio)
    return best


def check_row(commands, row, peers, floors):
    """Prints the comparisons of a row. How many of them fail."""
    head = f"command {row.name:<12}"
    try:
        wrong = commands.wrong_digest(row, peers)
        if wrong is not None:
            print(f"{head}WRONG: {wrong}", flush=True)
            return 1
        best = best_ratios(commands, row, peers, floors)
    except (OSError, subprocess.CalledProcessError) as error:
        print(f"{head}FAILED: {error}", flush=True)
        return 1
    for peer in peers:
        slow = "  SLOW" if best[peer] < floors[peer] else ""
        print(f"{head}{best[peer]:5.2f} times {peer:<10} at least {floors[peer]:5.2f}{slow}", flush=True)
    return sum(best[peer] < floors[peer] for peer in peers)


def check_commands(commands, kernels, figures, names):
    """How many comparisons fail, and how many there were."""
    failed = compared = 0
    for row in ROWS:
        peers = {name: command for name, command in row.peers.items() if shutil.which(command[0])}
        if not peers or (names and row.name not in names):
            continue
        share = share_wanted(kernels, row.algorithm)
        failed += check_row(commands, row, peers, {peer: share * figures[row.name][peer] for peer in peers})
        compared += len(peers)
    return failed, compared


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--record", action="store_true")
    parser.add_argument("--processor", default=this_processor())
    parser.add_argument("--size", type=int, default=32, help="MiB of the file")
    for name in ("records", "figures", "ratios", "fyrn"):
        parser.add_argument(name)
    parser.add_argument("rows", nargs="*", help="whole commands to compare; all unless told otherwise")
    options = parser.parse_args()
    records = read_records(options.records)
    kernels = Kernels(options.ratios)
    if options.record:
        for _ in range(TRIES - 1):
            time.sleep(PAUSE)
            kernels.measure()
        records[options.processor] = {
            (algorithm, kernel): kernels.speed(algorithm, max, ["portable"])
            for algorithm, kernel in kernels.in_use.items() if kernel != "portable"}
        write_records(options.records, records)
        return 0
    recorded = records.get(options.processor, {})
    print(f"{options.processor}: {len(recorded) or 'no'} records")
    slow_kernels = check_kernels(kernels, recorded)
    with tempfile.TemporaryDirectory(prefix="fyrn-speed-") as scratch:
        commands = Commands(os.path.abspath(options.fyrn), scratch, options.size << 20)
        slow_commands, compared = check_commands(commands, kernels, read_figures(options.figures), options.rows)
    if slow_kernels or slow_commands:
        print(f"too slow, or wrong: {slow_kernels} kernels, {slow_commands} commands")
    if compared == 0:
        print("no whole command was compared")
    return 1 if slow_kernels or slow_commands or compared == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
