// SPDX-License-Identifier: MIT
// Reading small files into the system's cache before their turn comes. From a cold disk that is several times as fast as
// one file after the other; where files are cached it would only cost time. So reads are timed now and then, and files
// are announced only after slow ones.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

namespace platform {

class ReadPace {
  public:
    // Whether the first read of the next file is to be timed. One in eight is: what that costs cannot be measured.
    bool IsTimed() { return files_.fetch_add(1, std::memory_order_relaxed) % 8 == 0; }

    // Takes in how long a file's first read took, and what it gave.
    void Add(std::chrono::nanoseconds time, std::size_t bytes);

    // Whether one more file is to be announced: true for the next 256 after a slow read. Where announcing helps, reads
    // are fast again; then one slow read every few hundred files keeps it going.
    bool TakeFile();

  private:
    std::atomic<unsigned> files_{0};
    std::atomic<int> left_{0};
};

inline ReadPace readPace; // of all files of the process

// How many files ahead the system is told of. More of them keep the first one waiting.
inline constexpr std::size_t filesAhead = 64;

// Asks the system to begin reading a regular file of this name. What fails is passed over in silence.
void Announce(const char* path);

} // namespace platform
