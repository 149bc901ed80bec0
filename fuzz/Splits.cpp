// SPDX-License-Identifier: MIT
// Tiger's digest depends on the pieces in which a message comes: bytes that waited when a piece completed their block are
// not counted. Pieces of any size against the reference. Those of all other functions are in Functions.cpp.
// Input: number of pieces, their lengths, message.
#include "crypto/CCrypto_Tiger.h"
#include "fuzz/FuzzInput.h"
#include "tests/helpers/Bytes.h"
#include "tests/reference/Tiger.h"

#include <algorithm>
#include <vector>

namespace {

// Feeds pieces and follows what is counted of them.
class Tiger {
  public:
    Tiger() { engine_.Tiger_Initialize(); }

    void Feed(std::span<const std::uint8_t> piece) {
        engine_.Tiger_Transform(piece.data(), piece.size());
        if (fed_ % 64 + piece.size() >= 64)
            lost_ += fed_ % 64;
        fed_ += piece.size();
    }

    std::string Digest() {
        engine_.Tiger_Finalize();
        helpers::Bytes digest;
        for (std::size_t i = 0; i < 24; ++i)
            digest.push_back(static_cast<std::uint8_t>(engine_.State()[i / 8] >> (8 * (i % 8))));
        return helpers::ToHex(digest);
    }

    std::uint64_t Counted() const { return fed_ - lost_; }

  private:
    CCrypto_Tiger engine_{nullptr};
    std::uint64_t fed_ = 0;
    std::uint64_t lost_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 20'000)
        return 0;
    fuzz::Input input(data, size);
    std::vector<std::size_t> lengths(input.Take<std::uint8_t>() % 20u);
    for (std::size_t& length : lengths)
        length = input.Take<std::uint16_t>() % 2000u;
    const auto message = input.TakeRest();
    lengths.push_back(message.size());
    Tiger tiger;
    std::size_t position = 0;
    for (const std::size_t length : lengths) {
        const std::size_t count = std::min(length, message.size() - position);
        tiger.Feed(message.subspan(position, count));
        position += count;
    }
    // The padding of Tiger2, which an engine starts with.
    fuzz::RequireEqual(tiger.Digest(),
                       helpers::ToHex(reference::Tiger(message, reference::tiger2Padding, tiger.Counted())),
                       "Tiger");
    return 0;
}
