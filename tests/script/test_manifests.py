# SPDX-License-Identifier: MIT
"""script/manifests fills the manifests for Windows package managers from the list of digests."""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "script" / "manifests"
DIGEST = "ab" * 32
NAME = "fyrn-1.2.3-windows-x86_64"
URL = "https://downloads.example/v1.2.3"


def fields(text):
    """The `key: value` lines of a manifest."""
    return dict(re.findall(r"^[- ]*(\w+): (.+)$", text, re.MULTILINE))


class Manifests(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def run_script(self, sums):
        (self.folder / "SHA256SUMS").write_text(sums, encoding="utf-8")
        return subprocess.run([sys.executable, SCRIPT, URL + "/", self.folder], capture_output=True, text=True,
                              check=False)

    def fill(self):
        done = self.run_script(f"{'00' * 32}  fyrn-1.2.3.tar.gz\n{DIGEST}  {NAME}.zip\n")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return {path.name: path.read_text(encoding="utf-8") for path in (self.folder / "manifests").glob("*/*")}

    def test_nothing_is_left_to_fill(self):
        texts = self.fill()
        self.assertEqual(len(texts), 4)
        for name, text in texts.items():
            with self.subTest(name):
                self.assertNotIn("@", text)

    def test_winget_is_told_place_digest_and_programs(self):
        texts = self.fill()
        text = texts["fyrn.fyrn.installer.yaml"]
        installer = fields(text)
        self.assertEqual(installer["InstallerUrl"], f"{URL}/{NAME}.zip")
        self.assertEqual(installer["InstallerSha256"], DIGEST)
        self.assertEqual(re.findall(r"RelativeFilePath: (.+)\n +PortableCommandAlias: (.+)", text),
                         [(f"{NAME}\\{program}.exe", program) for program in ("fyrn", "fyrnsum")])
        types = set()
        for name in ("fyrn.fyrn.yaml", "fyrn.fyrn.installer.yaml", "fyrn.fyrn.locale.en-US.yaml"):
            manifest = fields(texts[name])
            self.assertEqual((manifest["PackageIdentifier"], manifest["PackageVersion"]), ("fyrn.fyrn", "1.2.3"))
            types.add(manifest["ManifestType"])
        self.assertEqual(types, {"version", "installer", "defaultLocale"})

    def test_scoop_is_told_place_digest_and_programs(self):
        manifest = json.loads(self.fill()["fyrn.json"])
        self.assertEqual(manifest["version"], "1.2.3")
        self.assertEqual(manifest["architecture"]["64bit"],
                         {"url": f"{URL}/{NAME}.zip", "hash": DIGEST, "extract_dir": NAME})
        self.assertEqual(manifest["bin"], ["fyrn.exe", "fyrnsum.exe"])

    def test_a_list_without_the_zip_is_refused(self):
        done = self.run_script(f"{DIGEST}  fyrn-1.2.3.tar.gz\n")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("lists no Windows zip", done.stderr)


if __name__ == "__main__":
    unittest.main()
