# SPDX-License-Identifier: MIT
"""What the tests of --audit and --update share: random cases on disk, and runs that are compared with the model."""
import os
import shutil

import program
import tree_model

OLD = 1_600_000_000 * 10**9 # when files of a tree were modified, in ns: long ago
NOBODY = 65534


class TreeCase(program.SumCase):
    """A test that lays out cases of tree_model.py, one after the other, in a directory of its own."""

    def lay_out(self, case):
        """Writes the tree as it was and its list. Returns the list's bytes."""
        for name in os.listdir(self.scratch):
            path = self.path(name)
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
        os.chmod(self.scratch, 0o777) # the program may run as nobody
        os.mkdir(self.path("tree"))
        if case.kind.name.startswith("manifest"):
            self.write("bagit.txt", b"BagIt-Version: 1.0\n")
        for path, content in case.listed.items():
            os.utime(self.write(path, content), ns=(OLD, OLD))
        self.write(case.kind.name, case.kind.write(case.listed, case.order))
        return self.read(case.kind.name)

    def let_time_pass(self, case):
        """Makes the tree what it is to become."""
        shutil.rmtree(self.path("tree"))
        os.mkdir(self.path("tree"))
        for path, content in case.tree.items():
            written = self.write(path, case.listed.get(path, b"") if content is None else content)
            unchanged = path in case.decayed or content == case.listed.get(path)
            time = OLD if unchanged else OLD + 10**9
            os.utime(written, ns=(time, time))
            if content is tree_model.UNREADABLE:
                os.chmod(written, 0)

    def compare(self, *arguments, **options):
        """Runs the program as somebody whom rights stop."""
        if program.WINDOWS or os.geteuid() != 0 or program.INSTRUMENTED:
            return self.fyrnsum(*arguments, **options)
        return self.fyrnsum(*arguments, user=NOBODY, group=NOBODY, extra_groups=[], **options)

    def assert_report(self, case, result, found, everything=False):
        """Compares the lines of --json and the summary with what the model says."""
        expected = [(path, *found[path]) for path in sorted(found) if everything or found[path][0] != "OK"]
        self.assertEqual(tree_model.read_report(result.output), expected, case.kind.name)
        self.assertEqual(result.errors.decode().replace("\r\n", "\n"), f"fyrnsum: {tree_model.totals(found)}\n")

    def can_stop_reading(self):
        """Whether files can be made that the program cannot read."""
        return not program.WINDOWS and not program.INSTRUMENTED and not program.LAUNCHER

    def new_case(self, seed):
        return tree_model.Case(seed, odd_names=not program.WINDOWS, unreadable=self.can_stop_reading())
