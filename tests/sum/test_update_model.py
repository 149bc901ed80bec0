# SPDX-License-Identifier: MIT
"""--update of random lists against a model of it (tree_model.py): classes, status, and every byte of the list."""
import unittest

import tree_model
from trees import TreeCase

CASES = 60
ACCEPTED = {(): (), ("--accept-changes",): ("CHANGED",),
            ("--accept-changes=all",): ("CHANGED", "CHANGED, same size and time")}


class UpdateModel(TreeCase):
    def test_random_lists_become_those_of_the_model(self):
        for seed in range(CASES):
            with self.subTest(seed=seed):
                self.try_case(self.new_case(seed))

    def try_case(self, case):
        name, kind = case.kind.name, case.kind
        before = self.lay_out(case)
        result = self.compare("--json", f"--update={name}", "tree") # which remembers sizes and times
        self.assert_report(case, result, {path: ("OK", None) for path in case.listed})
        self.assertEqual((result.status, self.read(name), self.read(name + "~")), (0, before, before), kind.name)

        self.let_time_pass(case)
        found = tree_model.classify(case.listed, case.tree, case.decayed)
        options = case.random.choice(sorted(ACCEPTED))
        accepted = ACCEPTED[options]
        result = self.compare("--json", f"--update={name}", "tree", *options)
        self.assert_report(case, result, found)
        self.assertEqual(result.status, tree_model.update_status(found, accepted))
        told, order = tree_model.update(case.listed, case.order, case.tree, found, accepted)
        self.assertEqual(self.read(name), kind.write(told, order), (kind.name, options))
        self.assertEqual(self.read(name + "~"), before)

        # What the list tells now, whether or not files are read; those that were not accepted look the same still.
        found = tree_model.classify(told, case.tree, case.decayed)
        for run in (["--audit=" + name], ["--audit=" + name, "--quick"], ["--update=" + name, "--quick"]):
            self.assert_report(case, self.compare("--json", "-v", *run, "tree"), found, everything=True)
        self.assertEqual(self.read(name), kind.write(told, order), (kind.name, options))


if __name__ == "__main__":
    unittest.main()
