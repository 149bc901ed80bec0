# SPDX-License-Identifier: MIT
"""The question after a fault, as a user at a terminal sees and answers it."""
import re
import unittest

import faults
import launcher


@launcher.posix_only
@faults.not_instrumented
class FaultQuestion(faults.FaultCase):
    def setUp(self):
        super().setUp()
        self.write("work/a.txt", b"abc")
        self.write("work/b.txt", b"abc")

    def start(self, *arguments):
        return faults.TerminalRun(faults.limited(faults.NO_READ_BUFFER, self.command("-hash=MD5", *arguments)),
                                  self.path("work"))

    def answer(self, run, *keys):
        """Types one answer per question asked, and waits for the end."""
        for number, answer in enumerate(keys, 1):
            run.wait_for_questions(number)
            run.type(answer)
        return run.finish()

    def assert_asked(self, run, count):
        self.assertEqual(run.shown.count(b" [y/n] "), count, run.shown)

    def assert_went_on(self, result):
        self.check_quiet_success(result)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  ", "b.txt", "  ")

    def test_the_question_tells_what_happened(self):
        run = self.start("a.txt")
        self.answer(run, b"y\n")
        begin = "\nException error\nThe following exception occurred:\n\nFile\n  crypto/CCrypto_Md5.cpp ("
        end = (f")\nFunction\n  {faults.MD5_FUNCTION}\nLine\n  {faults.md5_line()}\n--------------------\n(null)\n"
               "--------------------\n\nDo you want to try and continue? (may fail) [y/n] y\n")
        self.assertRegex(run.shown.decode(), f"\\A{re.escape(begin)}{faults.TIME_STAMP}{re.escape(end)}\\Z")

    def test_no_ends_the_run_with_status_3(self):
        for answer in (b"n\n", b"N\n", b"no\n"):
            with self.subTest(answer):
                run = self.start("a.txt", "b.txt")
                result = self.answer(run, answer)
                self.assertEqual(result.status, 3)
                self.assertEqual(result.errors, b"")
                self.assert_lines(result, "Hashes: MD5 ", "", "a.txt")
                self.assert_asked(run, 1)

    def test_no_leaves_the_record_in_the_log(self):
        self.answer(self.start("a.txt", "b.txt"), b"n\n")
        self.assertEqual(self.logged_functions(), [faults.MD5_FUNCTION])

    def test_yes_goes_on_and_asks_at_every_fault(self):
        for answer in (b"y\n", b"Y\n", b"yes\n"):
            with self.subTest(answer):
                run = self.start("a.txt", "b.txt")
                self.assert_went_on(self.answer(run, answer, answer))
                self.assert_asked(run, 2)

    def test_no_to_the_second_question_ends_the_run_there(self):
        result = self.answer(self.start("a.txt", "b.txt"), b"y\n", b"n\n")
        self.assertEqual(result.status, 3)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  ", "b.txt")

    def test_end_of_input_goes_on(self):
        run = self.start("a.txt", "b.txt")
        self.assert_went_on(self.answer(run, b"\x04", b"\x04"))
        self.assert_asked(run, 2)

    def test_anything_else_is_asked_again(self):
        run = self.start("a.txt")
        result = self.answer(run, b"maybe\n", b"\n", b" y\n", b"\xff\xfe\n", b"y\n")
        self.check_quiet_success(result)
        self.assert_asked(run, 5)
        self.assertEqual(len(self.logged_functions()), 1)

    def test_a_run_in_the_background_is_not_asked(self):
        arguments = faults.limited(faults.NO_READ_BUFFER, self.command("-hash=MD5", "a.txt", "b.txt"))
        run = faults.TerminalRun(["sh", "-c", 'set -m; "$@" & wait $!', "sh", *arguments], self.path("work"))
        self.assert_went_on(run.finish())
        self.assertNotIn(b"[y/n]", run.shown)
        self.assertEqual(len(self.logged_functions()), 2)


if __name__ == "__main__":
    unittest.main()
