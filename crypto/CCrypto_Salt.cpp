// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Salt.h"

#include "platform/File.h"
#include "support/ExceptionReporter.h"

namespace {

constexpr std::int64_t maxSaltSize = 10'000'000;

} // namespace

unsigned int CCrypto_Salt::SetSalt_FromFile(const wchar_t* path, EnumSaltType placement) {
    try {
        ClearSalt();
        placement_ = placement;
        length_ = 0;
        platform::InputFile file;
        if (path != nullptr)
            file = platform::OpenForReading(path);
        if (!file)
            return 0;
        const std::int64_t size = platform::SizeOf(file);
        if (size > 0 && size <= maxSaltSize) {
            const auto wanted = static_cast<std::uint32_t>(size);
            bytes_ = new unsigned char[wanted];
            if (platform::ReadFully(file, bytes_, wanted) == wanted)
                length_ = wanted;
            else
                ClearSalt();
        }
        platform::Close(file);
    }
    CATCH_SITE("unsigned int __cdecl CCrypto_Salt::SetSalt_FromFile(const wchar_t *,enum EnumSaltType)")
    return length_;
}

void CCrypto_Salt::ClearSalt() {
    delete[] bytes_;
    bytes_ = nullptr;
}

bool CCrypto_Salt::FeedsBefore() const {
    return SaltLength() != 0 && (placement_ == EnumSaltType::Before || placement_ == EnumSaltType::Both);
}

bool CCrypto_Salt::FeedsAfter() const {
    return SaltLength() != 0 && (placement_ == EnumSaltType::After || placement_ == EnumSaltType::Both);
}
