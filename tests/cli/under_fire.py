# SPDX-License-Identifier: MIT
"""Renaming that is killed, raced and starved of space, and what must be true of the files at every moment."""
import hashlib
import os
import random
import re
import shutil
import signal
import subprocess
import tempfile
import time

import launcher
from test_other_file_systems import second_file_system

SEED = 9
HASHES = {32: hashlib.md5, 40: hashlib.sha1}
DIGEST_NAME = re.compile(r"([0-9a-f]{40}|[0-9a-f]{32})(_\d\d)?(\.x)?")
TEMPORARY = re.compile(r"\.fyrn-\d+-\d\.tmp")


def content(number):
    """Some contents appear twice, and some are larger than one write."""
    length = 1 + number % 7 * (3000 if number % 50 == 0 else 1)
    return b"%d " % (number // 3 * 2 if number % 3 == 1 else number) * length


def knows_unnamed_files(directory):
    try:
        os.close(os.open(directory, os.O_TMPFILE | os.O_WRONLY))
        return True
    except OSError:
        return False


class UnderFireCase(launcher.ScratchCase):
    """Files lie in "from". `self.other` is a directory on another file system, where there is one."""

    def setUp(self):
        super().setUp()
        print(f"seed {SEED}")
        self.generator = random.Random(SEED)
        self.from_directory = self.path("from")
        place = second_file_system(self.scratch)
        self.other = tempfile.mkdtemp(prefix="fyrn-", dir=place) if place else None
        if place:
            self.addCleanup(shutil.rmtree, self.other, ignore_errors=True)

    def build(self, count):
        """Fills "from" afresh; remembers which contents there are."""
        shutil.rmtree(self.from_directory, ignore_errors=True)
        os.mkdir(self.from_directory)
        self.contents = set()
        for number in range(count):
            with open(os.path.join(self.from_directory, f"{number:06}.x"), "wb") as file:
                file.write(content(number))
            self.contents.add(hashlib.sha256(content(number)).digest())

    def check(self, *directories, placeholders=False):
        """Every content is there, and whatever bears a digest name is what the name says. Returns what is left over."""
        found, leftovers = set(), 0
        for directory in directories:
            for name in os.listdir(directory):
                path = os.path.join(directory, name)
                with open(path, "rb") as file:
                    whole = file.read()
                found.add(hashlib.sha256(whole).digest())
                if TEMPORARY.fullmatch(name):
                    leftovers += 1
                    os.unlink(path)
                    continue
                match = DIGEST_NAME.fullmatch(name)
                if match and not (placeholders and whole == b""):
                    self.assertEqual(match[1], HASHES[len(match[1])](whole).hexdigest(), path)
        self.assertLessEqual(self.contents, found, "a content is lost")
        return leftovers

    def start(self, *arguments, directory=None, environment=None):
        return subprocess.Popen(launcher.command(*arguments), cwd=directory or self.scratch, env=environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def kill_at_random(self, longest, *arguments, **options):
        """Runs the program and kills it at some moment within so many seconds; false when it had ended."""
        process = self.start(*arguments, **options)
        time.sleep(self.generator.uniform(0, longest))
        ended = process.poll() is not None
        process.send_signal(signal.SIGKILL)
        process.wait()
        return not ended

    def seconds_of(self, *arguments, **options):
        started = time.monotonic()
        self.assertEqual(self.start(*arguments, **options).wait(), 0)
        return time.monotonic() - started

    def kill_in_one_directory(self, option, files, kills):
        """MD5 and SHA1 in turn, so that every run has all files to rename."""
        self.build(files)
        longest = self.seconds_of("-hash=MD5", option, self.from_directory)
        killed = runs = 0
        while killed < kills:
            runs += 1
            if option == "-renamedel" and runs % 10 == 0:
                self.build(files)  # there must be something to delete
            row = ("-hash=SHA1", "-hash=MD5")[runs % 2]
            killed += self.kill_at_random(longest, row, option, self.from_directory)
            self.assertEqual(self.check(self.from_directory), 0)
        print(f"{option}: {killed} runs over {files} files killed within {longest:.2f} s, {runs - killed} had ended")

    def kill_between_file_systems(self, option, files, kills):
        if self.other is None:
            self.skipTest("no second file system that can be written to")
        target = os.path.join(self.other, "to")
        pattern = os.path.join(self.from_directory, "*")
        longest = killed = leftovers = 0
        while killed < kills:
            if not os.path.isdir(self.from_directory) or not os.listdir(self.from_directory):
                shutil.rmtree(target, ignore_errors=True)
                os.mkdir(target)
                self.build(files)
                if longest == 0:
                    longest = self.seconds_of("-hash=MD5", option, pattern, directory=target)
                    continue
            killed += self.kill_at_random(longest / 4, "-hash=MD5", option, pattern, directory=target)
            leftovers += self.check(self.from_directory, target)
        self.assertLessEqual(leftovers, 0 if knows_unnamed_files(self.other) else killed)
        print(f"{option} to another file system: {killed} runs over {files} files killed, {leftovers} temporary files")

    def race_over_distinct_files(self, place, rounds=20, environment=None):
        """Two programs at once, one of which may delete. No two files are equal: nothing is to be deleted."""
        directory = os.path.join(place, "distinct")
        contents = sorted(b"%d" % number for number in range(150))
        for number in range(rounds):
            os.mkdir(directory)
            for content in contents:
                with open(os.path.join(directory, content.decode()), "wb") as file:
                    file.write(content)
            processes = [self.start("-hash=MD5", option, directory, environment=environment)
                         for option in ("-renamedel", ("-renamedel", "-rename")[number % 2])]
            self.assertEqual([process.wait() for process in processes], [0, 0])
            found = {}
            for name in os.listdir(directory):
                with open(os.path.join(directory, name), "rb") as file:
                    found[name] = file.read()
            self.assertEqual(sorted(content for content in found.values() if content), contents, number)
            for name, content in found.items():
                if DIGEST_NAME.fullmatch(name):
                    self.assertEqual(name[:32], hashlib.md5(content).hexdigest())
            shutil.rmtree(directory)

    def race_over_pairs(self, rounds=20):
        """Each content is there twice, under its MD5 and its SHA1, and either run takes one of both for superfluous."""
        directory = self.path("pairs")
        contents = sorted(b"%d" % number for number in range(300))
        for number in range(rounds):
            os.mkdir(directory)
            for content in contents:
                for function in HASHES.values():
                    with open(os.path.join(directory, function(content).hexdigest()), "wb") as file:
                        file.write(content)
            processes = [self.start(row, "-renamedel", directory) for row in ("-hash=MD5", "-hash=SHA1")]
            self.assertEqual([process.wait() for process in processes], [0, 0])
            found = set()
            for name in os.listdir(directory):
                with open(os.path.join(directory, name), "rb") as file:
                    found.add(file.read())
            self.assertEqual(sorted(found), contents, number)
            shutil.rmtree(directory)

    def race(self, option, files, rounds):
        """Two programs rename the same files at the same time."""
        for number in range(rounds):
            self.build(files)
            rows = ("-hash=MD5", "-hash=SHA1" if number % 2 else "-hash=MD5")
            processes = [self.start(row, option, self.from_directory) for row in rows]
            self.assertEqual([process.wait() for process in processes], [0, 0])
            self.assertEqual(self.check(self.from_directory), 0)
