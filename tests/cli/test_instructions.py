# SPDX-License-Identifier: MIT
"""Instructions that not every 64-bit x86 processor has stand in the kernels that ask for them, and nowhere else."""
import collections
import platform
import re
import shutil
import subprocess
import unittest

from launcher import INSTRUMENTED, PROGRAM

KERNEL = re.compile(r"fyrn::kernels::\w+_X86\w+\(")

# By their names: the three-operand forms of AVX and AVX-512 all begin with v, BMI1 and BMI2, SHA, PCLMULQDQ, and what
# SSE3 to SSE4.2 added. (BSF with a prefix is TZCNT on newer processors, and meant to run on both.)
NEWER = re.compile(
    r"v(?!err|erw|m(call|func|launch|resume|xoff|read|write))\w+|k(mov|or|and|xor|not|add|shift|unpck|test)\w*"
    r"|andn|bextr|blsi|blsr|blsmsk|bzhi|mulx|pdep|pext|rorx|sarx|shlx|shrx|lzcnt|popcnt|crc32[bwlq]?|adcx|adox|movbe"
    r"|sha(1|256)\w+|pclmul\w+|aes\w+|gf2p8\w+"
    r"|addsubp[sd]|haddp[sd]|hsubp[sd]|lddqu|mov(d|sh|sl)dup"
    r"|pshufb|palignr|ph(add|sub)\w+|pmaddubsw|pmulhrsw|psign[bwd]|pabs[bwd]"
    r"|p?blend\w+|dpp[sd]|extractps|insertps|movntdqa|mpsadbw|packusdw|pcmpeqq|pcmpgtq|pextr[bdq]|pinsr[bdq]"
    r"|phminposuw|p(max|min)(sb|sd|ud|uw)|pmov[sz]x\w+|pmuldq|pmulld|ptest|round[ps][sd]|pcmp[ei]str[im]")

INSTRUCTION = re.compile(r"^\s+(?:(?:lock|rep|repz|repnz|data16|cs|notrack|bnd|rex\S*) )*([a-z]\w*)")


def newer_instructions():
    """Function -> the newer instructions in it."""
    listing = subprocess.run(["objdump", "--disassemble", "--demangle", "--no-show-raw-insn", "--no-addresses", PROGRAM],
                             check=True, capture_output=True, text=True).stdout
    found, function = collections.defaultdict(set), None
    for line in listing.splitlines():
        if start := re.match(r"^(?:[0-9a-f]+ )?<(.*)>:$", line):
            function = start[1]
            found[function] |= set()
        elif (instruction := INSTRUCTION.match(line)) and NEWER.fullmatch(instruction[1]):
            found[function].add(instruction[1])
    return found


@unittest.skipIf(INSTRUMENTED, "for the program as it is used; the listing of another takes minutes")
@unittest.skipUnless(platform.machine() in ("x86_64", "AMD64"), "for 64-bit x86 processors")
@unittest.skipUnless(shutil.which("objdump"), "needs objdump")
class Instructions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.found = newer_instructions()

    def test_the_listing_is_that_of_the_program(self):
        self.assertTrue([name for name in self.found if name.startswith("ProcessFile(")], "ProcessFile is missing")

    def test_newer_instructions_stand_in_kernels_only(self):
        elsewhere = {name: sorted(used) for name, used in self.found.items() if used and not KERNEL.match(name)}
        self.assertEqual(elsewhere, {})

    def test_every_kernel_for_newer_processors_uses_them(self):
        kernels = {name: used for name, used in self.found.items() if KERNEL.match(name)}
        self.assertGreaterEqual(len(kernels), 8)
        self.assertEqual([name for name, used in kernels.items() if not used], [])

    def test_portable_kernels_are_there(self):
        portable = [name for name in self.found if re.match(r"fyrn::kernels::\w+_Portable\(", name)]
        self.assertGreaterEqual(len(portable), 14)


if __name__ == "__main__":
    unittest.main()
