# SPDX-License-Identifier: MIT
"""Every recipe of docs/recipes.md, run as it stands."""
import hashlib
import json
import os
import re
import shutil
import subprocess
import unittest

from launcher import INSTRUMENTED, PROGRAM, SOURCE_DIRECTORY, ScratchCase, posix_only

PAGE = os.path.join(SOURCE_DIRECTORY, "docs", "recipes.md")
FYRNSUM = os.environ.get("FYRNSUM_PROGRAM", "")
TREE = {"photos/a b.jpg": b"one", "photos/2024/same.jpg": b"one", "photos/2024/-rename": b"two", "photos/empty": b"",
        "photos/*": b"star", "photos/2025/z.jpg": b"last"}


def recipes():
    """Heading -> its code blocks."""
    with open(PAGE, encoding="utf-8") as file:
        sections = re.split(r"^## (.*)\n", file.read(), flags=re.MULTILINE)[1:]
    return {title: re.findall(r"^```sh\n(.*?)^```", text, re.MULTILINE | re.DOTALL)
            for title, text in zip(sections[::2], sections[1::2])}


def listing(contents, algorithm="sha256"):
    """What the coreutils print for these files, in the order of their paths."""
    return "".join(f"{hashlib.new(algorithm, contents[name]).hexdigest()}  {name}\n"
                   for name in sorted(contents, key=os.fsencode))


class RecipeCase(ScratchCase):
    def setUp(self):
        super().setUp()
        for name, content in TREE.items():
            self.write(name, content)
        self.tools = self.path(".tools")
        os.mkdir(self.tools)
        for name, program in (("fyrn", PROGRAM), ("fyrnsum", FYRNSUM)):
            os.symlink(program, os.path.join(self.tools, name))
        self.user = {}
        self.environment = {"PATH": self.tools + ":/usr/bin:/bin", "HOME": self.scratch, "LC_ALL": "C.UTF-8"}

    def try_to_cook(self, title, block=None):
        """Runs a recipe, or one block of it. Returns its status and both outputs."""
        blocks = recipes()[title]
        script = "set -eu\n" + "\n".join(blocks if block is None else [blocks[block]])
        done = subprocess.run(["sh", "-c", script], cwd=self.scratch, env=self.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False, timeout=300, **self.user)
        return done.returncode, done.stdout, done.stderr

    def cook(self, title, block=None):
        """The same for a recipe that must work. Returns what it printed."""
        status, output, errors = self.try_to_cook(title, block)
        self.assertEqual((status, errors), (0, ""))
        return output

    def give_to_nobody(self):
        """Cooks as a user whom rights stop, with a copy of the program that this user may run."""
        os.remove(os.path.join(self.tools, "fyrnsum"))
        shutil.copy(FYRNSUM, os.path.join(self.tools, "fyrnsum"))
        nobody = 65534
        for directory, _, files in os.walk(self.scratch):
            for name in (".", *files):
                os.chown(os.path.join(directory, name), nobody, nobody, follow_symlinks=False)
        self.user = {"user": nobody, "group": nobody, "extra_groups": []}

    def text(self, name):
        return self.read(name).decode()

    def make_list(self):
        self.cook("A list that sha256sum reads")


@posix_only
class Recipes(RecipeCase):
    def test_every_recipe_is_tried(self):
        with open(__file__, encoding="utf-8") as file:
            tried = file.read()
        with open(os.path.join(os.path.dirname(__file__), "test_recipes_slow.py"), encoding="utf-8") as file:
            tried += file.read()
        self.assertEqual([title for title in recipes() if f'"{title}"' not in tried], [])
        self.assertEqual([title for title, blocks in recipes().items() if not blocks], [])

    def test_sha256sum_reads_the_list(self):
        self.assertEqual(self.cook("A list that sha256sum reads"), "")
        self.assertEqual(self.text("photos.sha256"), listing(TREE))

    def test_sha256sum_tells_a_change(self):
        self.make_list()
        self.write("photos/empty", b"no more")
        status, output, _ = self.try_to_cook("A list that sha256sum reads", 1)
        self.assertEqual((status, output), (1, "photos/empty: FAILED\n"))

    def test_b2sum_reads_the_list(self):
        self.assertEqual(self.cook("A list that b2sum reads"), "")
        self.assertEqual(self.text("photos.b2"), listing(TREE, "blake2b"))

    @unittest.skipIf(INSTRUMENTED, "an instrumented program cannot write its files as another user")
    def test_an_unreadable_file_is_in_no_list(self):
        os.chmod(self.write("photos/m", b"secret"), 0)
        if os.geteuid() == 0:
            self.give_to_nobody()
        self.assertEqual(self.try_to_cook("A list that sha256sum reads"),
                         (1, "", "fyrnsum: photos/m: Permission denied\n"))
        self.assertEqual(self.text("photos.sha256"), listing(TREE))

    def test_an_earlier_list_tells_what_changed(self):
        self.make_list()
        title = "Check files against an earlier list"
        self.assertEqual(self.cook(title), "unchanged\n")
        self.write("photos/2025/z.jpg", b"another")
        self.assertEqual(self.try_to_cook(title), (1, "photos/2025/z.jpg: FAILED\n",
                                                   "fyrnsum: WARNING: 1 computed checksum did NOT match\n"))

    def test_a_download_is_checked(self):
        self.write("here.iso", b"image")
        self.write("SHA512SUMS", listing({"elsewhere.iso": b"", "here.iso": b"image"}, "sha512").encode())
        self.assertEqual(self.cook("Check a download"), "here.iso: OK\n")

    def test_a_report_is_checked(self):
        self.assertEqual(self.cook("Check a report of fyrn"), "unchanged\n")
        self.write("photos/empty", b"no more")
        status, output, _ = self.try_to_cook("Check a report of fyrn", 1)
        self.assertEqual((status, output), (1, f"{self.path('photos/empty')}: FAILED\n"))

    def test_one_reading_makes_several_lists(self):
        self.assertEqual(self.cook("Several lists from one reading"), "")
        for name in ("md5", "sha256", "sha512"):
            self.assertEqual(self.text(f"photos.{name}"), listing(TREE, name))

    def test_json_has_sizes_and_digests(self):
        self.assertEqual(self.cook("Digests for other programs"), "")
        objects = [json.loads(line) for line in self.text("photos.json").splitlines()]
        self.assertEqual(objects, [{"path": name, "size": len(TREE[name]), "md5": hashlib.md5(TREE[name]).hexdigest(),
                                    "sha256": hashlib.sha256(TREE[name]).hexdigest()}
                                   for name in sorted(TREE, key=os.fsencode)])

    def test_two_trees_are_compared(self):
        shutil.copytree(self.path("photos"), self.path("backup"))
        self.assertEqual(self.cook("Compare two trees"), "nothing is missing or changed\n")
        self.write("backup/new", b"new")
        self.write("backup/2024/-rename", b"2")
        status, output, _ = self.try_to_cook("Compare two trees", 0)
        self.assertEqual((status, output), (1, "./2024/-rename: FAILED\n"))
        old, changed, new = (hashlib.sha256(content).hexdigest() for content in (b"two", b"2", b"new"))
        lines = self.cook("Compare two trees", 1).splitlines()
        self.assertEqual([line for line in lines if line[0] in "<>"],
                         [f"< {old}  ./2024/-rename", f"> {changed}  ./2024/-rename", f"> {new}  ./new"])

    def test_duplicates_are_found(self):
        self.write("backup/other", b"last")
        one, last = (hashlib.sha256(content).hexdigest() for content in (b"one", b"last"))
        groups = [f"{one}  photos/2024/same.jpg\n{one}  photos/a b.jpg\n",
                  f"{last}  backup/other\n{last}  photos/2025/z.jpg\n"]
        self.assertEqual(self.cook("Find duplicates"), "\n".join(sorted(groups)))

    def test_what_git_tracks_is_hashed(self):
        for command in (["git", "init", "--quiet"], ["git", "add", "photos"]):
            subprocess.run(command, cwd=self.scratch, env=self.environment, check=True)
        self.write("untracked", b"no")
        self.assertEqual(self.cook("Hash what git tracks"), listing(TREE))

    def test_files_are_left_out(self):
        self.write("photos/.cache/x", b"x")
        self.write("photos/2024/y.tmp", b"y")
        self.assertEqual(self.cook("Leave files out"), "")
        self.assertEqual(self.text("kept.sha256"), listing(TREE))

    def test_photos_are_named_and_nothing_is_lost(self):
        self.assertEqual(self.cook("Name a photo archive by digest"), "nothing is lost\n")
        named = {f"{hashlib.sha256(content).hexdigest()}{os.path.splitext(name)[1]}" for name, content in TREE.items()}
        found = {name for _, _, names in os.walk(self.path("renamed")) for name in names}
        self.assertEqual(found, named)
        self.assertIn(self.path("renamed/2024/same.jpg"), self.text("renamed.txt").splitlines())

    def test_one_core_makes_the_same_list(self):
        self.make_list()
        self.assertEqual(self.cook("Use one core"), "the same\n")
    def test_an_archive_is_guarded(self):
        self.assertEqual(self.cook("Guard an archive", 0), "")
        self.assertEqual(self.text("photos.sha256"), listing(TREE))
        self.assertEqual(self.cook("Guard an archive", 1), "")
        os.rename(self.path("photos/*"), self.path("photos/star"))
        self.assertEqual(self.cook("Guard an archive", 1), "photos/star: RENAMED from 'photos/*'\n")
        self.write("photos/2025/z.jpg", b"lost")
        status, output, _ = self.try_to_cook("Guard an archive", 1)
        self.assertEqual((status, output), (1, "photos/2025/z.jpg: CHANGED\n"))

    def test_two_trees_are_compared_in_one_command(self):
        shutil.copytree(self.path("photos"), self.path("backup"))
        self.assertEqual(self.cook("Compare two trees in one command"), "")
        self.write("backup/new", b"new")
        os.remove(self.path("backup/a b.jpg"))
        self.assertEqual(self.cook("Compare two trees in one command"), "'./a b.jpg': MISSING\n./new: NEW\n")

    def test_a_bag_is_made_and_complete(self):
        self.assertEqual(self.cook("Make and check a bag"), "complete\n")
        data = {name.replace("photos/", "data/"): content for name, content in TREE.items()}
        self.assertEqual(self.text("bag/manifest-sha256.txt"), listing(data))

    def test_assets_of_a_release_are_listed(self):
        self.assertEqual(self.cook("List the assets of a release"), "good\n")
        self.assertEqual(self.text("photos/SHA256SUMS"),
                         listing({name.replace("photos/", ""): content for name, content in TREE.items()
                                  if "/2024/" in name}))



if __name__ == "__main__":
    unittest.main()
