# SPDX-License-Identifier: MIT
"""Large trees: few descriptors, little memory, short times."""
import os
import subprocess
import unittest

import launcher
from expected import EMPTY_MD5, md5


@launcher.posix_only
class LargeTrees(launcher.ScratchCase):
    # In memory, where possible: making the files takes a disk a hundred times as long as reading them.
    place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

    def test_thousands_of_directories_with_few_descriptors(self):
        paths = []
        for outer in range(50):
            for inner in range(99):
                paths.append(f"tree/{outer}/{inner}/{outer}.{inner}")
        for path in paths:
            self.write(path, os.path.basename(path).encode())
        result = launcher.in_shell('ulimit -n 32; "$@"', "-hash=MD5", "-subdirs", "tree", directory=self.scratch)
        self.check_quiet_success(result)
        self.check_report(result, [os.path.basename(path) for path in paths])

    def test_a_deep_chain_of_directories_with_few_descriptors(self):
        paths = ["tree/" + "d/" * depth + str(depth) for depth in range(100)]
        for path in paths:
            self.write(path, os.path.basename(path).encode())
        result = launcher.in_shell('ulimit -n 16; "$@"', "-hash=MD5", "-subdirs", "tree", directory=self.scratch)
        self.check_quiet_success(result)
        self.check_report(result, [os.path.basename(path) for path in paths])

    def check_report(self, result, names):
        lines = [line.decode() for line in result.lines[2:]]
        report = dict(zip(lines[0::2], lines[1::2], strict=True))
        self.assertEqual(len(lines), 2 * len(names))
        self.assertEqual(report, {name: "  " + md5(name.encode()) for name in names})

    def test_many_files_in_one_directory(self):
        count = 20_000 if launcher.INSTRUMENTED else 200_000  # sanitizers make each buffer a system call or two
        os.mkdir(self.path("d"))
        for number in range(count):  # links are made faster than files; a file may have about 65,000
            if number % 50_000 == 0:
                source = self.write(f"source{number}")
            os.link(source, self.path("d", f"{number:06}"))
        with open(self.path("report"), "wb") as report:
            process = subprocess.Popen(launcher.command("-hash=MD5", "d"), cwd=self.scratch, stdout=report)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        seconds = usage.ru_utime + usage.ru_stime  # not what other processes take from the machine
        print(f"{count} files: {seconds:.2f} s of processor time, peak {usage.ru_maxrss / 1024:.1f} MiB")
        self.assertEqual(process.returncode, 0)
        with open(self.path("report"), encoding="ascii") as report:
            lines = report.read().splitlines()[2:]
        self.assertEqual(lines[0::2], [f"{number:06}" for number in range(count)])
        self.assertEqual(set(lines[1::2]), {"  " + EMPTY_MD5})
        if not launcher.INSTRUMENTED:
            self.assertLess(usage.ru_maxrss, 64 * 1024)
            self.assertLess(seconds, 5)


if __name__ == "__main__":
    unittest.main()
