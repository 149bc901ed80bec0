# SPDX-License-Identifier: MIT
"""2,000 random trees more, audited and updated, against the model of tree_model.py."""
import unittest

from test_audit_model import AuditModel
from test_update_model import UpdateModel
from trees import TreeCase

SEEDS = range(1000, 3000)


class TreeModels(TreeCase):
    try_audit = AuditModel.try_case
    try_update = UpdateModel.try_case

    def test_many_random_trees(self):
        for seed in SEEDS:
            with self.subTest(seed=seed):
                self.try_audit(self.new_case(seed))
                self.try_update(self.new_case(seed))


if __name__ == "__main__":
    del AuditModel, UpdateModel # which have tests of their own
    unittest.main()
