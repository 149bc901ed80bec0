# SPDX-License-Identifier: MIT
"""What holds for an installed library, wherever it stands: its symbols, its headers, programs that use it, and the examples
of docs/library.md. A test case mixes LibraryChecks in and has `prefix`, where it is installed, and `scratch`."""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
VERSION = (PROJECT / "VERSION").read_text(encoding="utf-8").strip()
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Werror")
# The C functions, what lies in namespace fyrn, and templates of the C++ library for types that lie there.
OWN_SYMBOL = re.compile(r"fyrn_|_Z(TV|TI|TS|GV)?Z?NK?4fyrn|_ZSt.*N4fyrn")
BLOCK = re.compile(r"^```(c|cpp|python)\n(.*?)^```\n\n```text\n(.*?)^```", re.MULTILINE | re.DOTALL)


def needs(tool):
    return unittest.skipUnless(shutil.which(tool), f"needs {tool}")


def call(*command, **options):
    """The output of a command that must succeed."""
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} failed with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def declared_functions():
    header = (PROJECT / "fyrn" / "fyrn.h").read_text(encoding="utf-8")
    return set(re.findall(r"\b(fyrn_\w+)\(", re.sub(r"/\*.*?\*/", "", header, flags=re.DOTALL)))


def symbols(*options):
    """The names of symbols, in the form that the linker compares."""
    lines = call("nm", "--format=posix", *options).splitlines()
    return {line.split()[0] for line in lines if len(line.split()) > 1}


class LibraryChecks:
    def library(self, name):
        (found,) = {*self.prefix.glob(f"lib/{name}"), *self.prefix.glob(f"lib/*/{name}")}
        return found

    def environment(self):
        """For compilers and programs: pkg-config's files and the shared library are in the prefix alone."""
        folder = self.library("libfyrn.so").parent
        return os.environ | {"PKG_CONFIG_LIBDIR": str(folder / "pkgconfig"), "LD_LIBRARY_PATH": str(folder)}

    def test_the_shared_library_exports_its_functions_and_nothing_else(self):
        library = self.library("libfyrn.so.1")
        exported = symbols("--dynamic", "--defined-only", library)
        self.assertEqual(exported, {"FYRN_1", *(name + "@@FYRN_1" for name in declared_functions())})
        dynamic = call("readelf", "--dynamic", "--wide", library)
        self.assertIn("Library soname: [libfyrn.so.1]", dynamic)
        self.assertEqual(set(re.findall(r"Shared library: \[(.*)\]", dynamic)) - {"ld-linux-x86-64.so.2"}, {"libc.so.6"})

    def test_the_shared_library_is_hardened(self):
        library = self.library("libfyrn.so.1")
        dynamic = call("readelf", "--dynamic", "--wide", library)
        self.assertIn("BIND_NOW", dynamic)
        self.assertNotIn("TEXTREL", dynamic)
        segments = call("readelf", "--segments", "--wide", library)
        self.assertIn("GNU_RELRO", segments)
        self.assertRegex(segments, r"GNU_STACK .* RW ")
        self.assertIn("__stack_chk_fail", call("nm", "--dynamic", "--undefined-only", library))

    def test_the_static_library_defines_no_name_that_a_program_could_have(self):
        defined = {name for name in symbols("--extern-only", "--defined-only", self.library("libfyrn.a"))
                   if not name.startswith("DW.ref.")}  # hidden, and the compiler's own
        own = {name for name in defined if OWN_SYMBOL.match(name)}
        self.assertEqual(defined - own, set())
        self.assertLessEqual(declared_functions(), own)

    def test_only_two_headers_are_installed(self):
        headers = {path.relative_to(self.prefix / "include").as_posix()
                   for path in (self.prefix / "include").rglob("*") if path.is_file()}
        self.assertEqual(headers, {"fyrn/fyrn.h", "fyrn/fyrn.hpp"})

    def compile(self, text, *command):
        done = subprocess.run([*command, *WARNINGS, "-I", self.prefix / "include", "-fsyntax-only", "-"], input=text,
                              capture_output=True, text=True, check=False)
        return re.findall(r"error: (.*)", done.stderr)

    def test_the_headers_compile_by_themselves(self):
        for standard in ("c11", "c17", "c2x"):
            self.assertEqual(self.compile("#include <fyrn/fyrn.h>\n", "gcc", f"-std={standard}", "-xc"), [])
        for standard in ("c++11", "c++17", "c++20", "c++23"):
            self.assertEqual(self.compile("#include <fyrn/fyrn.h>\n", "g++", f"-std={standard}", "-xc++"), [])
        for standard in ("c++20", "c++23"):
            twice = "#include <fyrn/fyrn.hpp>\n#include <fyrn/fyrn.hpp>\n"
            self.assertEqual(self.compile(twice, "g++", f"-std={standard}", "-xc++"), [])

    def test_older_standards_get_one_clear_error(self):
        for standard in ("c++11", "c++17"):
            errors = self.compile("#include <fyrn/fyrn.hpp>\n", "g++", f"-std={standard}", "-xc++")
            self.assertEqual(errors, ['#error "fyrn/fyrn.hpp needs C++20; fyrn/fyrn.h serves C and earlier C++"'])

    def run_alone(self, *command):
        """The output of a program in a folder of its own, without a terminal; it leaves no file behind."""
        folder = self.scratch / "empty"
        folder.mkdir()
        output = call(*command, cwd=folder, env=self.environment(), stdin=subprocess.DEVNULL, timeout=120)
        folder.rmdir()
        return output

    def check_consumer(self, program):
        content = b"a consumer's file"
        path = self.scratch / "\u00e9.txt"
        path.write_bytes(content)
        self.assertEqual(self.run_alone(program, path).split(),
                         [hashlib.new(name, content).hexdigest() for name in ("md5", "sha256", "blake2b")])

    @needs("cmake")
    def test_cmake_projects_find_and_use_both_libraries(self):
        build = self.scratch / "build"
        call("cmake", "-S", PROJECT / "tests/consumer", "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}",
             f"-Dfyrn_DIR={self.library('cmake/fyrn')}")
        call("cmake", "--build", build)
        for language in ("c", "cpp"):
            for kind in ("shared", "static"):
                with self.subTest(language=language, kind=kind):
                    self.check_consumer(build / f"Consumer_{language}_{kind}")
                    self.assertEqual(self.run_alone(build / f"ShortOfMemory_{language}_{kind}"), "refused\n")
                    needed = call("readelf", "--dynamic", "--wide", build / f"Consumer_{language}_{kind}")
                    self.assertEqual("[libfyrn.so.1]" in needed, kind == "shared")

    def pkg_config(self, *options):
        return call("pkg-config", *options, f"fyrn = {VERSION}", env=self.environment()).split()

    @needs("pkg-config")
    def test_pkg_config_finds_both_libraries(self):
        flags = self.pkg_config("--cflags", "--libs")
        for flag in flags:
            if re.match("-[IL]", flag):
                self.assertTrue(pathlib.Path(flag[2:]).resolve().is_relative_to(self.prefix.resolve()), flags)
        program = self.scratch / "consumer"
        call("gcc", "-std=c11", *WARNINGS, PROJECT / "tests/consumer/Consumer.c", *flags, "-o", program)
        self.check_consumer(program)
        static = ["-l:libfyrn.a" if flag == "-lfyrn" else flag
                  for flag in self.pkg_config("--static", "--cflags", "--libs")]
        call("gcc", "-std=c11", *WARNINGS, PROJECT / "tests/consumer/Consumer.c", *static, "-o", program)
        self.check_consumer(program)

    @needs("pkg-config")
    def test_the_examples_of_the_manual_print_what_it_says(self):
        examples = BLOCK.findall((PROJECT / "docs" / "library.md").read_text(encoding="utf-8"))
        self.assertEqual({language for language, _, _ in examples}, {"c", "cpp", "python"})
        flags = self.pkg_config("--cflags", "--libs")
        folder = self.scratch / "examples"
        folder.mkdir()
        for number, (language, source, expected) in enumerate(examples):
            with self.subTest(language=language, number=number):
                path = folder / f"example{number}.{language}"
                path.write_text(source, encoding="utf-8")
                command = [sys.executable, path]
                if language != "python":
                    command = [folder / f"example{number}"]
                    compiler = ["gcc", "-std=c11"] if language == "c" else ["g++", "-std=c++20"]
                    call(*compiler, *WARNINGS, path, *flags, "-o", *command)
                self.assertEqual(call(*command, cwd=folder, env=self.environment()), expected)

    def test_the_manual_names_every_function(self):
        named = set(re.findall(r"`(fyrn_\w+)`", (PROJECT / "docs" / "library.md").read_text(encoding="utf-8")))
        self.assertEqual(named, declared_functions())
