# SPDX-License-Identifier: MIT
"""CRCs with many polynomials, compared with a CRC that is computed bit by bit."""
import random
import unittest

from expected import crc
from launcher import ScratchCase

SEED = 163264
DIGITS = b"123456789"
WIDTHS = (16, 32, 64)


class CrcPolynomials(ScratchCase):
    def expect(self, digest, width, *options, message=DIGITS):
        self.write("file", message)
        result = self.fyrn("-verbosity=1", f"-hash=CRC-{width}", *options, "file")
        self.assert_lines(result, f"Hashes: CRC-{width} ", "", "  " + digest)

    def test_option_0580_gives_the_crc_16_polynomial_8005(self):
        self.expect("c284", 16, "-poly16=0x0580")

    def test_empty_file_gives_zero_for_every_polynomial(self):
        for width in WIDTHS:
            zeros = "0" * (width // 4)
            self.expect(zeros, width, message=b"")
            self.expect(zeros, width, f"-poly{width}=0x{zeros}", message=b"")
            self.expect(zeros, width, f"-poly{width}=0x" + "f" * (width // 4), message=b"")

    def test_random_polynomials_agree_with_the_bitwise_crc(self):
        source = random.Random(SEED)
        for case in range(60):
            width = WIDTHS[case % 3]
            polynomial = source.choice((0, 1, 0x7FFF, source.getrandbits(16), source.getrandbits(16)))
            message = source.randbytes(source.randrange(600))
            text = polynomial.to_bytes(2, "little").hex() + "0" * (width // 4 - 4)
            with self.subTest(seed=SEED, case=case):
                self.expect(crc(message, width, polynomial, 0xFFFF), width, f"-poly{width}=0x{text}",
                            message=message)

    def test_salt_is_part_of_the_message(self):
        self.write("salt", b"ab")
        self.expect("023201d1", 32, "-salt=salt", "-salttype=before")
        self.expect("71a78e97", 32, "-salt=salt", "-salttype=both")
        self.expect(crc(DIGITS + b"ab", 16, 0x0123, 0xFFFF), 16, "-salt=salt", "-salttype=after",
                    "-poly16=0x2301")


if __name__ == "__main__":
    unittest.main()
