# SPDX-License-Identifier: MIT
"""--audit of random trees against a model of it (tree_model.py)."""
import unittest

import tree_model
from trees import TreeCase

CASES = 120


class AuditModel(TreeCase):
    def test_random_trees_have_the_classes_of_the_model(self):
        for seed in range(CASES):
            with self.subTest(seed=seed):
                self.try_case(self.new_case(seed))

    def try_case(self, case):
        name = case.kind.name
        before = self.lay_out(case)
        self.let_time_pass(case)
        found = tree_model.classify(case.listed, case.tree)
        result = self.compare("--json", f"--audit={name}", "tree")
        self.assert_report(case, result, found)
        self.assertEqual(result.status, tree_model.audit_status(found), name)
        self.assertEqual(self.read(name), before)


if __name__ == "__main__":
    unittest.main()
