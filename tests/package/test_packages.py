# SPDX-License-Identifier: MIT
"""The packages that script/package made, in the folder FYRN_PACKAGES: looked at, installed, used and removed.

Debian packages are installed below a scratch directory, so that the machine stays as it is.
"""
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

PROJECT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = pathlib.Path(os.environ["FYRN_PACKAGES"])
WINE_PREFIX = PROJECT / "build" / "wineprefix"
sys.path.insert(0, str(PROJECT / "tests" / "cli"))
from expected import ROWS  # noqa: E402
from library_checks import VERSION, LibraryChecks, call, needs  # noqa: E402


def debian_packages():
    return sorted(FOLDER.glob("*.deb"))


class Scratch(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)


class Folder(Scratch):
    def test_it_holds_everything_that_is_released(self):
        names = {path.name for path in FOLDER.iterdir()}
        architecture = call("dpkg", "--print-architecture").strip()
        self.assertEqual(names, {
            f"fyrn-{VERSION}.tar.gz", f"fyrn_{VERSION}_{architecture}.deb", f"libfyrn1_{VERSION}_{architecture}.deb",
            f"libfyrn-dev_{VERSION}_{architecture}.deb", f"fyrn-{VERSION}-windows-x86_64.zip", f"fyrn-{VERSION}.spdx.json", "SHA256SUMS"})

    def test_the_digests_are_right_and_complete(self):
        lines = (FOLDER / "SHA256SUMS").read_text(encoding="utf-8").splitlines()
        listed = dict(reversed(line.split("  ")) for line in lines)
        self.assertEqual(listed, {path.name: hashlib.sha256(path.read_bytes()).hexdigest()
                                  for path in FOLDER.iterdir() if path.name != "SHA256SUMS"})

    def test_the_bill_of_materials_lists_every_package_once(self):
        document = json.loads((FOLDER / f"fyrn-{VERSION}.spdx.json").read_text(encoding="utf-8"))
        self.assertEqual((document["spdxVersion"], document["dataLicense"]), ("SPDX-2.3", "CC0-1.0"))
        packages = {package["SPDXID"]: package for package in document["packages"]}
        self.assertEqual(len(packages), len(document["packages"]))
        own = {package["packageFileName"]: package for package in packages.values() if "packageFileName" in package}
        self.assertEqual(set(own), {path.name for path in FOLDER.iterdir() if path.suffix in (".deb", ".zip", ".gz")})
        for name, package in own.items():
            sums = {item["algorithm"]: item["checksumValue"] for item in package["checksums"]}
            content = (FOLDER / name).read_bytes()
            self.assertEqual(sums, {"SHA1": hashlib.sha1(content).hexdigest(),
                                    "SHA256": hashlib.sha256(content).hexdigest()})
        for relationship in document["relationships"]:
            for end in ("spdxElementId", "relatedSpdxElement"):
                self.assertIn(relationship[end], {*packages, "SPDXRef-DOCUMENT"})

    def test_the_source_archive_is_the_commit(self):
        call("tar", "-xf", FOLDER / f"fyrn-{VERSION}.tar.gz", "-C", self.scratch)
        self.assertEqual([path.name for path in self.scratch.iterdir()], [f"fyrn-{VERSION}"])
        sources = self.scratch / f"fyrn-{VERSION}"
        tracked = call("git", "-c", "safe.directory=*", "-C", PROJECT, "ls-tree", "-r", "--name-only", "-z", "HEAD")
        unpacked = {path.relative_to(sources).as_posix() for path in sources.rglob("*") if not path.is_dir()}
        self.assertEqual(unpacked, set(tracked.split("\0")) - {""})

    def test_the_zip_holds_the_programs_and_their_documents(self):
        with zipfile.ZipFile(FOLDER / f"fyrn-{VERSION}-windows-x86_64.zip") as archive:
            self.assertIsNone(archive.testzip())
            folder = f"fyrn-{VERSION}-windows-x86_64/"
            self.assertEqual({name.removeprefix(folder) for name in archive.namelist()},
                             {"fyrn.exe", "fyrnsum.exe", "README.md", "SECURITY.md", "CHANGELOG.md", "algorithms.md", "recipes.md",
                              "LICENSE.txt", "LICENSE-xxhash.txt", "MANUAL-fyrn.txt", "MANUAL-fyrnsum.txt", "library.md", "fyrn.dll", "lib/libfyrn.dll.a",
                              "include/fyrn/fyrn.h", "include/fyrn/fyrn.hpp"})
            for program in ("fyrn", "fyrnsum"):
                self.assertEqual(archive.read(f"{folder}{program}.exe")[:2], b"MZ")
                self.assertIn(b"SYNOPSIS\r\n", archive.read(f"{folder}MANUAL-{program}.txt"))

    def unpacked_zip(self):
        with zipfile.ZipFile(FOLDER / f"fyrn-{VERSION}-windows-x86_64.zip") as archive:
            archive.extractall(self.scratch)
        return self.scratch / f"fyrn-{VERSION}-windows-x86_64"

    def wine(self, *command):
        """The lines that a Windows program prints in the scratch directory."""
        wine = {"WINEPREFIX": str(WINE_PREFIX), "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree=;mshtml="}
        # Wine's server keeps its streams beyond the program's end: a file does not wait for it.
        with open(self.scratch / "output", "wb") as output:
            subprocess.run(["wine", *command], cwd=self.scratch, env=os.environ | wine, timeout=300,
                           stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL, check=True)
        return (self.scratch / "output").read_text(encoding="utf-8").splitlines()

    @unittest.skipUnless((WINE_PREFIX / "complete").exists(), "needs the Windows that script/test-windows makes")
    def test_the_programs_in_the_zip_work(self):
        folder = self.unpacked_zip()
        (self.scratch / "abc").write_bytes(b"abc")
        self.assertEqual(self.wine(folder / "fyrn.exe", "-hash=MD5", "abc"),
                         ["Hashes: MD5 ", "", "abc", "  900150983cd24fb0d6963f7d28e17f72"])
        self.assertEqual(self.wine(folder / "fyrnsum.exe", "-a", "md5", "-o", "list.md5", "abc"), [])
        self.assertEqual((self.scratch / "list.md5").read_bytes(), b"900150983cd24fb0d6963f7d28e17f72  abc\n")
        self.assertEqual(self.wine(folder / "fyrnsum.exe", "-c", "list.md5"), ["abc: OK"])

    @unittest.skipUnless((WINE_PREFIX / "complete").exists(), "needs the Windows that script/test-windows makes")
    def test_programs_use_the_library_in_the_zip(self):
        folder = self.unpacked_zip()
        (self.scratch / "abc").write_bytes(b"abc")
        for compiler, source, standard in (("gcc", "Consumer.c", "c11"), ("g++-posix", "Consumer.cpp", "c++20")):
            with self.subTest(source=source):
                program = folder / "consumer.exe"
                call("x86_64-w64-mingw32-" + compiler, f"-std={standard}", "-Wall", "-Wextra", "-Werror", "-static",
                     f"-I{folder / 'include'}", PROJECT / "tests/consumer" / source, folder / "lib/libfyrn.dll.a",
                     "-o", program)
                self.assertEqual(self.wine(program, "abc"),
                                 [hashlib.new(name, b"abc").hexdigest() for name in ("md5", "sha256", "blake2b")])

    @needs("lintian")
    def test_lintian_has_nothing_to_say(self):
        for package in debian_packages():
            with self.subTest(package=package.name):
                self.assertEqual(call("lintian", "--allow-root", "--display-info", "--display-experimental",
                                      "--pedantic", "--fail-on", "error,warning,info,pedantic", package), "")


class InstalledPackages(Scratch):
    def setUp(self):
        super().setUp()
        self.root = self.scratch / "root"
        database = self.root / "var/lib/dpkg"
        (database / "info").mkdir(parents=True)
        (database / "updates").mkdir()
        for name in ("status", "available"):
            (database / name).touch()
        self.before = self.files()
        # What they depend on is on the machine, not below the scratch directory.
        self.dpkg("--force-depends", "--install", *debian_packages())

    def dpkg(self, *options):
        call("dpkg", f"--root={self.root}", "--log=/dev/null", *options, env=os.environ | {"LC_ALL": "C.UTF-8"})

    def files(self):
        return {path.relative_to(self.root).as_posix() for path in self.root.rglob("*")
                if not path.relative_to(self.root).as_posix().startswith("var/lib/dpkg/")}

    def installed(self, pattern):
        (path,) = self.root.glob(pattern)
        return path


@unittest.skipUnless(os.geteuid() == 0, "needs to be root to install")
class Installed(InstalledPackages):
    def test_everything_is_in_its_place(self):
        for pattern in ("usr/bin/fyrn", "usr/share/man/man1/fyrn.1.gz", "usr/share/doc/fyrn/copyright",
                        "usr/share/doc/fyrn/changelog.gz", "usr/share/doc/fyrn/README.md",
                        "usr/share/doc/fyrn/recipes.md", "usr/share/doc/fyrn/algorithms.md",
                        "usr/share/bash-completion/completions/fyrn", "usr/share/zsh/vendor-completions/_fyrn",
                        "usr/share/fish/vendor_completions.d/fyrn.fish", "usr/lib/*/libfyrn.so.1",
                        "usr/share/doc/libfyrn1/copyright", "usr/lib/*/libfyrn.so", "usr/lib/*/libfyrn.a",
                        "usr/lib/*/pkgconfig/fyrn.pc", "usr/lib/*/cmake/fyrn/fyrnConfig.cmake",
                        "usr/include/fyrn/fyrn.h", "usr/share/doc/libfyrn-dev/library.md",
                        "usr/share/doc/libfyrn-dev/copyright"):
            with self.subTest(pattern):
                self.assertGreater(self.installed(pattern).stat().st_size, 0)

    def test_using_and_removing_leaves_nothing_behind(self):
        (self.scratch / "abc").write_bytes(b"abc")
        call(self.root / "usr/bin/fyrn", "-hash=ALL", self.scratch / "abc")
        self.assertNotEqual(self.files(), self.before)
        self.dpkg("--purge", "fyrn", "libfyrn-dev", "libfyrn1")
        # dpkg makes /usr and the like with the first package, and takes them away with the last.
        self.assertEqual(self.files() - self.before, set())
        self.assertEqual(list(self.root.glob("var/lib/dpkg/info/*fyrn*")), [])

    def test_the_program_computes_every_known_run(self):
        runs = PROJECT / "tests" / "cli" / "test_known_runs.py"
        done = subprocess.run([sys.executable, "-B", runs], capture_output=True, text=True, check=False,
                              env=os.environ | {"FYRN_PROGRAM": str(self.root / "usr/bin/fyrn")})
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stderr, r"(?m)^Ran [1-9]\d* tests?")

    def test_the_program_prints_what_the_one_built_here_prints(self):
        built = PROJECT / "build/release/fyrn"
        if not built.exists():
            self.skipTest("no program is built here")
        sample = self.scratch / "sample"
        sample.write_bytes(bytes(range(256)) * 5000)
        outputs = {call(program, "-hash=ALL", "-verbosity=3", sample) for program in (built, self.root / "usr/bin/fyrn")}
        self.assertEqual(len(outputs), 1)
        self.assertEqual(len(outputs.pop().splitlines()), 3 + len(ROWS))

    @needs("man")
    def test_the_manual_page_is_shown(self):
        text = call("man", "-l", self.root / "usr/share/man/man1/fyrn.1.gz", env={"PATH": "/usr/bin:/bin", "MANWIDTH": "80"})
        self.assertIn("KNOWN BEHAVIOUR", text)


@unittest.skipUnless(os.geteuid() == 0, "needs to be root to install")
class InstalledLibrary(LibraryChecks, InstalledPackages):
    def setUp(self):
        super().setUp()
        self.prefix = self.root / "usr"


if __name__ == "__main__":
    unittest.main()
