# SPDX-License-Identifier: MIT
"""Large amounts: a million files, very many in one directory, all rows, files of more than 4 GiB. What they take is
printed, and bounded: at most 12 MiB beside the names of the directory being walked, and 8 descriptors."""
import hashlib
import os
import re
import resource
import shutil
import subprocess
import tempfile
import time
import unittest
import zlib

import launcher
from expected import ROWS, md5

MIB = 1 << 20
MEMORY = 12 * MIB
DESCRIPTORS = 8
SOURCES = [b"content %d" % number for number in range(5)]
DIGESTS = {"  " + md5(source) for source in SOURCES}


@unittest.skipIf(launcher.WINDOWS or launcher.INSTRUMENTED, "needs a plain program on a POSIX system")
class Load(unittest.TestCase):
    def setUp(self):
        place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.directory = tempfile.mkdtemp(prefix="fyrn-load-", dir=place)
        self.addCleanup(shutil.rmtree, self.directory, ignore_errors=True)
        self.report = os.path.join(self.directory, "report")

    def source(self, number):
        """One of a few files; names of its own are hard links to it, which costs less than writing."""
        path = os.path.join(self.directory, f"source{number % len(SOURCES)}")
        if not os.path.exists(path):
            with open(path, "wb") as file:
                file.write(SOURCES[number % len(SOURCES)])
        return path

    def fill(self, directory, count):
        os.makedirs(directory)
        sources = [self.source(number) for number in range(len(SOURCES))]
        for number in range(count):
            os.link(sources[number % len(sources)], f"{directory}/{number:06}")

    def watch(self, process):
        """Waits for the end and returns the most memory the program had. What the system reports afterwards would
        count the copy of this test that the program was started from."""
        peak = 0
        while True:
            with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
                match = re.search(r"VmHWM:\s*(\d+) kB", status.read())
            if match is None:  # it has ended
                break
            peak = int(match[1]) * 1024
            time.sleep(0.01)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.seconds = usage.ru_utime + usage.ru_stime
        return peak

    def run_limited(self, *arguments, snapshot=0):
        """Runs the program with few descriptors and checks its memory; returns the lines of its report."""
        def limit():
            resource.setrlimit(resource.RLIMIT_NOFILE, (DESCRIPTORS, DESCRIPTORS))
        with open(self.report, "wb") as report:
            process = subprocess.Popen(launcher.command(*arguments), cwd=self.directory, stdin=subprocess.DEVNULL,
                                       stdout=report, preexec_fn=limit)
            peak = self.watch(process)
        print(f"{self.id().rpartition('.')[2]}: {self.seconds:.1f} s of processor time, peak {peak / MIB:.1f} MiB, "
              f"{snapshot / MIB:.1f} of it allowed to names")
        self.assertEqual(process.returncode, 0)
        self.assertLess(peak, MEMORY + snapshot)
        with open(self.report, encoding="ascii") as report:
            return report.read().splitlines()[2:]

    def test_a_million_files_in_one_tree_and_a_million_digests_in_one_run(self):
        for number in range(1000):
            self.fill(os.path.join(self.directory, f"tree/{number % 10}/{number}"), 1000)
        lines = self.run_limited("-hash=MD5", "-subdirs", "tree")
        self.assertEqual(len(lines), 2_000_000)
        self.assertEqual(set(lines[1::2]), DIGESTS)
        self.assertEqual(lines[0:2000:2], [f"{number:06}" for number in range(1000)])

    def test_200_000_files_in_one_directory(self):
        self.fill(os.path.join(self.directory, "d"), 200_000)
        # Per name: itself, its length, its kind, where it ends, and the room that a growing text keeps free.
        lines = self.run_limited("-hash=MD5", "d", snapshot=200_000 * 2 * (len("000000") + 3 + 8))
        self.assertEqual(len(lines), 400_000)
        self.assertEqual(lines[0::2], [f"{number:06}" for number in range(200_000)])
        self.assertEqual(set(lines[1::2]), DIGESTS)

    def test_20_000_files_with_all_rows(self):
        self.fill(os.path.join(self.directory, "d"), 20_000)
        lines = self.run_limited("-hash=ALL", "d", snapshot=20_000 * 2 * (len("000000") + 3 + 8))
        size = 1 + len(ROWS)
        self.assertEqual(len(lines), 20_000 * size)
        first = lines[:size * len(SOURCES)]
        for start in range(0, len(lines), size * len(SOURCES)):
            for number in range(0, len(first), size):
                self.assertEqual(lines[start + number + 1:start + number + size], first[number + 1:number + size])

    def test_messages_of_4_gib_and_more(self):
        """5 GiB and a byte for all rows; those that Python knows are compared."""
        size = 5 * 1024 * MIB + 1
        path = os.path.join(self.directory, "large")
        with open(path, "wb") as file:
            file.truncate(size)
            file.seek(size - 1)
            file.write(b"\x01")
        lines = self.run_limited("-hash=ALL", "large")
        self.assertEqual(lines[0], "large")
        digests = dict(zip(ROWS, (line[2:] for line in lines[1:]), strict=True))
        self.assertTrue(all(re.fullmatch("[0-9a-f]{4,256}", digest) for digest in digests.values()))
        known = {"SHA1": hashlib.sha1(), "SHA2-256": hashlib.sha256(), "MD5": hashlib.md5()}
        crc = 0
        with open(path, "rb") as file:
            while piece := file.read(MIB):
                crc = zlib.crc32(piece, crc)
                for function in known.values():
                    function.update(piece)
        self.assertEqual(digests["CRC-32"], f"{crc:08x}")
        for row, function in known.items():
            self.assertEqual(digests[row], function.hexdigest(), row)


if __name__ == "__main__":
    unittest.main()
