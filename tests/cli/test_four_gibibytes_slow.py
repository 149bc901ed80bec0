# SPDX-License-Identifier: MIT
"""Files of about 2**32 bytes, where counts of 32 bits wrap: every row, with the digests of other implementations."""
import concurrent.futures
import os
import subprocess
import time
import unittest

import launcher
from expected import ROWS

PATH = os.path.join(launcher.SOURCE_DIRECTORY, "tests", "data", "zeros_4gib.txt")
MEMORY = 12 * 1024  # KiB that a run may take at most


def known_digests():
    """The digests by (row, length)."""
    digests = {}
    with open(PATH, encoding="ascii") as file:
        for line in file:
            if not line.startswith("#"):
                row, length, digest = line.split()
                digests[row, int(length)] = digest
    return digests


def peak_memory(pid):
    """The most memory that a process that runs has taken, in KiB; 0 when it has just ended.

    Not the resource usage that the system keeps for ended children: that counts the memory of the process that
    started them, too, which is this large interpreter."""
    try:
        with open(f"/proc/{pid}/status", encoding="ascii") as status:
            return next((int(line.split()[1]) for line in status if line.startswith("VmHWM:")), 0)
    except (FileNotFoundError, ProcessLookupError):
        return 0


def measured_run(*arguments):
    """The output of a run, its peak memory and its seconds."""
    start = time.monotonic()
    peak = 0
    with subprocess.Popen(launcher.command(*arguments), stdout=subprocess.PIPE, stdin=subprocess.DEVNULL) as process:
        while process.poll() is None:
            peak = max(peak, peak_memory(process.pid))
            time.sleep(0.01)
        output = process.stdout.read()
    return output.decode(), peak, time.monotonic() - start


@launcher.posix_only
class FourGibibytes(launcher.ScratchCase):
    place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

    def check_rows(self, length):
        digests = known_digests()
        path = self.write("zeros")
        os.truncate(path, length)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            runs = {row: pool.submit(measured_run, "-hash=" + row, "-verbosity=1", path) for row in ROWS}
        for row, run in runs.items():
            with self.subTest(row=row, length=length):
                output, peak, seconds = run.result()
                print(f"{row}, {length} bytes: {seconds:.1f} s, peak {peak / 1024:.1f} MiB", flush=True)
                self.assertRegex(output, rf"\AHashes: {row} \n\n  [0-9a-f]+\n\Z")
                self.assertEqual(output.split()[-1], digests[row, length])
                self.assertGreater(peak, 0)
                if not launcher.INSTRUMENTED:
                    self.assertLess(peak, MEMORY)

    def test_digests_are_known_for_all_rows(self):
        known = {(row, length) for row in ROWS for length in (2**32 - 1, 2**32, 2**32 + 1)}
        self.assertEqual(set(known_digests()), known)

    def test_one_byte_less(self):
        self.check_rows(2**32 - 1)

    def test_exactly(self):
        self.check_rows(2**32)

    def test_one_byte_more(self):
        self.check_rows(2**32 + 1)


if __name__ == "__main__":
    unittest.main()
