// SPDX-License-Identifier: MIT
// Messages of more than 2^32 bytes, all but the first few in one update: the count in bits, the sum with what waits in the
// buffer, or the position may overflow.
#include "tests/hash/Functions.h"
#include "tests/helpers/VectorLines.h"

#include <map>
#include <sstream>
#include <sys/mman.h>

namespace {

using hash_tests::Hash;
using hash_tests::Message;
using hash_tests::Name;

constexpr std::size_t length = (std::size_t{1} << 32) + 1;
constexpr std::size_t firstBytes = 3;
constexpr std::size_t smallPiece = std::size_t{1} << 20;

// Zeros that take no memory: every page is the same one.
class Zeros {
  public:
    Zeros() : begin_(mmap(nullptr, length, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
    ~Zeros() { munmap(begin_, length); }
    Zeros(const Zeros&) = delete;
    Zeros& operator=(const Zeros&) = delete;

    bool AreThere() const { return begin_ != MAP_FAILED; }
    Message First(std::size_t count) const { return {static_cast<const std::uint8_t*>(begin_), count}; }

  private:
    void* begin_;
};

// The digests that others computed, by function.
std::map<std::string, std::string> KnownDigests() {
    std::map<std::string, std::string> known;
    for (const std::string& line : helpers::VectorLines("zeros_4gib.txt")) {
        std::istringstream fields(line);
        std::string name, size, digest;
        fields >> name >> size >> digest;
        if (size == std::to_string(length))
            known[name] = digest;
    }
    return known;
}

// Small pieces have nothing that could overflow but the count of bytes.
std::string InSmallPieces(const fyrn_function* function, const Zeros& zeros) {
    const Hash hash = hash_tests::New(function);
    for (std::size_t left = length; left != 0; left -= std::min(left, smallPiece))
        hash_tests::Update(hash, zeros.First(std::min(left, smallPiece)));
    return hash_tests::Finish(hash);
}

TEST(HugeSlow, FourGibibytesInOneUpdate) {
    const Zeros zeros;
    ASSERT_TRUE(zeros.AreThere());
    const std::map<std::string, std::string> known = KnownDigests();
    for (const fyrn_function* function : hash_tests::AllFunctions()) {
        const Hash hash = hash_tests::New(function);
        hash_tests::Update(hash, zeros.First(firstBytes));
        hash_tests::Update(hash, zeros.First(length - firstBytes));
        const auto expected = known.find(Name(function));
        EXPECT_EQ(hash_tests::Finish(hash),
                  expected != known.end() ? expected->second : InSmallPieces(function, zeros))
            << Name(function);
    }
}

} // namespace
