// SPDX-License-Identifier: MIT
#include "tests/reference/SaltedSponge.h"

#include "tests/reference/Keccak.h"

namespace reference {
namespace {

// Byte i of the last block of message number `count`, counted from 1; before the first message all is zero.
std::uint8_t LastBlockByte(std::size_t rate, std::uint8_t padding,
                           const std::vector<helpers::Bytes>& messages, std::size_t count, std::size_t i) {
    if (count == 0)
        return 0;
    const helpers::Bytes& message = messages[count - 1];
    const std::size_t rest = message.size() % rate;
    const std::uint8_t closing = i == rate - 1 ? 0x80 : 0;
    if (i < rest)
        return message[message.size() - rest + i] | closing;
    if (i == rest)
        return padding | closing;
    return LastBlockByte(rate, padding, messages, count - 1, i) | closing;
}

} // namespace

helpers::Bytes SaltedSponge(std::size_t rate, std::uint8_t padding,
                            const std::vector<helpers::Bytes>& messages, std::size_t length) {
    helpers::Bytes absorbed;
    for (std::size_t index = 0; index < messages.size(); ++index) {
        const helpers::Bytes& message = messages[index];
        const auto whole = static_cast<std::ptrdiff_t>(message.size() / rate * rate);
        absorbed.insert(absorbed.end(), message.begin(), message.begin() + whole);
        for (std::size_t i = 0; i < rate; ++i)
            absorbed.push_back(LastBlockByte(rate, padding, messages, index + 1, i));
    }
    KeccakState state = {};
    for (std::size_t at = 0; at < absorbed.size(); at += rate)
        KeccakAbsorb(state, absorbed.data() + at, rate / 8);
    helpers::Bytes digest;
    for (std::size_t i = 0; i < length; ++i)
        digest.push_back(static_cast<std::uint8_t>(state[i / 8] >> 8 * (i % 8)));
    return digest;
}

} // namespace reference
