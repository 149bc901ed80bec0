// SPDX-License-Identifier: MIT
#include "tests/reference/Crc.h"

#include "tests/helpers/KernelSuite.h"

#include <memory>

namespace {

// A kernel for any width: the register of the reference has the polynomial's.
struct CrcFamily {
    struct State {
        std::uint64_t crc;
        std::uint64_t polynomial;
        std::uint64_t width;
        bool operator==(const State&) const = default;
    };

    static constexpr const char* name = "Crc";
    static constexpr std::size_t blockSize = 1;
    static constexpr std::size_t maxBlocks = 1200;

    static auto Candidates() { return fyrn::kernels::KernelCandidates().crc; }

    static void Run(fyrn::kernels::CrcBytes* kernel, State& state, const std::uint8_t* bytes,
                    std::size_t count) {
        state.crc = kernel(Tables(state.polynomial), state.crc, bytes, count);
    }

    static void Reference(State& state, const std::uint8_t* bytes, std::size_t count) {
        state.crc = reference::CrcRegister(static_cast<unsigned int>(state.width), state.polynomial,
                                           state.crc, {bytes, count});
    }

    // Every width in turn, with polynomials of which one in four has some property that fast kernels fear: 0, 1,
    // no constant term (the highest bit is zero).
    static State RandomState(std::uint64_t seed) {
        const helpers::Bytes random = helpers::PseudoRandomBytes(16, seed);
        State state;
        std::memcpy(&state, random.data(), random.size());
        state.width = std::uint64_t{16} << seed % 3;
        const std::uint64_t mask = ~std::uint64_t{0} >> (64 - state.width);
        const std::uint64_t special[] = {0, 1, state.polynomial & mask >> 1, mask};
        state.polynomial = seed % 16 < 4 ? special[seed % 16] : state.polynomial & mask;
        state.crc &= mask;
        return state;
    }

    // The tables of the polynomial used last are kept.
    static const fyrn::kernels::CrcTables& Tables(std::uint64_t polynomial) {
        static std::uint64_t known = 0;
        static std::unique_ptr<fyrn::kernels::CrcTables> tables;
        if (tables == nullptr || known != polynomial) {
            tables = std::make_unique<fyrn::kernels::CrcTables>();
            for (unsigned int b = 0; b < 256; ++b) {
                const std::uint8_t byte[] = {static_cast<std::uint8_t>(b)};
                tables->slices[0][b] = reference::CrcRegister(64, polynomial, 0, byte);
            }
            fyrn::kernels::Crc_CompleteTables(*tables);
            known = polynomial;
        }
        return *tables;
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Crc, KernelSuite, CrcFamily, helpers::FamilyNames);

// Check values of the catalogue of parametrised CRC algorithms, for the digits 1 to 9: CRC-16/ARC, CRC-32/ISO-HDLC,
// CRC-32/ISCSI, CRC-64/GO-ISO and CRC-64/XZ.
TEST(CrcBytes, GiveTheCheckValuesOfTheCatalogue) {
    struct Row {
        std::uint64_t polynomial, start, final, check;
    };
    const Row rows[] = {{0xa001, 0, 0, 0xbb3d},
                        {0xedb88320, 0xffffffff, 0xffffffff, 0xcbf43926},
                        {0x82f63b78, 0xffffffff, 0xffffffff, 0xe3069283},
                        {0xd800000000000000, ~0ull, ~0ull, 0xb90956c775a41001},
                        {0xc96c5795d7870f42, ~0ull, ~0ull, 0x995dc9bbdf1939fa}};
    const helpers::Bytes digits = helpers::BytesOf("123456789");
    for (const Row& row : rows)
        for (const auto& candidate : helpers::RunnableCandidates<CrcFamily>()) {
            const std::uint64_t crc = candidate.function(CrcFamily::Tables(row.polynomial), row.start,
                                                         digits.data(), digits.size());
            EXPECT_EQ(crc ^ row.final, row.check) << candidate.name << ", " << std::hex << row.polynomial;
        }
}

TEST(CrcTables, HoldInEverySliceWhatMoreZeroBytesMakeOfAByte) {
    const std::uint64_t polynomial = 0xc96c5795d7870f42;
    const fyrn::kernels::CrcTables& tables = CrcFamily::Tables(polynomial);
    for (std::size_t k = 0; k < 16; ++k)
        for (unsigned int b = 0; b < 256; ++b) {
            helpers::Bytes message(1 + k, 0);
            message[0] = static_cast<std::uint8_t>(b);
            ASSERT_EQ(tables.slices[k][b], reference::CrcRegister(64, polynomial, 0, message));
        }
}

TEST(CrcBytes, EverySplitOfUpTo260BytesIntoTwoCallsGivesTheSameRegister) {
    const std::uint64_t polynomial = 0xd800000000000000;
    const helpers::Bytes message = helpers::PseudoRandomBytes(260, 260);
    for (const auto& candidate : helpers::RunnableCandidates<CrcFamily>())
        for (std::size_t length = 0; length <= message.size(); ++length) {
            const std::uint64_t whole =
                reference::CrcRegister(64, polynomial, ~0ull, {message.data(), length});
            for (std::size_t first = 0; first <= length; ++first) {
                const fyrn::kernels::CrcTables& tables = CrcFamily::Tables(polynomial);
                const std::uint64_t middle = candidate.function(tables, ~0ull, message.data(), first);
                ASSERT_EQ(candidate.function(tables, middle, message.data() + first, length - first), whole)
                    << candidate.name << ", " << first << " of " << length << " bytes first";
            }
        }
}

} // namespace
