# SPDX-License-Identifier: MIT
"""The session that README.md shows is what a user sees, and what its links name is there."""
import os
import re
import shutil
import subprocess
import unittest

from launcher import PROGRAM, SOURCE_DIRECTORY, ScratchCase, posix_only


def readme():
    with open(os.path.join(SOURCE_DIRECTORY, "README.md"), encoding="utf-8") as file:
        return file.read()


def session():
    """(command, output) of each step."""
    section = re.search(r"^## Examples\n(.*?)^## ", readme(), re.MULTILINE | re.DOTALL)[1]
    blocks = re.findall(r"^```console\n(.*?)^```", section, re.MULTILINE | re.DOTALL)
    return re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.MULTILINE)


@posix_only
class Readme(ScratchCase):
    def test_the_session_is_what_a_user_sees(self):
        self.write("photos/abc.txt", b"abc")
        shutil.copy(os.path.join(SOURCE_DIRECTORY, "LICENSE"), self.path("photos"))
        self.write(".tools/unused", b"")
        os.symlink(PROGRAM, self.path(".tools", "fyrn"))
        os.symlink(os.path.join(os.path.dirname(PROGRAM), "fyrnsum"), self.path(".tools", "fyrnsum"))
        steps = session()
        self.assertGreaterEqual(len(steps), 10)
        for line, output in steps:
            with self.subTest(line):
                done = subprocess.run(["sh", "-c", line], cwd=self.scratch, stdin=subprocess.DEVNULL,
                                      capture_output=True, text=True, check=False,
                                      env={"PATH": self.path(".tools") + ":/usr/bin:/bin", "LC_ALL": "C.UTF-8"})
                self.assertEqual((done.returncode, done.stdout, done.stderr), (0, output, ""))

    def test_every_link_leads_somewhere(self):
        links = re.findall(r"\]\(([^)]+)\)", readme())
        self.assertGreaterEqual(len(links), 10)
        for link in links:
            with self.subTest(link):
                self.assertTrue(os.path.exists(os.path.join(SOURCE_DIRECTORY, link)))


if __name__ == "__main__":
    unittest.main()
