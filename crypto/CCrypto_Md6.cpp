// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md6.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned int textCapacity = 1024;
constexpr int maxKeyLength = 64;
constexpr int maxDigestBits = 512;
constexpr int modeParameter = 64; // L, above the height of the stack: there is no sequential level
constexpr std::uint32_t valueBits = 1024;
constexpr std::uint32_t valueBytes = valueBits / 8;

// The first 960 bits of the fractional part of the square root of 6.
constexpr std::uint64_t constantQ[15] = {
    0x7311c2812425cfa0, 0x6432286434aac8e7, 0xb60450e9ef68b7c1, 0xe8fb23908d9f06f1, 0xdd2e76cba691e5bf,
    0x0cd0d63b2c30bc41, 0x1f8ccf6823058f8a, 0x54e5ed5b88e3775d, 0x4ad12aae0a6d6031, 0x3e7f16bb88222e0d,
    0x8af8671d3fb50c2c, 0x995ad1178bd25c31, 0xc878c1dd04c4b633, 0x3b72066c7a1552ac, 0x0d6f3522631effcb,
};

constexpr unsigned int DigestBytes(unsigned int d) {
    return (d + 7) / 8;
}

// The word U: which node of the tree it is.
std::uint64_t NodeId(int ell, std::uint64_t i) {
    return (static_cast<std::uint64_t>(ell) << 56) + i;
}

// The word V: the parameters of the hash and of the node.
std::uint64_t ControlWord(int r, int L, bool z, std::uint32_t p, int keylen, int d) {
    const auto field = [](auto value, int shift) { return static_cast<std::uint64_t>(value) << shift; };
    return field(r, 48) | field(L, 40) | field(z, 36) | field(p, 20) | field(keylen, 12) | field(d, 0);
}

bool Within(int value, int lowest, int highest) {
    return lowest <= value && value <= highest;
}

} // namespace

CCrypto_Md6::CCrypto_Md6(std::wstring*) {
    try {
        Initialize(maxDigestBits, 0);
    }
    CATCH_SITE("__cdecl CCrypto_Md6::CCrypto_Md6(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

int CCrypto_Md6::Initialize(unsigned short d, int) {
    try {
        if (!Within(d, 1, maxDigestBits))
            return md6BadDigestLength;
        d_ = d;
        std::memset(hashValue_, 0, sizeof hashValue_);
        for (Md6Level& level : levels_)
            level.Reset();
        TakeKey();
        rounds_ = 40 + d / 4;
        if (keyLength_ > 0)
            rounds_ = std::max(80, rounds_);
        top_ = 1;
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Initialize(unsigned short,int)")
    return md6Fault;
}

// The key is the head of the salt, as big-endian words, zero-padded.
void CCrypto_Md6::TakeKey() {
    unsigned char bytes[maxKeyLength] = {};
    keyLength_ = static_cast<int>(std::min<std::uint32_t>(SaltLength(), maxKeyLength));
    if (keyLength_ > 0)
        std::memcpy(bytes, SaltBytes(), static_cast<std::size_t>(keyLength_));
    for (int i = 0; i < 8; ++i)
        key_[i] = fyrn::kernels::LoadBig<std::uint64_t>(bytes + 8 * i);
}

// Full level-1 nodes are compressed straight from the data, but never the last: only the data that goes on
// behind it tells that it is not the root.
int CCrypto_Md6::Md6_Update(const unsigned char* data, std::uint64_t bitCount) {
    try {
        if (data == nullptr)
            return md6NullData;
        Md6Level& level = levels_[1];
        for (std::uint64_t position = 0; position < bitCount;) {
            const std::uint64_t rest = bitCount - position;
            int result = md6Success;
            if (level.Bits() == 0 && position % 8 == 0 && rest > Md6Level::capacity) {
                result = PassOn(1, data + position / 8, Md6Level::maxNodes, 0);
                position += Md6Level::capacity;
            } else if (level.Room() == 0) {
                result = Flush(1, Md6Level::maxNodes);
            } else {
                const auto taken = static_cast<std::uint32_t>(std::min<std::uint64_t>(rest, level.Room()));
                level.Append(data, position, taken);
                position += taken;
            }
            if (result != md6Success)
                return result;
        }
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Update(const unsigned char *,unsigned __int64)")
    return md6Fault;
}

// Compresses inner nodes, the last of them padded, and appends their chaining values to the next level.
int CCrypto_Md6::PassOn(int ell, const unsigned char* nodes, std::uint32_t count, std::uint32_t padding) {
    if (ell >= stackHeight - 1)
        return md6LevelTooHigh;
    std::uint64_t prefix[fyrn::kernels::md6PrefixWords];
    std::copy_n(key_, 8, std::copy_n(constantQ, 15, prefix));
    const auto control = [this](std::uint32_t p) {
        return ControlWord(rounds_, modeParameter, false, p, keyLength_, d_);
    };
    unsigned char values[Md6Level::maxNodes * valueBytes];
    fyrn::kernels::Kernels().md6(values, nodes, count,
                                 {.prefix = prefix,
                                  .firstId = NodeId(ell, levels_[ell].NextIndex()),
                                  .control = control(0),
                                  .lastControl = control(padding),
                                  .rounds = rounds_});
    levels_[ell].CountNodes(count);
    return AppendValues(ell + 1, values, count);
}

// A full queue is compressed only when a further value arrives: the last node of a level always stays back.
int CCrypto_Md6::AppendValues(int ell, const unsigned char* values, std::uint32_t count) {
    Md6Level& level = levels_[ell];
    top_ = std::max(top_, ell);
    while (count != 0) {
        if (level.Room() == 0)
            if (const int result = Flush(ell, Md6Level::maxNodes); result != md6Success)
                return result;
        const std::uint32_t taken = std::min(count, level.Room() / valueBits);
        level.Append(values, 0, taken * valueBits);
        values += taken * valueBytes;
        count -= taken;
    }
    return md6Success;
}

// Passes on the first nodes of a level's queue; the last node that waits is padded.
int CCrypto_Md6::Flush(int ell, std::uint32_t count) {
    Md6Level& level = levels_[ell];
    const std::uint32_t padding = count == level.Nodes() ? level.Padding() : 0;
    const int result = PassOn(ell, level.PaddedData(), count, padding);
    level.DropNodes(count);
    return result;
}

// Leaves in every level at most the one node that is not known to be complete: on level 1 the last one,
// above it a node that is not full.
int CCrypto_Md6::Settle() {
    int result = md6Success;
    if (levels_[1].Nodes() > 1)
        result = Flush(1, levels_[1].Nodes() - 1);
    for (int ell = 2; result == md6Success && ell <= top_; ++ell)
        if (levels_[ell].FullNodes() > 0)
            result = Flush(ell, levels_[ell].FullNodes());
    return result;
}

int CCrypto_Md6::Md6_Process(int ell, bool final) {
    try {
        const int result = Settle();
        return result != md6Success ? result : ProcessSettled(ell, final);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Process(int,bool)")
    return md6Fault;
}

int CCrypto_Md6::ProcessSettled(int ell, bool final) {
    if (!Within(ell, 0, stackHeight - 1))
        return ell < 0 ? md6LevelTooLow : md6LevelTooHigh;
    const Md6Level& level = levels_[ell];
    if (!final && level.FullNodes() == 0)
        return md6Success;
    const bool root = final && ell == top_;
    if (root && ell > 1 && level.Bits() == valueBits)
        return md6Success; // a single chaining value already is the root's

    std::uint64_t C[valueBytes / 8];
    if (const int result = CompressSettled(C, ell, root); result != md6Success)
        return result;
    if (root) {
        std::memcpy(hashValue_, C, sizeof hashValue_);
        return md6Success;
    }
    // Level 1 holds the bytes of a message. A chaining value that comes to it from level 0 does not take their
    // order: it stays as the words lie in memory.
    unsigned char bytes[valueBytes];
    std::memcpy(bytes, C, sizeof bytes);
    if (ell != 0)
        for (std::size_t i = 0; i < std::size(C); ++i)
            fyrn::kernels::StoreBig(bytes + 8 * i, C[i]);
    const int result = AppendValues(ell + 1, bytes, 1);
    return result != md6Success ? result : ProcessSettled(ell + 1, final);
}

int CCrypto_Md6::Md6_CompressBlock(std::uint64_t* C, int ell, bool z) {
    try {
        const int result = Settle();
        return result != md6Success ? result : CompressSettled(C, ell, z);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_CompressBlock(unsigned __int64 *,int,bool)")
    return md6Fault;
}

int CCrypto_Md6::CompressSettled(std::uint64_t* C, int ell, bool z) {
    if (!Within(ell, 0, stackHeight - 2))
        return ell < 0 ? md6LevelTooLow : md6LevelTooHigh;
    Md6Level& level = levels_[ell];
    std::uint64_t B[Md6Level::nodeBytes / 8];
    // Negative, and refused below, where level 0 has passed more up than a block holds.
    const int p = static_cast<int>(Md6Level::nodeBits) - static_cast<int>(level.Bits());
    const unsigned char* const data = level.PaddedData();
    for (std::size_t i = 0; i < std::size(B); ++i)
        B[i] = fyrn::kernels::LoadBig<std::uint64_t>(data + 8 * i);
    const int result = Md6_CompressStandard(C, constantQ, key_, ell, level.NextIndex(), rounds_,
                                            modeParameter, z, p, keyLength_, d_, B);
    if (result != md6Success)
        return result;
    level.DropNodes(level.Nodes());
    level.CountNodes(1);
    return md6Success;
}

int CCrypto_Md6::Md6_CompressStandard(std::uint64_t* C, const std::uint64_t* Q, const std::uint64_t* K,
                                      int ell, std::uint64_t i, int r, int L, bool z, int p, int keylen,
                                      int d, const std::uint64_t* B) {
    try {
        if (C == nullptr)
            return md6NullOutput;
        if (B == nullptr)
            return md6NullInput;
        if (Q == nullptr)
            return md6NullConstant;
        if (K == nullptr)
            return md6NullKey;
        if (!Within(ell, 0, 255))
            return md6BadLevel;
        if (!Within(r, 0, 255))
            return md6BadRounds;
        if (!Within(L, 0, 255))
            return md6BadMode;
        if (!Within(p, 0, Md6Level::nodeBits))
            return md6BadPadding;
        if (!Within(keylen, 0, maxKeyLength))
            return md6BadKeyLength;
        if (!Within(d, 1, maxDigestBits))
            return md6BadDigestLength;

        std::uint64_t N[fyrn::kernels::md6InputWords];
        std::uint64_t* const ids = std::copy_n(K, 8, std::copy_n(Q, 15, N));
        ids[0] = NodeId(ell, i);
        ids[1] = ControlWord(r, L, z, static_cast<std::uint32_t>(p), keylen, d);
        std::copy_n(B, 64, ids + 2);
        return Md6_Compress(C, N, r);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_CompressStandard(unsigned __int64 *,const unsigned __int64 *,"
               "const unsigned __int64 *,int,unsigned __int64,int,int,bool,int,int,int,"
               "const unsigned __int64 *)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Compress(std::uint64_t* C, const std::uint64_t* N, int r) {
    try {
        if (C == nullptr)
            return md6NullOutput;
        if (N == nullptr)
            return md6NullInput;
        if (!Within(r, 0, 255))
            return md6BadRounds;
        const std::uint64_t* const ids = N + fyrn::kernels::md6PrefixWords;
        unsigned char node[fyrn::kernels::md6NodeSize];
        unsigned char value[fyrn::kernels::md6ChainingValueSize];
        for (std::size_t i = 0; i < sizeof node / 8; ++i)
            fyrn::kernels::StoreBig(node + 8 * i, ids[2 + i]);
        fyrn::kernels::Kernels().md6(value, node, 1, {N, ids[0], ids[1], ids[1], r});
        for (std::size_t i = 0; i < sizeof value / 8; ++i)
            C[i] = fyrn::kernels::LoadBig<std::uint64_t>(value + 8 * i);
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Compress(unsigned __int64 *,const unsigned __int64 *,int)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Final() {
    try {
        const int result = FinishTree();
        if (result == md6Success) {
            StoreHashValueBig();
            TrimHashValue();
        }
        return result;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Final(void)")
    return md6Fault;
}

// Goes up from the lowest level with data. What waits on a level is the root's alone if it is a single node
// and no level is above; else all of it is passed on, padded.
int CCrypto_Md6::FinishTree() {
    int ell = 1;
    while (ell < top_ && levels_[ell].Bits() == 0)
        ++ell;
    for (; ell < top_ || levels_[ell].Nodes() > 1; ++ell)
        if (const int result = Flush(ell, levels_[ell].Nodes()); result != md6Success)
            return result;
    return ProcessSettled(ell, true);
}

// Turns the root's words into the bytes of the standard.
void CCrypto_Md6::StoreHashValueBig() {
    for (std::size_t at = 0; at < sizeof hashValue_; at += 8) {
        std::uint64_t word;
        std::memcpy(&word, hashValue_ + at, sizeof word);
        fyrn::kernels::StoreBig(hashValue_ + at, word);
    }
}

// Moves the last d bits of the hash value to its front and clears the rest.
void CCrypto_Md6::TrimHashValue() {
    const unsigned int bytes = DigestBytes(d_);
    const unsigned int shift = (8 - d_ % 8) % 8;
    std::memmove(hashValue_, hashValue_ + sizeof hashValue_ - bytes, bytes);
    std::memset(hashValue_ + bytes, 0, sizeof hashValue_ - bytes);
    for (unsigned int i = 0; i < bytes; ++i)
        hashValue_[i] = static_cast<unsigned char>((hashValue_[i] << 8 | hashValue_[i + 1]) << shift >> 8);
}

int CCrypto_Md6::HashFile(platform::InputFile& file, unsigned short d) {
    int result = Initialize(d, 0);
    if (result != md6Success)
        return result;
    const auto update = [this, &result](const unsigned char* bytes, std::size_t count) {
        if (result == md6Success)
            result = Md6_Update(bytes, std::uint64_t{count} * 8);
    };
    engine_frame::FeedSaltBefore(*this, update);
    if (result != md6Success)
        return result;
    engine_frame::FeedFile(file, engine_frame::MakeReadBuffer(readBufferSize), update);
    engine_frame::FeedSaltAfter(*this, update);
    return result != md6Success ? result : Md6_Final();
}

// Once the file is open, the result is true whatever happens to the digest: users' scripts rely on it. Only
// a fault before the digest was copied makes it false.
bool CCrypto_Md6::GetFromFile(const wchar_t* path, unsigned char* digest, int, unsigned short d, int) {
    bool copied = false;
    try {
        if (path == nullptr || digest == nullptr || DigestBytes(d) > maxDigestBits / 8)
            return false;
        platform::InputFile file = platform::OpenForReading(path);
        if (!file)
            return false;
        if (HashFile(file, d) == md6Success) {
            std::memcpy(digest, hashValue_, DigestBytes(d));
            copied = true;
        }
        platform::Close(file);
        return true;
    }
    CATCH_SITE(
        "bool __cdecl CCrypto_Md6::GetFromFile(const wchar_t *,unsigned char *,int,unsigned short,int)")
    return copied;
}

bool CCrypto_Md6::GetFromFileAsString(const wchar_t* path, char* text, unsigned int, unsigned short d, int) {
    try {
        if (path == nullptr || text == nullptr || 2 * DigestBytes(d) + 1 > textCapacity)
            return false;
        unsigned char digest[maxDigestBits / 8];
        if (!GetFromFile(path, digest, sizeof digest, d, 0))
            return false;
        HexString_FromBytes(text, textCapacity, hashValue_, DigestBytes(d));
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Md6::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
               "unsigned short,int)")
    return false;
}
