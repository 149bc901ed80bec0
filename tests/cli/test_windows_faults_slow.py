# SPDX-License-Identifier: MIT
"""Faults on Windows, by a copy of the program that finds no memory of one size: the record, and the message box.

FYRN_SHORT_OF_MEMORY names that copy. FYRN_DISPLAY is a display whose keys nobody else presses, and
FYRN_DISPLAY_PREFIX a Wine prefix whose programs show their windows there.
"""
import os
import re
import shutil
import subprocess
import time
import unittest

import faults
import launcher
from expected import md5, sha1
from faults import MD5_FUNCTION

MD5_BUFFER = 1_048_576
KECCAK_BUFFER = 2_036_736


class FaultCase(launcher.ScratchCase):
    def setUp(self):
        super().setUp()
        os.mkdir(self.path("bin"))
        for name in ("a.txt", "b.txt"):
            self.write("work/" + name, b"abc")
        self.program = shutil.copy(os.environ["FYRN_SHORT_OF_MEMORY"], self.path("bin", "fyrn.exe"))

    def start(self, refused_bytes, *arguments, **environment):
        """Starts the program with its output in files: a pipe would stay open as long as what Wine starts for a
        window, which inherits it."""
        environment |= {"FYRN_REFUSED_BYTES": str(refused_bytes)}
        with open(self.path("stdout"), "wb") as output, open(self.path("stderr"), "wb") as errors:
            return subprocess.Popen([*launcher.LAUNCHER, self.program, *arguments], cwd=self.path("work"),
                                    env=os.environ | environment, stdin=subprocess.DEVNULL, stdout=output,
                                    stderr=errors)

    def finish(self, process):
        status = process.wait(timeout=120)
        return launcher.Result(status, self.read("stdout"), self.read("stderr"))

    def run_short(self, refused_bytes, *arguments):
        return self.finish(self.start(refused_bytes, *arguments))

    def logged_functions(self):
        return re.findall(r"^Function : (.*)\r$", self.read("bin/Error.log").decode(), re.MULTILINE)


@launcher.windows_only
class ErrorLog(FaultCase):
    """Without a display there is no box, and the run goes on."""

    def test_a_record_has_the_form_and_the_line_ends_of_the_system(self):
        self.assertEqual(self.run_short(MD5_BUFFER, "-hash=MD5", "a.txt", "b.txt").status, 0)
        log = self.read("bin/Error.log")
        self.assertEqual(log.count(b"\n"), log.count(b"\r\n"))
        self.assertEqual(log.count(b"\r"), log.count(b"\r\n"))
        begin, _, end = faults.record_pattern("crypto/CCrypto_Md5.cpp", MD5_FUNCTION, faults.md5_line()).partition(
            re.escape(faults.computer_name()))
        pattern = begin + r"[^\n]{1,15}" + end
        self.assertRegex(log.replace(b"\r\n", b"\n").decode(), f"\\A({pattern}){{2}}\\Z")
        self.assertEqual(self.names("bin"), ["Error.log", "fyrn.exe"])

    def test_the_run_goes_on_with_the_other_rows_and_files(self):
        result = self.run_short(KECCAK_BUFFER, "-hash=KECCAK-256", "-hash=MD5", "-hash=SHA1", "a.txt", "b.txt")
        self.assertEqual(result.status, 0)
        digests = ("  " + md5(b"abc"), "  " + sha1(b"abc"))
        self.assert_lines(result, "Hashes: KECCAK-256 MD5 SHA1 ", "", "a.txt", *digests, "b.txt", *digests)
        self.assertEqual(self.logged_functions(), [faults.KECCAK_FUNCTION] * 2)

    def test_a_file_whose_reading_was_interrupted_is_neither_renamed_nor_deleted(self):
        self.write("work/" + sha1(b"abc") + ".txt", b"holds the name")
        for option in ("-rename", "-renamedel"):
            self.run_short(KECCAK_BUFFER, "-hash=SHA1", "-hash=SHA3-256", option, "a.txt", "b.txt")
            self.assertEqual(self.names("work"), sorted(["a.txt", "b.txt", sha1(b"abc") + ".txt"]))

    def test_without_a_fault_there_is_no_log(self):
        result = self.run_short(12345, "-hash=MD5", "a.txt")
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  " + md5(b"abc"))
        self.assertEqual(self.names("bin"), ["fyrn.exe"])


@launcher.windows_only
class MessageBox(FaultCase):
    """Answered by keys on a display in memory."""

    def start_shown(self, *arguments):
        self.display = {"DISPLAY": os.environ["FYRN_DISPLAY"]}
        return self.start(MD5_BUFFER, "-hash=MD5", *arguments, WINEPREFIX=os.environ["FYRN_DISPLAY_PREFIX"],
                          **self.display)

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=os.environ | self.display, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def boxes(self):
        """The message boxes there are; none when one vanishes while xdotool looks at it, which ends the search."""
        search = self.xdotool("search", "--onlyvisible", "--name", "^Exception error$")
        return search.stdout.split() if search.returncode == 0 else []

    def press(self, key, earlier=()):
        """Waits for a box that is not among the earlier ones, presses a key in it and returns the box."""
        deadline = time.monotonic() + 60
        new = []
        while not new and time.monotonic() < deadline:
            time.sleep(0.2)
            new = [box for box in self.boxes() if box not in earlier]
        self.assertTrue(new, "no message box")
        time.sleep(0.5)
        for command in (["windowfocus", "--sync", new[0]], ["key", key]):
            run = self.xdotool(*command)
            self.assertEqual(run.returncode, 0, run.stderr)
        return new[0]

    def test_yes_goes_on_and_asks_again(self):
        process = self.start_shown("a.txt", "b.txt")
        first = self.press("y")
        self.press("y", earlier=[first])
        result = self.finish(process)
        self.assertEqual(result.status, 0)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  ", "b.txt", "  ")
        self.assertEqual(self.logged_functions(), [MD5_FUNCTION] * 2)

    def test_no_ends_the_run_with_status_3_and_what_was_printed_is_there(self):
        process = self.start_shown("a.txt", "b.txt")
        self.press("n")
        result = self.finish(process)
        self.assertEqual(result.status, 3)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt")
        self.assertEqual(self.logged_functions(), [MD5_FUNCTION])


if __name__ == "__main__":
    unittest.main()
