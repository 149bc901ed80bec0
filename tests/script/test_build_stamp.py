# SPDX-License-Identifier: MIT
"""The build stamp is the same for every build of one commit, wherever, whenever and by whom it is built."""
import datetime
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
COMMIT_TIME = 1770163199  # Tue Feb  3 23:59:59 2026 UTC: another day east of Greenwich, a day of one digit
COMMIT_STAMP = ("2026-02-03", "Tue Feb  3 23:59:59 2026")

PROJECT_FILE = """
cmake_minimum_required(VERSION 3.25)
project(stamp VERSION 1.2.3 LANGUAGES NONE)
set(FYRN_VERSION 1.2.3)
include(cmake/BuildStamp.cmake)
"""


def call(*command, directory, **environment):
    clean = {name: value for name, value in os.environ.items() if not name.startswith(("GIT_", "SOURCE_DATE_EPOCH"))}
    subprocess.run(command, cwd=directory, env=clean | environment, check=True, capture_output=True)


def commit(directory, moment):
    stamp = f"{moment} +0500"
    call("git", "add", "--all", directory=directory)
    call("git", "-c", "user.name=Test", "-c", "user.email=test@example.org", "commit", "--allow-empty", "-m", "Change",
         directory=directory, GIT_AUTHOR_DATE="1000000000 +0000", GIT_COMMITTER_DATE=stamp)


class BuildStamp(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.sources = self.make_sources("sources")

    def make_sources(self, name):
        sources = self.scratch / name
        (sources / "cmake").mkdir(parents=True)
        for file in ("cmake/BuildStamp.cmake", "cmake/BuildStamp.cpp.in", "VERSION"):
            shutil.copy(PROJECT / file, sources / file)
        (sources / "CMakeLists.txt").write_text(PROJECT_FILE, encoding="utf-8")
        return sources

    def make_repository(self):
        call("git", "init", directory=self.sources)
        commit(self.sources, COMMIT_TIME)

    def stamp(self, sources, **environment):
        """Configures the sources in a build folder of their own and reads date and time from what was generated."""
        build = pathlib.Path(tempfile.mkdtemp(dir=self.scratch))
        call("cmake", "-G", "Ninja", "-S", sources, "-B", build, directory=self.scratch, **environment)
        return self.read_stamp(build)

    def read_stamp(self, build):
        text = (build / "generated/BuildStamp.cpp").read_text(encoding="utf-8")
        self.assertIn('version = L"1.2.3";', text)
        return re.search(r' date = L"(.*)";', text)[1], re.search(r' sourceTime = "(.*)";', text)[1]

    def test_it_is_the_time_of_the_last_commit_in_utc(self):
        self.make_repository()
        self.assertEqual(self.stamp(self.sources), COMMIT_STAMP)

    def test_time_zone_locale_and_file_times_do_not_matter(self):
        self.make_repository()
        os.utime(self.sources / "VERSION", (0, 0))
        self.assertEqual(self.stamp(self.sources, TZ="Asia/Tokyo", LC_ALL="C.UTF-8", LANG="de_DE.UTF-8"), COMMIT_STAMP)

    def test_another_clone_has_the_same(self):
        self.make_repository()
        call("git", "clone", "sources", "a clone", directory=self.scratch)
        self.assertEqual(self.stamp(self.scratch / "a clone"), COMMIT_STAMP)

    def test_a_linked_working_tree_has_the_same(self):
        self.make_repository()
        call("git", "worktree", "add", "../linked", directory=self.sources)
        self.assertEqual(self.stamp(self.scratch / "linked"), COMMIT_STAMP)

    @unittest.skipUnless(os.geteuid() == 0, "needs to be root")
    def test_a_checkout_of_another_owner_has_the_same(self):
        self.make_repository()
        for path in (self.sources, self.sources / ".git"):
            os.chown(path, 65534, 65534)
        self.assertEqual(self.stamp(self.sources), COMMIT_STAMP)

    def test_the_given_moment_wins(self):
        self.make_repository()
        given = self.stamp(self.sources, SOURCE_DATE_EPOCH="1000000000")
        self.assertEqual(given, ("2001-09-09", "Sun Sep  9 01:46:40 2001"))

    def test_an_empty_moment_counts_as_none(self):
        self.make_repository()
        self.assertEqual(self.stamp(self.sources, SOURCE_DATE_EPOCH=""), COMMIT_STAMP)

    def test_without_a_repository_it_is_the_time_of_the_version_file(self):
        os.utime(self.sources / "VERSION", (COMMIT_TIME, COMMIT_TIME))
        self.assertEqual(self.stamp(self.sources), COMMIT_STAMP)

    def test_a_repository_around_the_project_does_not_count(self):
        inner = self.make_sources("sources/inner")
        os.utime(inner / "VERSION", (0, 0))
        self.make_repository()
        self.assertEqual(self.stamp(inner), ("1970-01-01", "Thu Jan  1 00:00:00 1970"))

    def test_a_new_commit_makes_it_anew(self):
        self.make_repository()
        build = self.scratch / "build"
        call("cmake", "-G", "Ninja", "-S", self.sources, "-B", build, directory=self.scratch)
        commit(self.sources, COMMIT_TIME + 1)
        call("cmake", "--build", build, directory=self.scratch)
        self.assertEqual(self.read_stamp(build), ("2026-02-04", "Wed Feb  4 00:00:00 2026"))

    def test_every_month_and_weekday_has_its_name(self):
        weekdays = ("Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun")
        months = ("Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec")
        for month in range(1, 13):
            day = datetime.datetime(2027, month, month + 5, 7, 8, 9, tzinfo=datetime.timezone.utc)
            expected = f"{weekdays[day.weekday()]} {months[month - 1]} {day.day:2} 07:08:09 2027"
            with self.subTest(expected=expected):
                stamp = self.stamp(self.sources, SOURCE_DATE_EPOCH=str(int(day.timestamp())))
                self.assertEqual(stamp, (f"2027-{month:02}-{day.day:02}", expected))


if __name__ == "__main__":
    unittest.main()
