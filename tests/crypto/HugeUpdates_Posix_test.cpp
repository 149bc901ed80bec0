// SPDX-License-Identifier: MIT
// One update of nearly 2^32 bytes, or of more where the count has 64 bits, after a partial block: the count in bits,
// the sum with what waits in the block buffer, or the position may overflow. The same message in small pieces has
// nothing that could.
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Md6.h"
#include "crypto/CCrypto_Skein.h"
#include "tests/helpers/Bytes.h"

#include <gtest/gtest.h>

#include <climits>
#include <sys/mman.h>

namespace {

constexpr std::size_t partialBlock = 3;
constexpr std::size_t nearly32Bits = UINT_MAX - 1;
constexpr std::size_t moreThan32Bits = std::size_t{UINT_MAX} + 6;
constexpr std::size_t smallPiece = std::size_t{1} << 20;

// Zeros that take no memory: every page is the same one.
class Zeros {
  public:
    Zeros() : begin_(mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
    ~Zeros() { munmap(begin_, size); }
    Zeros(const Zeros&) = delete;
    Zeros& operator=(const Zeros&) = delete;

    bool IsThere() const { return begin_ != MAP_FAILED; }
    const unsigned char* Begin() const { return static_cast<const unsigned char*>(begin_); }

  private:
    static constexpr std::size_t size = moreThan32Bits;
    void* begin_;
};

// What a function gives for a few bytes and then `count` more, at once or in pieces of whole blocks.
template <class Start>
std::string Digest(const Zeros& zeros, std::size_t count, bool atOnce, Start start) {
    auto function = start();
    function.Update(zeros.Begin(), partialBlock);
    std::size_t left = count;
    if (!atOnce) {
        const std::size_t restOfBlock = 512 - partialBlock; // a multiple of every block's size
        function.Update(zeros.Begin(), restOfBlock);
        for (left -= restOfBlock; left > smallPiece; left -= smallPiece)
            function.Update(zeros.Begin(), smallPiece);
    }
    function.Update(zeros.Begin(), left);
    return helpers::ToHex(function.Final());
}

struct Blake2 {
    CCrypto_Blake2 engine{nullptr};
    Blake2() { engine.Blake2_Initialize(64); }
    void Update(const unsigned char* bytes, std::size_t count) { engine.Blake2_Update(bytes, count); }
    helpers::Bytes Final() {
        helpers::Bytes digest(64);
        engine.Blake2_Final(digest.data(), 64);
        return digest;
    }
};

template <class Context, auto init, auto update, auto final>
struct Skein {
    CCrypto_Skein engine{nullptr};
    Context context;
    Skein() { (engine.*init)(&context); }
    void Update(const unsigned char* bytes, std::size_t count) {
        (engine.*update)(&context, bytes, static_cast<unsigned int>(count));
    }
    helpers::Bytes Final() {
        helpers::Bytes digest(sizeof context.buffer);
        (engine.*final)(&context, digest.data());
        return digest;
    }
};

struct Md6 {
    CCrypto_Md6 engine{nullptr};
    Md6() { engine.Initialize(256, 0); }
    void Update(const unsigned char* bytes, std::size_t count) { engine.Md6_Update(bytes, 8 * count); }
    helpers::Bytes Final() {
        engine.Md6_Final();
        return {engine.HashValue(), engine.HashValue() + 32};
    }
};

using Skein256 = Skein<CCrypto_Skein::SKEIN_256_CONTEXT, &CCrypto_Skein::Skein_256_Init,
                       &CCrypto_Skein::Skein_256_Update, &CCrypto_Skein::Skein_256_Final>;
using Skein512 = Skein<CCrypto_Skein::SKEIN_512_CONTEXT, &CCrypto_Skein::Skein_512_Init,
                       &CCrypto_Skein::Skein_512_Update, &CCrypto_Skein::Skein_512_Final>;
using Skein1024 = Skein<CCrypto_Skein::SKEIN_1024_CONTEXT, &CCrypto_Skein::Skein_1024_Init,
                        &CCrypto_Skein::Skein_1024_Update, &CCrypto_Skein::Skein_1024_Final>;

class KnownBugsOfOthersSlow : public testing::Test {
  protected:
    template <class Function>
    void ExpectNoOverflow(std::size_t count) {
        const Zeros zeros;
        ASSERT_TRUE(zeros.IsThere());
        const auto start = [] { return Function(); };
        EXPECT_EQ(Digest(zeros, count, true, start), Digest(zeros, count, false, start));
    }
};

TEST_F(KnownBugsOfOthersSlow, AnUpdateOfNearly2To32BytesAfterAPartialBlockOfSkein) {
    ExpectNoOverflow<Skein256>(nearly32Bits);
    ExpectNoOverflow<Skein512>(nearly32Bits);
    ExpectNoOverflow<Skein1024>(nearly32Bits);
}

TEST_F(KnownBugsOfOthersSlow, AnUpdateOfMoreThan2To32BytesAfterAPartialBlockOfBlake2) {
    ExpectNoOverflow<Blake2>(moreThan32Bits);
}

TEST_F(KnownBugsOfOthersSlow, AnUpdateOfMoreThan2To32BytesAfterAPartialBlockOfMd6) {
    ExpectNoOverflow<Md6>(moreThan32Bits);
}

} // namespace
