# SPDX-License-Identifier: MIT
"""fyrnsum's manual page is well formed, names every option, and its examples print what it says."""
import os
import re
import shutil
import subprocess
import unittest

from program import PROGRAM, SOURCE_DIRECTORY, TOOLS, SumCase, native_only, posix_only

PAGE = os.path.join(SOURCE_DIRECTORY, "docs", "fyrnsum.1")
ESCAPES = ((r"\-", "-"), (r"\(aq", "'"), (r"\e", "\\"))


def page():
    with open(PAGE, encoding="utf-8") as file:
        return file.read()


@posix_only
@native_only
class Manual(SumCase):
    def test_it_names_every_option(self):
        text = self.fyrnsum("--help").output.decode()
        offered = set(re.findall(r"^ +(?:-., )?--([a-z0-9-]+)", text, re.MULTILINE))
        letters = set(re.findall(r"^ +-(.),", text, re.MULTILINE))
        items = " ".join(re.findall(r"^\.It (.*)", page(), re.MULTILINE))
        self.assertEqual(set(re.findall(r"Fl Fl ([a-z0-9-]+)", items)) - {"num-threads"}, offered)
        self.assertEqual(set(re.findall(r"Fl ([a-zA-Z]) ", items)), letters)

    def test_it_names_every_tool(self):
        for tool in TOOLS:
            self.assertRegex(page(), rf"\b{tool}\b")

    @unittest.skipUnless(shutil.which("mandoc"), "needs mandoc")
    def test_it_is_well_formed(self):
        done = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", PAGE], capture_output=True, text=True,
                              check=False)
        self.assertEqual((done.returncode, done.stdout), (0, ""))

    def test_its_examples_print_what_it_says(self):
        self.write("letter", b"Dear reader\n")
        self.write("photos/1.jpg", b"\xff\xd8picture")
        self.write("photos/1.jpg~", b"\xff\xd8old")
        os.mkdir(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin", "fyrnsum"))
        environment = {"PATH": f"{self.path('bin')}:/usr/bin:/bin"}
        blocks = re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed", page(), re.MULTILINE | re.DOTALL)
        self.assertEqual(len(blocks), 5)
        for block in blocks:
            for written, meant in ESCAPES:
                block = block.replace(written, meant)
            for command, output in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE):
                with self.subTest(command):
                    done = subprocess.run(["sh", "-c", command], cwd=self.scratch, env=environment,
                                          capture_output=True, text=True, check=False)
                    self.assertEqual((done.returncode, done.stdout, done.stderr), (0, output, ""))


if __name__ == "__main__":
    unittest.main()
