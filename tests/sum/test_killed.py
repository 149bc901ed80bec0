# SPDX-License-Identifier: MIT
"""Runs that are killed at any moment: a list is always the old one or the new one, and --resume loses nothing."""
import os
import random
import subprocess
import time
import unittest

from program import PROGRAM, SumCase, native_only, posix_only

TIMES = 10
PRINT = ("-r", "-a", "whirlpool") # a slow function, so that the reading takes its time
OLD = 1_600_000_000 * 10**9


@posix_only
@native_only
class Killed(SumCase):
    times = TIMES

    def setUp(self):
        super().setUp()
        self.random = random.Random(17)
        for number in range(400):
            name = f"tree/{number % 7}/{number}"
            self.write(name, str(number).encode() * 20000)
            os.utime(self.path(name), ns=(OLD, OLD))

    def duration(self, *arguments):
        start = time.monotonic()
        self.assertEqual(self.fyrnsum(*arguments).status, 0)
        return time.monotonic() - start

    def kill(self, duration, *arguments):
        """Starts the program and kills it at a random moment. Returns whether it was killed."""
        with subprocess.Popen([PROGRAM, *arguments], cwd=self.scratch, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as process:
            time.sleep(self.random.uniform(0, duration * 1.1))
            process.kill()
        return process.returncode < 0

    def until(self, is_enough):
        """As many rounds as wanted, and some more where the moments were too early or too late."""
        for number in range(20 * self.times):
            if number >= self.times and is_enough():
                return
            yield number

    def forget(self, *names):
        for name in names:
            if os.path.exists(self.path(name)):
                os.remove(self.path(name))

    def test_an_output_is_the_old_or_the_new_one(self):
        duration = self.duration(*PRINT, "tree", "-o", "LIST")
        new, killed = self.read("LIST"), 0
        for _ in self.until(lambda: killed > 0):
            self.write("LIST", b"old")
            killed += self.kill(duration, *PRINT, "tree", "-o", "LIST")
            self.assertIn(self.read("LIST"), (b"old", new))
        self.assertGreater(killed, 0)

    def test_an_updated_list_is_the_old_or_the_new_one(self):
        self.assertEqual(self.fyrnsum(*PRINT, "tree", "-o", "LIST").status, 0)
        old, killed = self.read("LIST"), 0
        os.rename(self.path("tree/1/1"), self.path("tree/2/moved"))
        duration = self.duration("--update=LIST", "tree")
        new = self.read("LIST")
        self.assertNotEqual(old, new)
        for _ in self.until(lambda: killed > 0):
            self.write("LIST", old)
            self.forget("LIST~")
            killed += self.kill(duration, "--update=LIST", "tree")
            self.assertIn(self.read("LIST"), (old, new))
            if os.path.exists(self.path("LIST~")):
                self.assertEqual(self.read("LIST~"), old)
            result = self.fyrnsum("--update=LIST", ".", "--exclude=LIST*", "--quick")
            self.assertEqual((result.status, self.read("LIST")), (0, new), result)
        self.assertGreater(killed, 0)

    def test_a_resumed_output_has_the_bytes_of_one_without_a_break(self):
        duration = self.duration(*PRINT, "tree", "-o", "LIST", "--resume")
        new, killed, resumed = self.read("LIST"), 0, 0
        self.assertFalse(os.path.exists(self.path("LIST.resume")))
        for _ in self.until(lambda: killed > 0 and resumed > 0):
            self.write("LIST", b"old")
            if self.kill(duration, *PRINT, ".", "--exclude=LIST", "-o", "LIST", "--resume"):
                killed += 1
                self.assertIn(self.read("LIST"), (b"old", new.replace(b"  tree/", b"  ./tree/")))
            resumed += os.path.exists(self.path("LIST.resume")) and b"mtime" in self.read("LIST.resume")
            if self.random.random() < 0.5:
                continue # is killed once more
            result = self.fyrnsum(*PRINT, ".", "-o", "LIST", "--resume")
            self.check(result, "")
            self.assertEqual(self.read("LIST"), new.replace(b"  tree/", b"  ./tree/"))
        self.assertGreater(killed, 0)
        self.assertGreater(resumed, 0)

    def test_what_changed_since_is_read_again(self):
        self.write("LIST.resume", b"")
        for name, content, claim in (("a", b"now", b"was"), ("b", b"now", b"now")):
            self.write("tree/" + name, content)
            os.utime(self.path("tree", name), ns=(OLD, OLD + 5))
            with open(self.path("LIST.resume"), "ab") as journal: # a digest that no reading would give
                journal.write(b'{"path":"tree/%s","size":3,"mtime":%d,"whirlpool":"%s"}\n' % (
                    name.encode(), OLD + (claim == b"now") * 5, b"ab" * 64))
        with open(self.path("LIST.resume"), "ab") as journal:
            journal.write(b'{"path":"tree/a","size":3,"mtime":') # what a kill leaves
        self.check(self.fyrnsum(*PRINT, "tree/a", "tree/b", "-o", "LIST", "--resume"), "")
        lines = self.read("LIST").splitlines()
        self.assertNotEqual(lines[0][:128], b"ab" * 64)
        self.assertEqual(lines[1], b"ab" * 64 + b"  tree/b")


if __name__ == "__main__":
    unittest.main()
