// SPDX-License-Identifier: MIT
#include "hash/Md6Compression.h"

#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

namespace fyrn::hash {

// The kernel takes a node's words, and gives those of its value, as bytes.
void Md6Compress(std::uint64_t* value, const std::uint64_t* input, int rounds) {
    const std::uint64_t* const ids = input + kernels::md6PrefixWords;
    std::uint8_t node[kernels::md6NodeSize];
    std::uint8_t bytes[kernels::md6ChainingValueSize];
    for (std::size_t i = 0; i < sizeof node / 8; ++i)
        kernels::StoreBig(node + 8 * i, ids[2 + i]);
    kernels::Kernels().md6(
        bytes, node, 1,
        {.prefix = input, .firstId = ids[0], .control = ids[1], .lastControl = ids[1], .rounds = rounds});
    for (std::size_t i = 0; i < sizeof bytes / 8; ++i)
        value[i] = kernels::LoadBig<std::uint64_t>(bytes + 8 * i);
}

} // namespace fyrn::hash
