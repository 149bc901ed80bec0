# SPDX-License-Identifier: MIT
"""Every kernel's row names all that the kernel asks of the processor.

The library of kernels is disassembled, and the extensions of the instructions in each kernel, and in what it calls, are
compared with the features that its row of candidates needs. An instruction that no table here knows fails.
"""
import collections
import os
import pathlib
import re
import subprocess
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
KERNELS = PROJECT / "hash" / "kernels"
LIBRARY = os.environ["FYRN_KERNELS_LIBRARY"]

SSE41 = {"sse3", "ssse3", "sse4.1"}
AVX2 = {"avx", "avx2"}
BMI = {"bmi1", "bmi2"}
AVX512 = {"avx512f", "avx512bw", "avx512dq", "avx512vl"}

# Feature of CpuFeatures.h -> the extensions that come with it.
GRANTS = {
    "none": set(),
    "ssse3": SSE41,
    "pclmul": SSE41 | {"pclmul"},
    "sha": SSE41 | {"sha"},
    "bmi": BMI,
    "avx2": AVX2,
    "avx512": AVX512 | AVX2 | BMI,
    "avx512vbmi": AVX512 | AVX2 | BMI | {"avx512vbmi"},
    "gfni": SSE41 | {"gfni"},
    "vpclmul": AVX2 | {"vpclmul"},
}
# ... and those that show that it is needed at all.
OWN = {"ssse3": SSE41, "pclmul": {"pclmul"}, "sha": {"sha"}, "bmi": BMI, "avx2": AVX2, "avx512": AVX512,
       "avx512vbmi": {"avx512vbmi"}, "gfni": {"gfni"}, "vpclmul": {"vpclmul"}}

# The compiler's name of a target -> the extensions that it may then use.
TARGETS = {"sse4.1": SSE41, "pclmul": {"pclmul"}, "sha": {"sha"}, "bmi": {"bmi1"}, "bmi2": {"bmi2"}, "avx2": AVX2,
           **{name: {name} for name in (*AVX512, "avx512vbmi", "gfni")}, "vpclmulqdq": {"vpclmul"}}


def table(**patterns):
    return {name.replace("_", "."): re.compile(pattern.replace(" ", "|")) for name, pattern in patterns.items()}


CONDITION = "(n?([abglopsz]|[abgl]e|[cp])|p[eo])"

# What a mnemonic asks for, by encoding. The first table is that of instructions without VEX and EVEX; "sse2" is what all
# 64-bit processors have. BSF with a prefix, which newer processors take for TZCNT, is meant to run on both.
LEGACY = table(
    sse2=r"adc add and bs[fr] bswap bt[crs]? call cbw cdqe? cld clc cmc cmp cqo cwde? cpuid dec div endbr64 hlt i?div"
         rf" i?mul inc int3 j{CONDITION} je jne jmp lea leave mov(abs|sxd?|zx)? neg nopw? nop not or pop push ret"
         rf" ro[lr] sa[lr] sbb set{CONDITION} sete setne cmov{CONDITION} cmove cmovne sh[lr]d? stc std stos sub test ud2"
         r" tzcnt xadd xchg xor mul rc[lr] movs[bwdq]? cmps scas lods lfence mfence sfence pause rdtsc prefetch\w+"
         r" mov[ad]q mov[au]p[sd] movdq[au] mov[dq] mov[hl]p[sd] movs[sd] movnt(dq|i|p[sd]|q) movmskp[sd] movhlps movlhps"
         r" p(add|sub)(u?s)?[bwdq] padd[us]+[bw] pand pandn por pxor psll[wdq] psrl[wdq] psra[wd] pslldq psrldq"
         r" pshufd pshuf[hl]w pshufw punpck[hl](bw|wd|dq|qdq) pack(ss(wb|dw)|uswb) pcmp(eq|gt)[bwd] pmull?w pmulh[u]?w"
         r" pmuludq pmaddwd pavg[bw] pm(ax|in)(ub|sw) pmovmskb pextrw pinsrw psadbw maskmovdqu"
         r" (and|andn|or|xor|add|sub|mul|div|max|min|sqrt|shuf|unpckh|unpckl|cmp\w*)[ps][sd] u?comis[sd] cvt\w+",
    sse3=r"addsubp[sd] h(add|sub)p[sd] lddqu mov(d|sh|sl)dup",
    ssse3=r"pshufb palignr ph(add|sub)(w|d|sw) pmaddubsw pmulhrsw psign[bwd] pabs[bwd]",
    sse4_1=r"pblend(w|vb) blendv?p[sd] dpp[sd] extractps insertps movntdqa mpsadbw packusdw pcmpeqq pextr[bdq] pinsr[bdq]"
           r" phminposuw pm(ax|in)(sb|sd|ud|uw) pmov[sz]x\w+ pmuldq pmulld ptest round[ps][sd]",
    sse4_2=r"pcmpgtq pcmp[ei]str[im] crc32",
    popcnt=r"popcnt", lzcnt=r"lzcnt", movbe=r"movbe", adx=r"adcx adox", aes=r"aes\w+",
    pclmul=r"pclmul\w+", sha=r"sha(1|256)\w+", gfni=r"gf2p8\w+", xgetbv=r"xgetbv")

# With VEX: what these say, and otherwise the instruction without its v in the table above.
VEX = table(
    bmi1=r"andn bextr blsi blsr blsmsk", bmi2=r"bzhi mulx pdep pext rorx sarx shlx shrx",
    avx512f=r"k(mov|and|andn|or|xor|xnor|not|ortest|shift[lr]|unpckbw?)w kunpckbw",
    avx512bw=r"k(mov|and|andn|or|xor|xnor|not|ortest|test|add|shift[lr])[dq] kunpck(wd|dq)",
    avx512dq=r"k(mov|and|andn|or|xor|xnor|not|ortest|test|add|shift[lr])b k(test|add)w",
    avx=r"vbroadcast(f128|s[sd]) v(extract|insert|perm2)f128 vpermilp[sd] vmaskmov\w+ vtestp[sd] vzero(upper|all)",
    avx2=r"vbroadcasti128 v(extract|insert|perm2)i128 vperm([dq]|p[sd]) vpbroadcast[bwdq] vps(llv|rlv|rav)[dq] vpblendd"
         r" vpmaskmov[dq] v?p?gather\w+",
    fma=r"vfn?m(add|sub)\w+", f16c=r"vcvtp[hs]2p[hs]", vaes=r"vaes\w+")

# With EVEX, besides AVX-512 F, and VL for less than 512 bits.
EVEX = table(
    avx512f=r"valign[dq] v(broadcast|extract|insert)[fi](32x4|64x4) vbroadcasts[sd] vmov(a|u)p[sd] vmovdq[au](32|64) vmov[dq]"
            r" vmov[hl]p[sd] vmovnt\w+ vmovs[sd] v?p(add|sub)[dq] vp(and|andn|or|xor)[dq] vpbroadcast[dq] vperm([dq]|p[sd])"
            r" vperm[it]2([dq]|p[sd]) vpermilp[sd] vpro[lr]v?[dq] vps(ll|rl|ra)v?[dq] vpshufd vpternlog[dq]"
            r" vpunpck[hl](dq|qdq) vshuf[fi](32x4|64x2) vunpck[hl]p[sd] vshufp[sd] vpmull?u?(ld|dq|udq) vpmulld vpcmp\w*[dq]"
            r" vptestn?m[dq] vpm(ax|in)[su][dq] vpabs[dq] vpblendm[dq] vblendmp[sd] vpmov(qd|dw|db|qw|qb|[sz]x(b|w)[dq]|[sz]xdq)"
            r" vp?(gather|scatter)\w+ vp(compress|expand)[dq] v(add|sub|mul|div)[ps][sd] vmovd?dup",
    avx512bw=r"vpshufb vpalignr vp(add|sub)(u?s)?[bw] vps(ll|rl|ra)v?w vps(ll|rl)dq vpunpck[hl](bw|wd) vmovdqu(8|16)"
             r" vpbroadcast[bw] vperm(i2|t2)?w vpmov[bw]2m vpmovm2[bw] vpcmp\w*[bw] vptestn?m[bw] vpmul(l|h|hu|hrs)w vpmaddwd"
             r" vpmaddubsw vpblendm[bw] vpack(ss|us)(wb|dw) vpshuf[hl]w vpabs[bw] vpm(ax|in)[su][bw] vpavg[bw] vpsadbw"
             r" vpmovwb vpmov[sz]xbw vp(insr|extr)[bw]",
    avx512dq=r"v(broadcast|extract|insert)[fi](64x2|32x8) vbroadcast[fi]32x2 vpmullq vpmov[dq]2m vpmovm2[dq]"
             r" v(and|andn|or|xor)p[sd] vp(insr|extr)[dq] vcvt\w+",
    avx512vbmi=r"vperm(i2|t2)?b vpmultishiftqb", gfni=r"vgf2p8\w+", vpclmul=r"vpclmul\w+",
    avx512cd=r"vpconflict[dq] vplzcnt[dq] vpbroadcastm\w+", avx512vbmi2=r"vpsh[lr]dv?[wdq] vp(compress|expand)[bw]",
    avx512ifma=r"vpmadd52\w+", vaes=r"vaes\w+", avx512vnni=r"vpdp\w+", avx512bitalg=r"vpopcnt[bw] vpshufbitqmb",
    avx512vpopcntdq=r"vpopcnt[dq]")
SCALAR = re.compile(r"vmov[dq]|v\w+s[sd]|vmov[hl]p[sd]|vp(insr|extr)[bwdq]|vmov(hl|lh)ps")

PREFIXES = {"lock", "rep", "repz", "repnz", "data16", "cs", "ds", "es", "ss", "fs", "gs", "notrack", "bnd", "addr32"}
LINE = re.compile(r"^\s+[0-9a-f]+:\t((?:[0-9a-f]{2} )+)\s*\t(.*)$")
FUNCTION = re.compile(r"^[0-9a-f]+ <(.*)>:$")
TARGET = re.compile(r"<(.*?)(?:\+0x[0-9a-f]+)?>$")
RELOCATION = re.compile(r"\t[0-9a-f]+: R_X86_64_\w+\t")  # which stands behind its instruction


class UnknownInstruction(Exception):
    pass


def look_up(tables, mnemonic):
    for extension, pattern in tables.items():
        if pattern.fullmatch(mnemonic):
            return extension
    return None


def extensions_of(code, mnemonic, operands):
    """What an instruction asks of the processor beyond SSE2: a set."""
    if code[0] == 0x62:
        found = look_up(EVEX, mnemonic)
        if found is None:
            raise UnknownInstruction(f"with EVEX: {mnemonic} {operands}")
        full = code[3] >> 5 & 3 == 2 or SCALAR.fullmatch(mnemonic)
        return {"avx512f", found} | (set() if full else {"avx512vl"})
    if code[0] in (0xc4, 0xc5):
        if found := look_up(VEX, mnemonic):
            return {found}
        found = look_up(LEGACY, mnemonic.removeprefix("v"))
        if found is None or not mnemonic.startswith("v"):
            raise UnknownInstruction(f"with VEX: {mnemonic} {operands}")
        wide = "ymm" in operands
        if found == "pclmul":
            return {"avx", "vpclmul" if wide else "pclmul"}
        if found in ("gfni", "aes"):
            return {"avx", found}
        return {"avx2" if wide and mnemonic.startswith(("vp", "vmpsadbw", "vmovntdqa")) else "avx"}
    found = look_up(LEGACY, mnemonic)
    if found is None:
        raise UnknownInstruction(f"{mnemonic} {operands}")
    return {found} - {"sse2"}


class Function:
    def __init__(self):
        self.used = collections.defaultdict(set)  # extension -> mnemonics
        self.calls = set()  # names


def symbol(text):
    """A function's name from a label, a target or a relocation."""
    return re.sub(r"[+-]0x[0-9a-f]+$", "", text).split(" [clone ")[0]


def disassembled():
    """Name -> Function. Parts of one function in several sections are one, as are functions of one name."""
    listing = subprocess.run(["objdump", "--disassemble", "--reloc", "--demangle", "--wide", "-M", "intel", LIBRARY],
                             check=True, capture_output=True, text=True).stdout
    functions, current = collections.defaultdict(Function), None
    for line in listing.splitlines():
        line, *relocations = RELOCATION.split(line)
        if start := FUNCTION.match(line):
            current = functions[symbol(start[1])]
        elif instruction := LINE.match(line):
            words = instruction[2].split("#")[0].split()
            while words and (words[0] in PREFIXES or words[0].startswith("rex")):
                words.pop(0)
            code = bytes.fromhex(instruction[1])
            for extension in extensions_of(code, *words[:1], " ".join(words[1:])) if words else ():
                current.used[extension].add(words[0])
            if target := TARGET.search(instruction[2]):
                current.calls.add(symbol(target[1]))
            current.calls.update(map(symbol, relocations))
    return functions


def kernel_rows():
    """(name of the row, features, kernel's name) for each candidate for x86, wherever candidates are listed."""
    rows = []
    for path in sorted((PROJECT / "hash").rglob("*.cpp")):
        for row in re.findall(r"\{\s*\"[^{}]*\}", path.read_text(encoding="utf-8")):
            if "X86(" in row:
                name, = re.findall(r"\"(\w+)\"", row)
                kernel, = re.findall(r"X86\((\w+)\)", row)
                features = set(re.findall(r"cpu::(\w+)", row))
                rows.append((f"{kernel} ({name})", features, kernel))
    return rows


def named(functions, kernel):
    return [name for name in functions if re.match(rf"fyrn::kernels::{kernel}\(", name)]


def reached(functions, start):
    """The functions that a function runs, itself included."""
    found, waiting = set(), [start]
    while waiting:
        name = waiting.pop()
        if name in functions and name not in found:
            found.add(name)
            waiting += functions[name].calls
    return found


def with_headers(source, seen):
    """The text of a source and of the kernels' headers that it includes."""
    seen.add(source)
    text = source.read_text(encoding="utf-8")
    for name in re.findall(r"#include \"hash/kernels/(\w+\.h)\"", text):
        if KERNELS / name not in seen:
            text = with_headers(KERNELS / name, seen) + text
    return text


def compiled_for(kernel):
    """The extensions that the compiler may use in a kernel, by the name from Isa.h in front of it, or another for that."""
    definition = re.compile(rf"^(ISA_\w+) [\w: ]+ {kernel}\(", re.MULTILINE)
    source, = (path for path in KERNELS.glob("*.cpp") if definition.search(path.read_text(encoding="utf-8")))
    names = dict(re.findall(r"define (ISA_\w+) (.+)", with_headers(source, set())))
    isa = definition.search(source.read_text(encoding="utf-8"))[1]
    while isa in names:
        isa = names[isa]
    return set().union(*(TARGETS[target] for target in re.fullmatch(r"ISA\(\"(.*)\"\)", isa)[1].split(",")))


def granted(features):
    return set().union(*(GRANTS[feature] for feature in features))


class Needs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.functions = disassembled()
        cls.rows = kernel_rows()

    def used(self, kernel):
        """Extension -> mnemonics."""
        start, = named(self.functions, kernel)
        used = collections.defaultdict(set)
        for name in reached(self.functions, start):
            for extension, mnemonics in self.functions[name].used.items():
                used[extension] |= mnemonics
        return used

    def test_the_listing_and_the_rows_were_read(self):
        self.assertGreaterEqual(len(self.rows), 20)
        self.assertIn("sha", self.used("Sha1_Blocks_X86Sha"))
        self.assertIn("avx512f", self.used("Md5_Blocks_X86Avx512"))
        for name, features, _ in self.rows:
            with self.subTest(name):
                self.assertLessEqual(features, set(GRANTS), "a feature that this test does not know")
                self.assertNotEqual(features, set())

    def test_every_row_needs_what_its_kernel_uses(self):
        for name, features, kernel in self.rows:
            with self.subTest(name):
                lacking = {extension: sorted(mnemonics) for extension, mnemonics in self.used(kernel).items()
                           if extension not in granted(features)}
                self.assertEqual(lacking, {})

    def test_every_row_needs_what_its_kernel_is_compiled_for(self):
        """Another compiler may use what this one did not."""
        for name, features, kernel in self.rows:
            with self.subTest(name):
                self.assertEqual(compiled_for(kernel) - granted(features), set())

    def test_every_row_needs_no_more(self):
        for name, features, kernel in self.rows:
            with self.subTest(name):
                wanted = compiled_for(kernel) | set(self.used(kernel))
                self.assertEqual([feature for feature in sorted(features) if not wanted & OWN[feature]], [])

    def test_newer_instructions_are_only_reached_through_rows(self):
        covered = set()
        for _, _, kernel in self.rows:
            covered |= reached(self.functions, *named(self.functions, kernel))
        elsewhere = {name: {extension: sorted(mnemonics) for extension, mnemonics in function.used.items()}
                     for name, function in self.functions.items() if name not in covered and function.used}
        # Where the processor is asked whether the system keeps its registers.
        elsewhere = {name: used for name, used in elsewhere.items()
                     if set(used) != {"xgetbv"} or "CpuFeatures" not in name}
        self.assertEqual(elsewhere, {})


if __name__ == "__main__":
    unittest.main()
