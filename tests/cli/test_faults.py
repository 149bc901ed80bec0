# SPDX-License-Identifier: MIT
"""Faults of the hash library: the log beside the program, and that the run goes on and keeps every file."""
import os
import re
import resource
import shutil
import subprocess
import unittest

import expected
import faults
import launcher
from faults import MD5_FUNCTION, SALT_FUNCTION

# Number of rows, engine and the member that faults without a read buffer, in the order of the rows.
FAULTING_MEMBERS = (
    (6, "Blake2", "GetFromFile(const wchar_t *,unsigned char *,int,unsigned char,const void *,unsigned char)"),
    (1, "Crc", "Crc16_GetFromFile(const wchar_t *,unsigned short *)"),
    (1, "Crc", "Crc32_GetFromFile(const wchar_t *,unsigned int *)"),
    (1, "Crc", "Crc64_GetFromFile(const wchar_t *,unsigned __int64 *)"),
    (4, "Sha", "GetSha3_FromFile(const wchar_t *,unsigned short,unsigned char *,bool)"),
    (1, "Md4", "GetFromFile(const wchar_t *,unsigned char [])"),
    (1, "Md5", "GetFromFile(const wchar_t *,unsigned char [])"),
    (7, "Md6", "GetFromFile(const wchar_t *,unsigned char *,int,unsigned short,int)"),
    (1, "Sha", "GetSha1_FromFile(const wchar_t *,unsigned char [])"),
    (1, "Sha", "GetSha2_256_FromFile(const wchar_t *,unsigned char [])"),
    (1, "Sha", "GetSha2_384_FromFile(const wchar_t *,unsigned char [])"),
    (1, "Sha", "GetSha2_512_FromFile(const wchar_t *,unsigned char [])"),
    (4, "Sha", "GetSha3_FromFile(const wchar_t *,unsigned short,unsigned char *,bool)"),
    (3, "Shake", "Shake_GetFromFile(const wchar_t *,unsigned char *,unsigned __int64,"
                 "enum CCrypto_Shake::EnumShakeModeBufferLen)"),
    (3, "Skein", "GetFromFile(const wchar_t *,unsigned char *,int,unsigned short)"),
    (6, "Tiger", "GetFromFile(const wchar_t *,unsigned char *,unsigned int,unsigned short,bool,unsigned char)"),
    (1, "Whirlpool", "GetFromFile(const wchar_t *,unsigned char [])"),
)


@launcher.posix_only
@faults.not_instrumented
class ErrorLog(faults.FaultCase):
    def test_a_fault_appends_one_record_and_its_separator(self):
        self.write("work/a.txt", b"abc")
        self.run_short("-hash=MD5", "a.txt")
        pattern = faults.record_pattern("crypto/CCrypto_Md5.cpp", MD5_FUNCTION, faults.md5_line())
        self.assertRegex(self.log(), f"\\A{pattern}\\Z")

    def test_the_log_is_beside_the_program_and_nowhere_else(self):
        self.write("work/a.txt", b"abc")
        self.run_short("-hash=MD5", "a.txt")
        self.assertEqual(self.names("bin"), ["Error.log", "fyrn"])
        self.assertEqual(self.names("work"), ["a.txt"])

    def test_the_log_is_beside_a_program_whose_path_is_long(self):
        self.write("work/a.txt", b"abc")
        self.program = shutil.move(self.program, self.path("bin", "f" * 250))
        self.run_short("-hash=MD5", "a.txt")
        self.assertEqual(self.names("bin"), ["Error.log", "f" * 250])
        self.assertEqual(self.names("work"), ["a.txt"])

    def test_a_program_whose_directory_has_too_long_a_path_writes_no_log(self):
        self.write("work/a.txt", b"abc")
        deep = os.path.join("bin", "d" * 150, "e" * 150)
        os.makedirs(self.path(deep))
        self.program = shutil.move(self.program, self.path(deep, "fyrn"))
        self.assert_lines(self.run_short("-hash=MD5", "a.txt"), "Hashes: MD5 ", "", "a.txt", "  ")
        self.assertEqual(self.names(deep), ["fyrn"])
        self.assertEqual(self.names("bin"), ["d" * 150])
        self.assertEqual(self.names(os.path.dirname(deep)), ["e" * 150])
        self.assertEqual(self.names("work"), ["a.txt"])

    def test_two_faults_append_two_records(self):
        self.write("work/a.txt", b"abc")
        self.write("work/b.txt", b"abc")
        self.run_short("-hash=MD5", "a.txt", "b.txt")
        pattern = faults.record_pattern("crypto/CCrypto_Md5.cpp", MD5_FUNCTION, faults.md5_line())
        self.assertRegex(self.log(), f"\\A({pattern}){{2}}\\Z")

    def test_records_are_appended_to_those_of_earlier_runs(self):
        self.write("work/a.txt", b"abc")
        self.write("bin/Error.log", b"earlier\n")
        self.run_short("-hash=MD5", "a.txt")
        self.assertTrue(self.log().startswith("earlier\nException error\n"), self.log())

    def test_without_a_fault_there_is_no_log(self):
        self.write("work/a.txt", b"abc")
        done = subprocess.run(self.command("-hash=MD5", "a.txt"), cwd=self.path("work"), check=True,
                              stdout=subprocess.PIPE, timeout=120)
        self.assertIn(expected.md5(b"abc").encode(), done.stdout)
        self.assertEqual(self.names("bin"), ["fyrn"])

    def test_a_log_that_is_no_file_is_done_without(self):
        self.write("work/a.txt", b"abc")
        os.mkdir(self.path("bin", "Error.log"))
        self.assert_lines(self.run_short("-hash=MD5", "a.txt"), "Hashes: MD5 ", "", "a.txt", "  ")
        self.assertEqual(self.names("bin/Error.log"), [])

    def test_where_the_directory_is_read_only_nothing_is_written(self):
        self.write("work/a.txt", b"abc")
        for path in (self.scratch, self.path("work")):
            os.chmod(path, 0o755)
        os.chmod(self.path("bin"), 0o555)
        # A superuser may write everywhere.
        user = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        result = self.run_short("-hash=MD5", "a.txt", **user)
        os.chmod(self.path("bin"), 0o755)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  ")
        self.assertEqual(self.names("bin"), ["fyrn"])
        self.assertEqual(self.names("work"), ["a.txt"])


@launcher.posix_only
@faults.not_instrumented
class GoingOn(faults.FaultCase):
    def test_rows_printed_always_print_a_line_and_the_others_none(self):
        self.write("work/a.txt", b"abc")
        result = self.run_short("-hash=MD5", "-hash=SHA1", "-hash=CRC-32", "a.txt")
        self.assert_lines(result, "Hashes: CRC-32 MD5 SHA1 ", "", "a.txt", "  ", "  ")
        self.assertEqual(len(self.logged_functions()), 3)

    def test_a_fault_of_one_row_leaves_the_others_alone(self):
        self.write("work/a.txt", b"abc")
        self.write("work/b.txt", b"other")
        result = self.run_short("-hash=KECCAK-256", "-hash=MD5", "-hash=SHA1", "a.txt", "b.txt",
                                limit=faults.NO_KECCAK_BUFFER)
        self.assert_lines(result, "Hashes: KECCAK-256 MD5 SHA1 ", "",
                          "a.txt", "  " + expected.md5(b"abc"), "  " + expected.sha1(b"abc"),
                          "b.txt", "  " + expected.md5(b"other"), "  " + expected.sha1(b"other"))
        self.assertEqual(self.logged_functions(), [faults.KECCAK_FUNCTION] * 2)

    def test_a_salt_that_cannot_be_held_is_done_without(self):
        self.write("work/a.txt", b"abc")
        self.write("work/salt", bytes(5_000_000))
        result = self.run_short("-salt=salt", "-salttype=before", "-hash=MD5", "a.txt", limit=4000)
        self.assert_lines(result, "Hashes: MD5 ", "", "a.txt", "  " + expected.md5(b"abc"))
        self.assertEqual(self.logged_functions(), [SALT_FUNCTION])

    def test_every_row_reports_its_own_fault(self):
        self.write("work/a.txt", b"abc")
        self.run_short("-hash=ALL", "a.txt")
        sources = re.findall(r"^File     : (\S+) \(", self.log(), re.MULTILINE)
        expected_pairs = [(f"crypto/CCrypto_{family}.cpp", f"bool __cdecl CCrypto_{family}::{member}")
                          for rows, family, member in FAULTING_MEMBERS for _ in range(rows)]
        self.assertEqual(list(zip(sources, self.logged_functions())), expected_pairs)


@launcher.posix_only
@faults.not_instrumented
class FilesAreKept(faults.FaultCase):
    """A row that faulted leaves an older digest behind. No file is renamed or removed under it."""

    def run_with_stale_digest(self, *options):
        """Lets MD5 work for a pipe and then fault for a.txt. Returns the digest of the pipe."""
        content = bytes(range(256)) * 4096  # more than a pipe holds: once it is written, the file is being read
        os.mkfifo(self.path("work", "pipe"))
        self.write("work/a.txt", b"abc")
        process = subprocess.Popen(self.command("-hash=MD5", *options, "pipe", "a.txt"), cwd=self.path("work"),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   start_new_session=True)
        with open(self.path("work", "pipe"), "wb", buffering=0) as pipe:
            self.assertEqual(pipe.write(content), len(content))
            limit = faults.NO_READ_BUFFER * 1024
            resource.prlimit(process.pid, resource.RLIMIT_DATA, (limit, limit))
        output, errors = process.communicate(timeout=120)
        self.check_quiet_success(launcher.Result(process.returncode, output, errors))
        digest = expected.md5(content)
        self.assert_lines(launcher.Result(0, output, errors), "Hashes: MD5 ", "", "pipe", "  " + digest,
                          "a.txt", "  " + digest)
        self.assertEqual(self.logged_functions(), [MD5_FUNCTION])
        return digest

    def test_a_row_printed_always_prints_the_digest_before(self):
        self.run_with_stale_digest()

    def test_a_file_that_faulted_is_not_renamed(self):
        self.run_with_stale_digest("-rename")
        self.assertEqual(self.names("work"), ["a.txt", "pipe"])
        self.assertEqual(self.read("work/a.txt"), b"abc")

    def test_a_file_that_faulted_is_not_removed(self):
        taken = "work/" + expected.md5(bytes(range(256)) * 4096) + ".txt"
        self.write(taken, b"holds the name")
        self.run_with_stale_digest("-renamedel")
        self.assertEqual(self.read("work/a.txt"), b"abc")
        self.assertEqual(self.read(taken), b"holds the name")

    def check_fault_after_digest(self, option, names_without_limit):
        """A digest of this very file, and then a fault: the file stays, though without a limit it would not."""
        self.write("work/a.txt", b"abc")
        self.write("work/b.txt", b"abc")
        rows = ("-hash=SHA1", "-hash=SHA3-256")
        self.run_short(*rows, option, "a.txt", "b.txt", limit=faults.NO_KECCAK_BUFFER)
        self.assertEqual(self.logged_functions(), [faults.KECCAK_FUNCTION] * 2)
        self.assertEqual(self.names("work"), ["a.txt", "b.txt"])
        self.run_short("-hash=SHA1", option, "a.txt", "b.txt", limit=faults.NO_KECCAK_BUFFER)
        self.assertEqual(self.names("work"), names_without_limit)

    def test_a_digest_before_the_fault_does_not_rename(self):
        digest = expected.sha1(b"abc")
        self.check_fault_after_digest("-rename", [digest + ".txt", digest + "_00.txt"])

    def test_a_digest_before_the_fault_does_not_remove(self):
        self.check_fault_after_digest("-renamedel", [expected.sha1(b"abc") + ".txt"])

    def test_a_digest_after_the_fault_does_not_rename_either(self):
        self.write("work/a.txt", b"abc")
        self.run_short("-hash=KECCAK-256", "-hash=MD5", "-rename", "a.txt", limit=faults.NO_KECCAK_BUFFER)
        self.assertEqual(self.names("work"), ["a.txt"])


if __name__ == "__main__":
    unittest.main()
