#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Fails when a kernel or a row has lost more than a quarter of its recorded speed.

usage: check_speed.py [--record] [--processor NAME] RECORDS KERNEL-RATIOS FYRN OPENSSL

Only ratios are compared, of two programs that take turns on the same machine: each kernel to the portable one, and
fyrn to `openssl dgst` over one file. A loss counts when it stands in three tries. A record holds for one processor and
one kernel: lines of other processors, and of kernels that are not the one in use here, are passed over and counted. On
a processor without records a kernel must at least not be slower, by more than a quarter, than any that it is preferred
to.
With --record the figures of this machine take the place of its records.
"""
import argparse
import collections
import os
import resource
import statistics
import subprocess
import sys
import tempfile

TRIES = 3
LEAST = 0.75  # of the recorded ratio
ROUNDS = 80   # turns of each kernel
COMMAND_ROUNDS = 5
FILE_SIZE = 16 << 20

# Row -> the algorithm of the kernel behind it, OpenSSL's name.
OPENSSL_ROWS = {
    "MD5": ("Md5", "md5"), "SHA1": ("Sha1", "sha1"), "SHA2-256": ("Sha256", "sha256"), "SHA2-512": ("Sha512", "sha512"),
    "SHA3-256": ("Keccak-136", "sha3-256"), "BLAKE2-512": ("Blake2b", "blake2b512"),
}

Record = collections.namedtuple("Record", "kind name kernel")  # kind: kernel or openssl


def this_processor():
    """Maker, family, model and the features that decide which kernels, ours and OpenSSL's, are used."""
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


def read_records(path):
    """Processor -> Record -> ratio. Lines: "[processor]", or kind, name, kernel and ratio."""
    records, current = collections.defaultdict(dict), None
    with open(path, encoding="ascii") as file:
        for line in file:
            line = line.partition("#")[0].strip()
            if line.startswith("["):
                current = records[line.strip("[]")]
            elif line:
                kind, name, kernel, ratio = line.split()
                current[Record(kind, name, kernel)] = float(ratio)
    return records


def write_records(path, records):
    with open(path, encoding="ascii") as file:
        head = [line for line in file if line.startswith("#")]
    with open(path, "w", encoding="ascii") as file:
        file.writelines(head)
        for processor in sorted(records):
            file.write(f"\n[{processor}]\n")
            for record, ratio in records[processor].items():
                file.write(f"{record.kind:<8}{record.name:<12}{record.kernel:<10}{ratio:.2f}\n")


def kernel_ratios(program, algorithms):
    """Record -> ratio to the portable kernel, for the kernel in use of each algorithm; algorithm -> the best of the ratios
    of the kernels behind it."""
    output = subprocess.run([program, str(ROUNDS), *algorithms], check=True, capture_output=True, text=True).stdout
    ratios, behind, seen = {}, collections.defaultdict(float), set()
    for line in output.splitlines():
        algorithm, kernel, ratio = line.split()[:3]
        if algorithm in seen:
            behind[algorithm] = max(behind[algorithm], float(ratio))
        else:  # the one in use stands first
            ratios[Record("kernel", algorithm, kernel)] = float(ratio)
            seen.add(algorithm)
    return ratios, behind


def processor_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def openssl_ratio(options, row, path, empty):
    """How many times as fast as OpenSSL fyrn is over the file, the programs' start left out."""
    commands = ([options.fyrn, f"-hash={row}"], [options.openssl, "dgst", f"-{OPENSSL_ROWS[row][1]}"])
    best = [[float("inf")] * 2 for _ in commands]
    for _ in range(COMMAND_ROUNDS):
        for command, seconds in zip(commands, best):
            for i, file in enumerate((path, empty)):
                seconds[i] = min(seconds[i], processor_seconds([*command, file]))
    fyrn, openssl = (max(full - start, 1e-6) for full, start in best)
    return openssl / fyrn


class Machine:
    """What this machine does: the ratios by record, measured when asked for."""

    def __init__(self, options, scratch):
        self.options = options
        self.path = os.path.join(scratch, "message")
        self.empty = os.path.join(scratch, "empty")
        for path, content in ((self.path, os.urandom(FILE_SIZE)), (self.empty, b"")):
            with open(path, "wb") as file:
                file.write(content)
        kernels, self.behind = kernel_ratios(options.ratios, [])
        self.kernels = {record.name: record for record in kernels}
        self.first = dict(kernels)

    def records(self):
        rows = [Record("openssl", row, self.kernels[algorithm].kernel)
                for row, (algorithm, _) in OPENSSL_ROWS.items() if algorithm in self.kernels]
        return [*(record for record in self.kernels.values() if record.kernel != "portable"), *rows]

    def measure(self, record):
        if record in self.first:
            return self.first.pop(record)
        if record.kind == "kernel":
            return kernel_ratios(self.options.ratios, [record.name])[0][record]
        return openssl_ratio(self.options, record.name, self.path, self.empty)


def best_of_tries(machine, record, wanted):
    """The best ratio of up to three tries; the first that is good enough ends them."""
    best = 0.0
    for _ in range(TRIES):
        best = max(best, machine.measure(record))
        if best >= wanted:
            break
    return best


def check(machine, recorded):
    """Prints every comparison. The records that are not met."""
    lost = []
    for record in machine.records():
        known = record in recorded
        if not known and (recorded or record.kind != "kernel"):
            continue
        before = recorded[record] if known else machine.behind[record.name]
        now = best_of_tries(machine, record, LEAST * before)
        verdict = "" if now >= LEAST * before else "  LOST"
        source = "recorded" if known else "behind"
        print(f"{record.kind:<8}{record.name:<12}{record.kernel:<10}{source} {before:5.2f}  now {now:5.2f}{verdict}",
              flush=True)
        if verdict:
            lost.append(record)
    return lost


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--record", action="store_true")
    parser.add_argument("--processor", default=this_processor())
    for name in ("records", "ratios", "fyrn", "openssl"):
        parser.add_argument(name)
    options = parser.parse_args()
    records = read_records(options.records)
    with tempfile.TemporaryDirectory(prefix="fyrn-speed-") as scratch:
        machine = Machine(options, scratch)
        if options.record:
            records[options.processor] = {
                record: statistics.median(machine.measure(record) for _ in range(TRIES)) for record in machine.records()}
            write_records(options.records, records)
            return 0
        recorded = records.get(options.processor, {})
        print(f"{options.processor}: {len(recorded) or 'no'} records")
        lost = check(machine, recorded)
    unused = len(set(recorded) - set(machine.records()))
    if unused:
        print(f"{unused} records are for kernels that are not in use here")
    if lost:
        print(f"{len(lost)} lost more than a quarter of the recorded speed in {TRIES} tries")
    return 1 if lost else 0


if __name__ == "__main__":
    sys.exit(main())
