# SPDX-License-Identifier: MIT
"""Completion in bash, zsh and fish: what each offers after Tab, asked of the shells themselves."""
import os
import pathlib
import pty
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = PROJECT / "packaging" / "completions"
sys.path.insert(0, str(PROJECT / "tests" / "cli"))
from expected import ROWS  # noqa: E402

OPTIONS = ["-hash=", "-poly16=0x", "-poly32=0x", "-poly64=0x", "-rename", "-renamedel", "-salt=", "-salttype=",
           "-subdirs", "-verbosity="]
PLACES = ["after", "before", "both", "none"]

# What is typed before Tab, and the arguments that fyrn gets when Enter follows.
TYPED = [
    ("fyrn -hash=whirl", ["-hash=WHIRLPOOL"]),
    ("fyrn -hash=TIGER2-19", ["-hash=TIGER2-192"]),
    ("fyrn -hash=MD5 -hash=sha3-38", ["-hash=MD5", "-hash=SHA3-384"]),
    ("fyrn -salttype=be", ["-salttype=before"]),
    ("fyrn -su", ["-subdirs"]),
    ("fyrn -salt=the", ["-salt=the salt.bin"]),
    ("fyrn -subdirs the", ["-subdirs", "the salt.bin"]),
    ("fyrn -verbosity=3 pho", ["-verbosity=3", "photos"]),
]


class Terminal:
    """A shell on a pseudo-terminal."""

    def __init__(self, command, directory, environment):
        self.process, self.master = pty.fork()
        if self.process == 0:
            os.chdir(directory)
            os.execve(command[0], command, environment)
        self.seen = b""

    def send(self, text):
        os.write(self.master, text.encode())

    def wait_for(self, mark, seconds=30):
        """Reads until the mark was printed, and returns what came before it."""
        end = time.monotonic() + seconds
        while mark not in self.seen:
            if not select.select([self.master], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"waited in vain for {mark!r}; the terminal shows {self.seen!r}")
            self.seen += os.read(self.master, 4096)
        before, _, self.seen = self.seen.partition(mark)
        return before

    def end(self):
        os.close(self.master)
        os.waitpid(self.process, 0)


def needs(shell):
    return unittest.skipUnless(shutil.which(shell), f"needs {shell}")


class Completions(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        (self.folder / "the salt.bin").touch()
        (self.folder / "photos").mkdir()
        self.environment = {"PATH": "/usr/bin:/bin", "HOME": scratch.name, "TERM": "dumb", "LC_ALL": "C.UTF-8"}

    def ask(self, *command):
        done = subprocess.run(command, cwd=self.folder, env=self.environment, capture_output=True, text=True,
                              check=True)
        self.assertEqual(done.stderr, "")
        return sorted(done.stdout.splitlines())

    def check_typing(self, command, preparations):
        """Types each line, Tab and Enter; `fyrn` is a function that shows its arguments."""
        terminal = Terminal(command, self.folder, self.environment)
        self.addCleanup(terminal.end)
        for line in (*preparations, "PS1=; fyrn() { printf '[%s]' \"$@\"; echo E''ND; }; echo READY''NOW"):
            terminal.send(line + "\n")
        terminal.wait_for(b"READYNOW")
        for typed, arguments in TYPED:
            with self.subTest(typed=typed):
                terminal.send(typed + "\t")
                time.sleep(0.3)  # a shell throws away what is typed ahead of its answer
                terminal.send("\n")
                shown = terminal.wait_for(b"END")
                shown = shown.replace(b"/]", b"]")  # zsh takes the slash back that it offered
                self.assertTrue(shown.endswith("".join(f"[{text}]" for text in arguments).encode()), shown)

    def bash_offers(self, line):
        return self.ask("bash", "--norc", "-c", 'shopt -s progcomp; . "$1"; COMP_LINE=$2 COMP_POINT=${#2}; _fyrn; '
                        'printf "%s\\n" "${COMPREPLY[@]}"', "bash", FOLDER / "fyrn.bash", line)

    def test_bash_offers_all_options(self):
        self.assertEqual(self.bash_offers("fyrn -"), OPTIONS)

    def test_bash_offers_all_values(self):
        self.assertEqual(self.bash_offers("fyrn -hash="), sorted(["ALL", *ROWS]))
        self.assertEqual(self.bash_offers("fyrn -salttype="), PLACES)
        self.assertEqual(self.bash_offers("fyrn a -verbosity="), ["1", "2", "3"])
        self.assertEqual(self.bash_offers("fyrn -hash=shake-1"), ["SHAKE-128"])

    def test_bash_completes_what_is_typed(self):
        self.check_typing(["/bin/bash", "--norc", "--noprofile", "-i"], [f". {FOLDER}/fyrn.bash"])

    def fish_offers(self, line):
        offers = self.ask("fish", "--no-config", "-c", f"source {FOLDER}/fyrn.fish; complete -C '{line}'")
        return sorted(offer.partition("\t")[0] for offer in offers)

    @needs("fish")
    def test_fish_offers_all_options(self):
        offers = self.fish_offers("fyrn -")
        self.assertEqual(offers, sorted(option.removesuffix("0x") for option in OPTIONS))

    @needs("fish")
    def test_fish_offers_all_values(self):
        self.assertEqual(self.fish_offers("fyrn -hash="), sorted(f"-hash={name}" for name in ["ALL", *ROWS]))
        self.assertEqual(self.fish_offers("fyrn -salttype="), [f"-salttype={place}" for place in PLACES])
        self.assertEqual(self.fish_offers("fyrn a -verbosity="), [f"-verbosity={level}" for level in "123"])
        self.assertEqual(self.fish_offers("fyrn -hash=shake-1"), ["-hash=SHAKE-128"])

    @needs("fish")
    def test_fish_offers_files(self):
        self.assertEqual(self.fish_offers("fyrn -salt=the"), ["-salt=the salt.bin"])
        self.assertEqual(self.fish_offers("fyrn -subdirs pho"), ["photos/"])

    @needs("zsh")
    def test_zsh_completes_what_is_typed(self):
        self.check_typing(["/usr/bin/zsh", "-f", "-i"],
                          [f"fpath=({FOLDER} $fpath)", "autoload -U compinit && compinit -u -D"])

    @needs("zsh")
    def test_zsh_offers_every_function(self):
        names = self.ask("zsh", "-f", "-c", "compadd() { print -l $names }; _arguments() { _fyrn_functions }; "
                         f". {FOLDER}/_fyrn")
        self.assertEqual(names, sorted(["ALL", *ROWS]))


if __name__ == "__main__":
    unittest.main()
