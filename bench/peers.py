#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares fyrn with every installed peer, row by row, as whole commands on one file.

usage: peers.py FYRN ADAPTER-DIRECTORY [--size MIB] [--rounds N] [--json FILE] [ROW ...]

The commands of a row run in turn, A B C A B C ..., so that a drift of the machine's speed meets all of them. A
command's figure is its best processor time over the file less its best over an empty file: what remains is reading
(from the page cache) and hashing, without the start of the program and the loading of its libraries, in which fyrn
would have an advantage over the adapters. A peer that computes the same function must print the same digest, else it
is left out and named. Peers marked "speed only" compute a related function of the same cost (a fixed polynomial, the
untruncated digest, another byte order). A peer that "times itself" prints seconds, not a digest: it has no other way
to be told apart from the window that it runs in.
"""
import argparse
import json
import math
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import time

ADAPTER_SOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "adapters")
SPEED_ONLY = "speed only"
TIMES_ITSELF = "times itself"


def rows(adapters):
    """Row name -> list of (peer name, command, how its output is compared)."""

    def gcrypt(algorithm):
        return ("libgcrypt", [f"{adapters}/adapter_gcrypt", algorithm])

    def botan(algorithm):
        return ("Botan", [f"{adapters}/adapter_botan", algorithm])

    def cryptopp(algorithm):
        return ("Crypto++", [f"{adapters}/adapter_cryptopp", algorithm])

    def isal(algorithm):
        return ("ISA-L", [f"{adapters}/adapter_isal", algorithm])

    def skein(algorithm):
        return ("Skein C", [f"{adapters}/adapter_skein", algorithm])

    def openssl(algorithm, *options):
        return ("OpenSSL", ["openssl", "dgst", "-provider", "legacy", "-provider", "default", f"-{algorithm}", *options])

    def rhash(algorithm, printed_as=None):
        return ("RHash", ["rhash", f"--{algorithm}", "--printf", "%{" + (printed_as or algorithm) + "}\n"])

    def gtkhash(bits, scale=1.0):
        command = ["xvfb-run", "-a", sys.executable, f"{ADAPTER_SOURCES}/gtkhash.py", f"MD6-{bits}", str(scale)]
        return ("GtkHash" if scale == 1 else "GtkHash*", command)  # scaled

    def coreutils(command, *options):
        return ("coreutils", [command, *options])

    table = {}

    def row(name, *same, speed_only=(), timed=()):
        table[name] = [(peer, command, "same") for peer, command in same]
        table[name] += [(peer, command, SPEED_ONLY) for peer, command in speed_only]
        table[name] += [(peer, command, TIMES_ITSELF) for peer, command in timed]

    for bits in (128, 160, 224, 256, 384, 512):
        same = [botan(f"BLAKE2b({bits})"), coreutils("b2sum", "-l", str(bits))]
        whole = [openssl("blake2b512"), cryptopp("blake2b"), rhash("blake2b")]
        if bits in (160, 256, 384, 512):
            same.append(gcrypt(f"BLAKE2B_{bits}"))
        row(f"BLAKE2-{bits}", *same, *(whole if bits == 512 else ()), speed_only=() if bits == 512 else whole)
    row("CRC-16", speed_only=[isal("crc16")])
    row("CRC-32", rhash("crc32"), gcrypt("CRC32"), botan("CRC32"), isal("crc32"),
        speed_only=[coreutils("cksum"), cryptopp("crc32")])
    row("CRC-64", speed_only=[isal("crc64")])
    for bits in (224, 256, 384, 512):
        row(f"KECCAK-{bits}", botan(f"Keccak-1600({bits})"), cryptopp(f"keccak-{bits}"),
            speed_only=[openssl(f"sha3-{bits}"), gcrypt(f"SHA3-{bits}"), rhash(f"sha3-{bits}")])
    row("MD4", openssl("md4"), rhash("md4"), gcrypt("MD4"), botan("MD4"), cryptopp("md4"))
    row("MD5", openssl("md5"), rhash("md5"), gcrypt("MD5"), botan("MD5"), cryptopp("md5"), coreutils("md5sum"))
    for bits in (128, 160, 192):
        # No tool has these sizes. What differs is the number of rounds, 40 + bits / 4, and the time goes with it.
        row(f"MD6-{bits}", timed=[gtkhash(224, (40 + bits / 4) / (40 + 224 / 4))])
    for bits in (224, 256, 384, 512):
        row(f"MD6-{bits}", timed=[gtkhash(bits)])
    row("SHA1", openssl("sha1"), rhash("sha1"), gcrypt("SHA1"), botan("SHA-1"), cryptopp("sha1"), coreutils("sha1sum"))
    for bits in (256, 384, 512):
        row(f"SHA2-{bits}", openssl(f"sha{bits}"), rhash(f"sha{bits}", f"sha-{bits}"), gcrypt(f"SHA{bits}"), botan(f"SHA-{bits}"),
            cryptopp(f"sha{bits}"), coreutils(f"sha{bits}sum"))
    for bits in (224, 256, 384, 512):
        row(f"SHA3-{bits}", openssl(f"sha3-{bits}"), rhash(f"sha3-{bits}"), gcrypt(f"SHA3-{bits}"),
            botan(f"SHA-3({bits})"), cryptopp(f"sha3-{bits}"))
    for bits in (128, 256):
        # The default length of some peers is another one; the cost of the squeeze does not show.
        row(f"SHAKE-{bits}", gcrypt(f"SHAKE{bits}:{bits // 8}"), botan(f"SHAKE-{bits}({bits})"),
            openssl(f"shake{bits}", "-xoflen", str(bits // 8)), speed_only=[cryptopp(f"shake{bits}")])
    row("SHAKE-512", speed_only=[openssl("sha3-512"), gcrypt("SHA3-512"), botan("SHA-3(512)"), cryptopp("sha3-512")])
    row("SKEIN-256", skein("256"))
    row("SKEIN-512", skein("512"), botan("Skein-512(512)"))
    row("SKEIN-1024", skein("1024"))
    for bits in (128, 160, 192):
        same = [botan(f"Tiger({bits // 8},3)")]
        whole = [gcrypt("TIGER"), cryptopp("tiger"), rhash("tiger")]
        row(f"TIGER1-{bits}", *same, speed_only=whole)
        row(f"TIGER2-{bits}", *([gcrypt("TIGER2")] if bits == 192 else ()),
            speed_only=[botan(f"Tiger({bits // 8},3)"), *whole])
    row("WHIRLPOOL", openssl("whirlpool"), rhash("whirlpool"), gcrypt("WHIRLPOOL"), botan("Whirlpool"),
        cryptopp("whirlpool"))
    return table


def run(command):
    """Seconds of processor time of one run, and its output. None when the command cannot be run or fails."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    try:
        result = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    except OSError:
        return None
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if result.returncode != 0:
        return None
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime, result.stdout.decode(errors="replace")


def measure(fyrn, name, peers, path, empty, rounds):
    """Best seconds over the file less best seconds over an empty one per contestant, and the peers left out with the
    reason."""
    contestants = {"fyrn": ([fyrn, f"-hash={name}", "-verbosity=1"], None)}
    contestants.update({peer: (command, comparison) for peer, command, comparison in peers})
    best, start, digest, left_out = {}, {}, None, {}
    for _ in range(rounds):
        for peer, (command, comparison) in contestants.items():
            if peer in left_out:
                continue
            outcome = run(command + [path])
            idle = (0.0, "") if comparison == TIMES_ITSELF else run(command + [empty])
            if outcome is None or idle is None:
                left_out[peer] = "not available"
                continue
            seconds, output = outcome
            if peer == "fyrn":
                digest = output.split()[-1]
            elif comparison == TIMES_ITSELF:
                seconds = float(output)
            elif comparison == "same" and digest not in output.lower():
                left_out[peer] = "prints another digest"
                continue
            best[peer] = min(seconds, best.get(peer, math.inf))
            start[peer] = min(idle[0], start.get(peer, math.inf))
    return {peer: best[peer] - start[peer] for peer in best}, left_out


def report(name, best, left_out, megabytes):
    peers = {peer: seconds for peer, seconds in best.items() if peer != "fyrn"}
    line = f"{name:<12}{megabytes / best['fyrn']:>8.0f} MB/s"
    ratio = None
    if peers:
        fastest = min(peers, key=peers.get)
        ratio = peers[fastest] / best["fyrn"]
        line += f"{ratio:>8.2f}x of {fastest:<11}"
        line += "  ".join(f"{peer} {megabytes / seconds:.0f}" for peer, seconds in sorted(peers.items(), key=lambda p: p[1]))
    else:
        line += "         no peer installed"
    for peer, reason in left_out.items():
        line += f"  ({peer}: {reason})"
    print(line, flush=True)
    return ratio


def summary(ratios):
    compared = {name: ratio for name, ratio in ratios.items() if ratio is not None}
    if not compared:
        return
    ahead = [name for name, ratio in compared.items() if ratio >= 1]
    worst = min(compared, key=compared.get)
    mean = math.exp(sum(map(math.log, compared.values())) / len(compared))
    print(f"\nrows with a peer: {len(compared)} of {len(ratios)}; at or ahead of the fastest: {len(ahead)}")
    print(f"behind: {', '.join(f'{n} {r:.2f}' for n, r in compared.items() if r < 1) or 'none'}")
    print(f"worst row: {worst} {compared[worst]:.2f}x; geometric mean {mean:.2f}x")


def processor():
    with open("/proc/cpuinfo", encoding="ascii", errors="replace") as info:
        return next((line.split(":", 1)[1].strip() for line in info if line.startswith("model name")), "unknown")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("fyrn")
    parser.add_argument("adapters")
    parser.add_argument("--size", type=int, default=64, help="MiB of the file")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--json", help="also write the figures to this file")
    parser.add_argument("rows", nargs="*")
    options = parser.parse_intermixed_args()
    table = rows(options.adapters)
    names = options.rows or list(table)
    scratch = tempfile.mkdtemp(prefix="fyrn-peers-")
    try:
        path = os.path.join(scratch, "message")
        with open(path, "wb") as message:
            for _ in range(options.size):
                message.write(os.urandom(1 << 20))
        empty = os.path.join(scratch, "empty")
        with open(empty, "wb"):
            pass
        megabytes = options.size * 1048576 / 1e6
        print(f"{processor()}, {time.strftime('%Y-%m-%d')}, {options.size} MiB, best of {options.rounds}; processor time of "
              "whole commands, less their start")
        ratios, figures = {}, {}
        for name in names:
            best, left_out = measure(options.fyrn, name, table[name], path, empty, options.rounds)
            ratios[name] = report(name, best, left_out, megabytes)
            figures[name] = {peer: megabytes / seconds for peer, seconds in best.items()}
        summary(ratios)
        if options.json:
            with open(options.json, "w", encoding="ascii") as output:
                json.dump({"processor": processor(), "rates": figures}, output, indent=2)
    finally:
        shutil.rmtree(scratch)


if __name__ == "__main__":
    sys.exit(main())
