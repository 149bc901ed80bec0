# SPDX-License-Identifier: MIT
"""script/check-layers passes a tree that keeps the rules and names every breach of them."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = pathlib.Path(__file__).resolve().parents[2] / "script" / "check-layers"

# One small tree that keeps every rule, and uses each permission at least once.
CLEAN = {
    "app/Main.cpp": '#include "app/Usage.h"\n#include "crypto/Engine.h"\n#include "support/Text.h"\n'
                    '#include "platform/File.h"\n#include <vector>\n',
    "app/Usage.h": "#pragma once\n",
    "crypto/Engine.h": '#include "hash/kernels/Md5.h"\n#include <cstdint>\n',
    "crypto/Engine.cpp": '#include "crypto/Engine.h"\n#include "support/Text.h"\n#include "platform/File.h"\n',
    "hash/kernels/Md5.h": "#include <cstddef>\n",
    "hash/kernels/Md5_X86Avx2.cpp": '#include "hash/kernels/Md5.h"\n#include <immintrin.h>\n',
    "hash/kernels/CpuFeatures.cpp": "#if defined(__x86_64__)\n#include <cpuid.h>\n#endif\n",
    "hash/kernels/KernelSelect.cpp": "#ifdef __aarch64__\n#endif\n",
    "support/Text.h": '#include "platform/File.h"\n#if defined(__GNUC__)\n#endif\n',
    "platform/File.h": "// <windows.h> is for the other side\n",
    "platform/Descriptors_Posix.h": "#include <unistd.h>\n",
    "platform/File_Posix.cpp": '#include "platform/Descriptors_Posix.h"\n#include <fcntl.h>\n#ifdef __linux__\n#endif\n',
    "platform/File_Windows.cpp": "#include <windows.h>\n",
    "tests/app/Main_test.cpp": '#include "tests/helpers/Scratch.h"\n#include "app/Usage.h"\n#include <gtest/gtest.h>\n',
    "tests/helpers/Scratch.h": "#include <filesystem>\n",
    "tests/oracle/Md5_test.cpp": "#include <gcrypt.h>\n",
    "tests/emulated/include/immintrin.h": "#include <simde/x86/avx512.h>\n",
    "tests/fakes/Process.h": '#include "tests/helpers/Scratch.h"\n',
    "tests/reference/Md5.h": '#include "tests/helpers/Scratch.h"\n',
    "fuzz/Md5.cpp": '#include "hash/kernels/Md5.h"\n#include "tests/reference/Md5.h"\n',
    "bench/Md5_bench.cpp": '#include <benchmark/benchmark.h>\n#include "hash/kernels/Md5.h"\n',
}

# A file, the line added at its end, and a part of the message that names the breach.
BREACHES = [
    ("platform/File.h", '#include "support/Text.h"', 'platform must not include "support/Text.h"'),
    ("platform/File_Posix.cpp", '#include "crypto/Engine.h"', 'platform must not include "crypto/Engine.h"'),
    ("support/Text.h", '#include "crypto/Engine.h"', 'support must not include "crypto/Engine.h"'),
    ("support/Text.h", '#include "app/Usage.h"', 'support must not include "app/Usage.h"'),
    ("crypto/Engine.h", '#include "app/Usage.h"', 'crypto must not include "app/Usage.h"'),
    ("hash/kernels/Md5.h", '#include "crypto/Engine.h"', 'hash/kernels must not include "crypto/Engine.h"'),
    ("hash/kernels/Md5.h", '#include "platform/File.h"', 'hash/kernels must not include "platform/File.h"'),
    ("app/Usage.h", '#include "hash/kernels/Md5.h"', 'app must not include "hash/kernels/Md5.h"'),
    ("app/Usage.h", '#include "tests/helpers/Scratch.h"', 'app must not include "tests/helpers/Scratch.h"'),
    ("fuzz/Md5.cpp", '#include "tests/fakes/Process.h"', "fuzz must not include"),
    ("bench/Md5_bench.cpp", '#include "tests/helpers/Scratch.h"', "bench must not include"),
    ("app/Usage.h", '  #  include   "Usage.h"', '"Usage.h" is no file of the project'),
    ("platform/File_Posix.cpp", '#include "platform/Missing.h"', '"platform/Missing.h" is no file'),
    ("platform/File_Windows.cpp", '#include "platform/Descriptors_Posix.h"', "is for Posix only"),
    ("platform/File.h", '#include "platform/Descriptors_Posix.h"', "is for Posix only"),
    ("platform/File.h", "#include <windows.h>", "<windows.h> is no standard header"),
    ("app/Main.cpp", "#include <unistd.h>", "<unistd.h> is no standard header"),
    ("app/Main.cpp", "#include <gtest/gtest.h>", "<gtest/gtest.h> is no standard header"),
    ("tests/app/Main_test.cpp", "#include <gcrypt.h>", "<gcrypt.h> is no standard header"),
    ("tests/app/Main_test.cpp", "#include <simde/x86/avx512.h>", "<simde/x86/avx512.h> is no standard header"),
    ("tests/helpers/Scratch.h", "#include <sys/stat.h>", "<sys/stat.h> is no standard header"),
    ("hash/kernels/Md5.h", "#include <immintrin.h>", "<immintrin.h> belongs to the kernels of one processor"),
    ("hash/kernels/Md5_X86Avx2.cpp", "#include <unistd.h>", "<unistd.h> is no standard header"),
    ("app/Main.cpp", "#ifdef _WIN32\n#endif", "condition on the system (_WIN32)"),
    ("support/Text.h", "#if 1 && \\\n    defined(__linux__)\n#endif", "condition on the system (__linux__)"),
    ("support/Text.h", "#if 0\n#elif __has_include(<unistd.h>)\n#endif", "condition on the system (__has_include)"),
    ("tests/app/Main_test.cpp", "#ifndef __APPLE__\n#endif", "condition on the system (__APPLE__)"),
    ("hash/kernels/Md5_X86Avx2.cpp", "#ifdef __AVX2__\n#endif", "condition on the processor (__AVX2__)"),
    ("platform/File_Posix.cpp", "#if defined(__x86_64__)\n#endif", "condition on the processor (__x86_64__)"),
]


def run_checker(root):
    result = subprocess.run([sys.executable, CHECKER, root], capture_output=True, text=True, check=False)
    return result.returncode, result.stdout.splitlines()


class CheckLayers(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        for name, text in CLEAN.items():
            self.write(name, text)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def test_a_tree_that_keeps_the_rules_passes(self):
        self.assertEqual(run_checker(self.root), (0, []))

    def test_every_breach_is_named_with_its_place(self):
        for name, line, message in BREACHES:
            with self.subTest(file=name, line=line):
                self.write(name, CLEAN[name] + line + "\n")
                status, report = run_checker(self.root)
                self.write(name, CLEAN[name])
                self.assertEqual(status, 1)
                self.assertEqual(len(report), 1, report)
                self.assertIn(message, report[0])
                self.assertRegex(report[0], rf"^{name}:\d+: ")

    def test_the_line_number_is_that_of_the_breach(self):
        self.write("app/Usage.h", "#pragma once\n\n#include <windows.h>\n")
        self.assertEqual(run_checker(self.root)[1][0].split(": ")[0], "app/Usage.h:3")

    def test_every_breach_of_a_tree_is_reported(self):
        self.write("app/Usage.h", "#include <windows.h>\n#include <unistd.h>\n")
        self.write("support/Text.h", '#include "app/Usage.h"\n')
        status, report = run_checker(self.root)
        self.assertEqual((status, len(report)), (1, 3))

    def test_a_folder_without_sources_does_not_pass(self):
        with tempfile.TemporaryDirectory() as empty:
            self.assertEqual(run_checker(empty)[0], 1)


if __name__ == "__main__":
    unittest.main()
