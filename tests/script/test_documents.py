# SPDX-License-Identifier: MIT
"""What the documents say about the sources is so: files and names exist, and the include rules are those checked."""
import pathlib
import re
import runpy
import sys
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests" / "cli"))
from expected import ROWS  # noqa: E402

DOCUMENTS = [PROJECT / "README.md", PROJECT / "CONTRIBUTING.md", PROJECT / "SECURITY.md",
             *sorted((PROJECT / "docs").glob("*.md"))]
PACKAGED = [PROJECT / "CMakeLists.txt", PROJECT / "docs/fyrn.1", PROJECT / "packaging/debian/control",
            PROJECT / "packaging/scoop/fyrn.json.in", PROJECT / "packaging/winget/fyrn.fyrn.locale.en-US.yaml.in"]
ARCHITECTURE = PROJECT / "docs" / "architecture.md"
ROOMS = ("app", "crypto", "support", "platform")


def text_of(document):
    return document.read_text(encoding="utf-8")


def quoted(text):
    """What stands between backticks in the prose, code blocks left out."""
    return re.findall(r"`([^`\n]+)`", re.sub(r"^```.*?^```", "", text, flags=re.MULTILINE | re.DOTALL))


def section(document, title):
    return re.search(rf"^## {title}\n(.*?)(?=^## |\Z)", text_of(document), re.MULTILINE | re.DOTALL)[1]


def sources():
    return "\n".join(text_of(path) for room in (*ROOMS, "sum", "hash", "fyrn") for path in (PROJECT / room).rglob("*")
                     if path.suffix in (".cpp", ".h", ".hpp"))


class Documents(unittest.TestCase):
    def test_every_file_that_is_named_exists(self):
        folders = "|".join(path.name.replace(".", r"\.") for path in PROJECT.iterdir()
                           if path.is_dir() and path.name not in (".git", "build"))
        checked = 0
        for document in DOCUMENTS:
            for name in quoted(text_of(document)):
                path = name.split()[0]
                if not re.fullmatch(rf"({folders})/[\w./+-]*\w", path):
                    continue  # no path, or a pattern
                checked += 1
                with self.subTest(document=document.name, path=path):
                    self.assertTrue((PROJECT / path).exists())
        self.assertGreater(checked, 30)

    def test_the_walk_goes_through_names_that_exist(self):
        code = sources()
        names = [name for name in quoted(section(ARCHITECTURE, "One file through the modules"))
                 if re.fullmatch(r"(\w+::)*[A-Za-z]\w+(\(\))?", name) and name != "FILE"]
        self.assertGreater(len(names), 12)
        for name in names:
            with self.subTest(name):
                for part in name.removesuffix("()").split("::"):
                    self.assertRegex(code, rf"\b{part}\b")

    def test_the_include_rules_are_those_that_are_checked(self):
        rules = runpy.run_path(str(PROJECT / "script" / "check-layers"))["MAY_INCLUDE"]
        rows = dict(re.findall(r"^\| ([\w/]+) \| ([^|]+) \|$", section(ARCHITECTURE, "Include rules"), re.MULTILINE))
        for room in (*ROOMS, "sum", "hash", "fyrn", "hash/kernels"):
            with self.subTest(room):
                stated = set() if rows[room].startswith("nothing") else set(rows[room].split(", "))
                self.assertEqual(stated | {room}, rules[room])

    def test_every_number_of_functions_is_that_of_the_rows(self):
        for document in [PROJECT / "README.md", *PACKAGED]:
            numbers = re.findall(r"\b(\d+) (?:hash )?functions\b|^\| Functions \| (\d+)", text_of(document),
                                 re.MULTILINE)
            with self.subTest(document=document.name):
                self.assertEqual({int(one or other) for one, other in numbers}, {len(ROWS)})

    def test_every_list_of_families_has_all(self):
        families = {re.match(r"TIGER|[A-Z0-9]+", row)[0] for row in ROWS}
        self.assertGreaterEqual(len(families), 13)
        for document in PACKAGED[2], PACKAGED[4]:
            listed = re.findall(r"\b(?:[A-Z][A-Z0-9]+,\s+)+[A-Z][A-Z0-9]+\s+and\s+[A-Z][A-Z0-9]+", text_of(document))
            with self.subTest(document=document.name):
                self.assertEqual(len(listed), 1)
                self.assertEqual(set(re.findall(r"[A-Z0-9]{2,}", listed[0])), families)


if __name__ == "__main__":
    unittest.main()
