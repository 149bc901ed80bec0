# SPDX-License-Identifier: MIT
"""The program carries what makes an error harder to abuse: readelf finds each protection in the file."""
import re
import subprocess
import unittest

from launcher import INSTRUMENTED, PROGRAM, posix_only


def readelf(*options):
    return subprocess.run(["readelf", "--wide", *options, PROGRAM], check=True, capture_output=True, text=True,
                          env={"LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin"}).stdout


@posix_only
class Hardening(unittest.TestCase):
    def test_it_is_loaded_at_a_random_address(self):
        self.assertRegex(readelf("--file-header"), r"Type:\s+DYN ")
        self.assertRegex(readelf("--dynamic"), r"\(FLAGS_1\).*\bPIE\b")

    def test_relocated_data_is_read_only_before_main(self):
        self.assertRegex(readelf("--program-headers"), r"\bGNU_RELRO\b")
        self.assertRegex(readelf("--dynamic"), r"\(FLAGS\).*\bBIND_NOW\b")
        self.assertRegex(readelf("--dynamic"), r"\(FLAGS_1\).*\bNOW\b")

    def test_the_stack_is_not_executable(self):
        flags = re.search(r"GNU_STACK\s+(?:0x[0-9a-f]+\s+){5}(.{3})", readelf("--program-headers"))
        self.assertEqual(flags[1], "RW ")

    def test_no_part_is_both_writable_and_executable(self):
        loads = re.findall(r"LOAD\s+(?:0x[0-9a-f]+\s+){5}(.{3})", readelf("--program-headers"))
        self.assertGreaterEqual(len(loads), 3)
        self.assertNotIn("RWE", loads)

    def test_functions_guard_their_stack(self):
        self.assertIn(" __stack_chk_fail@", readelf("--dyn-syms"))

    @unittest.skipIf(INSTRUMENTED, "needs an optimised program without sanitizers")
    def test_calls_of_the_c_library_are_checked(self):
        checked = set(re.findall(r" (__\w+_chk)@", readelf("--dyn-syms")))
        self.assertTrue(checked, "no call of a checking function")

    @unittest.skipIf(INSTRUMENTED, "sanitizers bring threads")
    def test_it_starts_no_thread_and_no_process(self):
        self.assertNotRegex(readelf("--dyn-syms"), r" (pthread_create|clone3?|fork|vfork|posix_spawnp?|system|execv\w*)@")

    def test_no_library_is_searched_for_beside_the_program(self):
        self.assertNotRegex(readelf("--dynamic"), r"\((RPATH|RUNPATH)\)")

    @unittest.skipIf(INSTRUMENTED, "sanitizers bring libraries")
    def test_it_needs_the_c_library_only(self):
        needed = re.findall(r"\(NEEDED\).*\[([^]]*)\]", readelf("--dynamic"))
        self.assertEqual([name for name in needed if not re.match(r"lib[cm]\.so\.|ld-linux", name)], [])


if __name__ == "__main__":
    unittest.main()
