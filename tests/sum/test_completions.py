# SPDX-License-Identifier: MIT
"""Completion of fyrnsum in bash, zsh and fish: every option of --help, every function of --list-functions."""
import os
import re
import shutil
import unittest

from program import PROGRAM, SOURCE_DIRECTORY, SumCase, native_only, posix_only, run_command

FOLDER = os.path.join(SOURCE_DIRECTORY, "packaging", "completions")


def needs(shell):
    return unittest.skipUnless(shutil.which(shell), f"needs {shell}")


@posix_only
@native_only
class Completions(SumCase):
    def setUp(self):
        super().setUp()
        text = self.fyrnsum("--help").output.decode()
        self.options = sorted(re.findall(r"^ +(?:-., )?(--[a-z0-9-]+=?)", text, re.MULTILINE))
        self.assertGreater(len(self.options), 30)
        lines = self.fyrnsum("--list-functions").output.decode().splitlines()
        self.functions = sorted([line.split()[0] for line in lines] + ["sha2", "sha3"])
        self.write("the file")
        os.mkdir(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin", "fyrnsum"))
        self.environment = {"PATH": f"{self.path('bin')}:/usr/bin:/bin", "HOME": self.scratch, "LC_ALL": "C.UTF-8"}

    def ask(self, *command):
        result = run_command(command, directory=self.scratch, env=self.environment)
        self.assertEqual((result.status, result.errors), (0, b""))
        return sorted(line for line in result.output.decode().splitlines() if line)

    def bash_offers(self, line):
        return self.ask("bash", "--norc", "-c", 'shopt -s progcomp; . "$1"; COMP_LINE=$2 COMP_POINT=${#2}; _fyrnsum; '
                        'printf "%s\\n" "${COMPREPLY[@]}"', "bash", os.path.join(FOLDER, "fyrnsum.bash"), line)

    def test_bash_offers_everything(self):
        self.assertEqual(self.bash_offers("fyrnsum --"), self.options)
        self.assertEqual(self.bash_offers("fyrnsum a --exclude-f"), ["--exclude-from="])
        for line in ("fyrnsum --algorithm=", "fyrnsum -a "):
            self.assertEqual(self.bash_offers(line), self.functions)
        self.assertEqual(self.bash_offers("fyrnsum -a md5,sha3-38"), ["md5,sha3-384"])
        self.assertEqual(self.bash_offers("fyrnsum --algorithm=md5,sha3-38"), ["md5,sha3-384"])
        self.assertEqual(self.bash_offers("fyrnsum --format=b"), ["bagit", "bsd"])
        self.assertEqual(self.bash_offers("fyrnsum --directory=b"), ["bin"])
        self.assertEqual(self.bash_offers("fyrnsum the"), []) # files are readline's own

    def fish_offers(self, line):
        offers = self.ask("fish", "--no-config", "-c", f"source {FOLDER}/fyrnsum.fish; complete -C '{line}'")
        return [offer.partition("\t")[0] for offer in offers]

    @needs("fish")
    def test_fish_offers_everything(self):
        self.assertEqual(sorted({offer.rstrip("=") for offer in self.fish_offers("fyrnsum --")}),
                         sorted(option.rstrip("=") for option in self.options))
        self.assertEqual(sorted(self.fish_offers("fyrnsum --algorithm=")),
                         sorted("--algorithm=" + name for name in self.functions))
        self.assertEqual(sorted(self.fish_offers("fyrnsum -a ")), self.functions)
        self.assertEqual(self.fish_offers("fyrnsum -a md5,sha3-38"), ["md5,sha3-384"])
        self.assertEqual(self.fish_offers("fyrnsum --format=hash"), ["--format=hashdeep"])
        self.assertEqual(self.fish_offers("fyrnsum -o the"), ["the file"])

    @needs("zsh")
    def test_zsh_offers_everything(self):
        script = f"""_arguments() {{ print -rl -- "$@" }}; . {FOLDER}/_fyrnsum"""
        offered = self.ask("zsh", "-f", "-c", script)
        names = {match[1] for line in offered if (match := re.match(r"(?:\*|\(.*?\))?(--[a-z0-9-]+=?)\[", line))}
        self.assertEqual(sorted(names), self.options)
        script = f"""_arguments() {{ _fyrnsum_functions }}; _sequence() {{ shift 2; print -rl -- "$@" }}; . {FOLDER}/_fyrnsum"""
        self.assertEqual(self.ask("zsh", "-f", "-c", script), self.functions)


if __name__ == "__main__":
    unittest.main()
