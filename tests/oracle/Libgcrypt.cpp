// SPDX-License-Identifier: MIT
#include "tests/oracle/Libgcrypt.h"

#include <algorithm>
#include <stdexcept>

namespace oracle {
namespace {

// The library is set up by the first question for its version.
void SetUp() {
    if (gcry_check_version(nullptr) == nullptr)
        throw std::runtime_error("libgcrypt cannot be used");
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
}

void Require(gcry_error_t error) {
    if (error != 0)
        throw std::runtime_error(gcry_strerror(error));
}

} // namespace

helpers::Bytes Digest(int algorithm, std::span<const std::uint8_t> message, std::size_t length) {
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0)
        SetUp();
    gcry_md_hd_t handle;
    Require(gcry_md_open(&handle, algorithm, 0));
    gcry_md_write(handle, message.data(), message.size());
    helpers::Bytes digest(length != 0 ? length : gcry_md_get_algo_dlen(algorithm));
    if (length != 0)
        Require(gcry_md_extract(handle, algorithm, digest.data(), digest.size()));
    else
        std::copy_n(gcry_md_read(handle, algorithm), digest.size(), digest.data());
    gcry_md_close(handle);
    return digest;
}

} // namespace oracle
