// SPDX-License-Identifier: MIT
#include "bench/adapters/Adapter.h"

#include <string>

// The optimised C code of Skein's authors. Its header is not packaged; a context takes less than the space given here.
struct SkeinContext {
    alignas(64) unsigned char space[1024];
};

extern "C" {
int Skein_256_Init(SkeinContext* context, std::size_t bits);
int Skein_256_Update(SkeinContext* context, const std::uint8_t* bytes, std::size_t count);
int Skein_256_Final(SkeinContext* context, std::uint8_t* digest);
int Skein_512_Init(SkeinContext* context, std::size_t bits);
int Skein_512_Update(SkeinContext* context, const std::uint8_t* bytes, std::size_t count);
int Skein_512_Final(SkeinContext* context, std::uint8_t* digest);
int Skein1024_Init(SkeinContext* context, std::size_t bits);
int Skein1024_Update(SkeinContext* context, const std::uint8_t* bytes, std::size_t count);
int Skein1024_Final(SkeinContext* context, std::uint8_t* digest);
}

namespace {

struct Algorithm {
    const char* name;
    std::size_t bits;
    int (*init)(SkeinContext*, std::size_t);
    int (*update)(SkeinContext*, const std::uint8_t*, std::size_t);
    int (*final)(SkeinContext*, std::uint8_t*);
};

constexpr Algorithm algorithms[] = {
    {"256", 256, Skein_256_Init, Skein_256_Update, Skein_256_Final},
    {"512", 512, Skein_512_Init, Skein_512_Update, Skein_512_Final},
    {"1024", 1024, Skein1024_Init, Skein1024_Update, Skein1024_Final},
};

bool Print(const Algorithm& algorithm, const char* path) {
    SkeinContext context;
    algorithm.init(&context, algorithm.bits);
    if (!adapter::FeedFile(path, [&](const std::uint8_t* bytes, std::size_t count) {
            algorithm.update(&context, bytes, count);
        }))
        return false;
    std::uint8_t digest[128];
    algorithm.final(&context, digest);
    adapter::PrintHex(digest, algorithm.bits / 8);
    return true;
}

} // namespace

// usage: adapter_skein 256|512|1024 FILE
int main(int argc, char* argv[]) {
    if (argc == 3)
        for (const Algorithm& algorithm : algorithms)
            if (algorithm.name == std::string(argv[1]))
                return Print(algorithm, argv[2]) ? 0 : 1;
    return 2;
}
