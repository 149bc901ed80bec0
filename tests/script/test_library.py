# SPDX-License-Identifier: MIT
"""The library as `cmake --install` puts it anywhere: used from there, and from elsewhere after it was moved."""
import os
import pathlib
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests" / "package"))
from library_checks import LibraryChecks, call, declared_functions  # noqa: E402

BUILD = pathlib.Path(os.environ["FYRN_BUILD"])


def install(prefix):
    for component in ("runtime", "development"):
        call("cmake", "--install", BUILD, "--component", component, "--prefix", prefix)


class Here(LibraryChecks, unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.prefix = self.scratch / "prefix"
        install(self.prefix)


class Debian(unittest.TestCase):
    def test_the_symbols_file_names_every_function(self):
        lines = (PROJECT / "packaging/debian/libfyrn1.symbols").read_text(encoding="utf-8").splitlines()
        named = {line.split("@")[0].strip() for line in lines if line.startswith(" ")}
        self.assertEqual(named, {"FYRN_1", *declared_functions()})


class Moved(unittest.TestCase):
    """What depends on the place, once more in another one, with a blank in its name for CMake alone."""

    def moved(self, name):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        checks = Here()
        checks.scratch = pathlib.Path(scratch.name)
        install(checks.scratch / "first")
        checks.prefix = (checks.scratch / "first").rename(checks.scratch / name)
        return checks

    def test_cmake_finds_it(self):
        self.moved("another place").test_cmake_projects_find_and_use_both_libraries()

    def test_pkg_config_finds_it(self):
        self.moved("place").test_pkg_config_finds_both_libraries()


if __name__ == "__main__":
    unittest.main()
