# SPDX-License-Identifier: MIT
"""coreutils' own tests of its checksum tools pass when those tools are fyrnsum under their names."""
import os
import sys
import tempfile
import unittest

import coreutils
from program import native_only, posix_only


@posix_only
@native_only
class Scripts(unittest.TestCase):
    def test_all_of_them_pass(self):
        try:
            sources = coreutils.fetch()
        except coreutils.NotThere as reason:
            print(f"\nNOT RUN: the {len(coreutils.SCRIPTS)} scripts could not be fetched: {reason}", file=sys.stderr)
            self.skipTest("the scripts could not be fetched")
        passed = []
        for script in coreutils.SCRIPTS:
            with self.subTest(script), tempfile.TemporaryDirectory(prefix="fyrnsum-") as folder:
                os.chmod(folder, 0o755)
                status, output = coreutils.run_script(sources, script, folder)
                self.assertEqual(status, 0, output)
                passed.append(script)
        print(f"\n{len(passed)} of {len(coreutils.SCRIPTS)} scripts passed", file=sys.stderr)


if __name__ == "__main__":
    unittest.main()
