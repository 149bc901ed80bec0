// SPDX-License-Identifier: MIT
// Many messages side by side: messages of any length fill the lanes of a kernel, which runs for the shortest of them;
// lanes that are done take the next message.
//
// A stream class takes part with these members, of which its Update is made, too:
//
//   using LaneState = ...;                         // what a lane kernel changes; a plain struct or word
//   static constexpr std::size_t laneStateSize;    // how many of them a message has
//   LaneState* State();
//   std::size_t Head(bytes, count);                // completes the buffer; returns the bytes taken. If it does not take
//                                                  // all, the buffer is empty
//   std::size_t WholeBlocks(count) const;          // how many blocks behind the head can be compressed where they are
//   void Compressed(blocks);                       // counts them
//   void Tail(bytes, count);                       // keeps what is left
//   static auto Lanes();                           // the lane kernels (LaneSelect.h)
//   void CompressAlone(blocks, count);
//   void CompressLanes(const kernels::LaneCandidate<...>& kernel, states, blocks, count) const; // `this` is any of
//                                                  // the streams: they are of one kind
#pragma once

#include "hash/kernels/LaneSelect.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

inline constexpr std::size_t maxLaneJobs = 128; // messages at a time; bounds what stands on the stack
inline constexpr std::size_t maxLanes = 64;     // of any kernel

// The whole blocks of one message that are left to compress.
template <class Stream>
struct LaneJob {
    Stream* stream;
    const std::uint8_t* blocks;
    std::size_t count;
};

// Runs lane kernels while there are jobs enough for one to pay. The longest jobs begin, so that few are left in the end.
template <class Stream>
class LaneScheduler {
  public:
    // Compresses all blocks of up to maxLaneJobs jobs. The order of the jobs changes.
    static void Run(LaneJob<Stream>* jobs, std::size_t count) {
        std::sort(jobs, jobs + count, [](const auto& a, const auto& b) { return a.count > b.count; });
        while (count != 0) {
            const auto* const kernel = kernels::ChooseLanes(Stream::Lanes(), count);
            if (kernel == nullptr)
                break;
            count = Step(*kernel, jobs, count);
        }
        for (std::size_t i = 0; i < count; ++i)
            jobs[i].stream->CompressAlone(jobs[i].blocks, jobs[i].count);
    }

  private:
    using State = typename Stream::LaneState;

    // Compresses as many blocks of the first jobs as the shortest of them has. Returns how many jobs are left; they stand
    // at the front, and those that wait move up in their order.
    template <class Candidate>
    static std::size_t Step(const Candidate& kernel, LaneJob<Stream>* jobs, std::size_t count) {
        const std::size_t busy = std::min(kernel.lanes, count);
        std::size_t blockCount = jobs[0].count;
        for (std::size_t i = 1; i < busy; ++i)
            blockCount = std::min(blockCount, jobs[i].count);

        State idle[Stream::laneStateSize] = {};
        State* states[maxLanes];
        const std::uint8_t* blocks[maxLanes];
        for (std::size_t i = 0; i < kernel.lanes; ++i) {
            states[i] = i < busy ? jobs[i].stream->State() : idle;
            blocks[i] = jobs[i < busy ? i : 0].blocks;
        }
        jobs[0].stream->CompressLanes(kernel, states, blocks, blockCount);
        for (std::size_t i = 0; i < busy; ++i) {
            jobs[i].stream->Compressed(blockCount);
            jobs[i].blocks += blockCount * jobs[i].stream->BlockSize();
            jobs[i].count -= blockCount;
        }
        const auto isDone = [](const LaneJob<Stream>& job) { return job.count == 0; };
        return static_cast<std::size_t>(std::remove_if(jobs, jobs + count, isDone) - jobs);
    }
};

// Takes in data[i] by streams[i]. No stream may stand there twice; count is at most maxLaneJobs.
template <class Stream>
void UpdateSideBySide(Stream* const streams[], const std::uint8_t* const data[], const std::size_t sizes[],
                      std::size_t count) {
    LaneJob<Stream> jobs[maxLaneJobs];
    std::size_t jobCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t head = streams[i]->Head(data[i], sizes[i]);
        const std::size_t whole = streams[i]->WholeBlocks(sizes[i] - head);
        const std::size_t tail = head + whole * streams[i]->BlockSize();
        if (whole != 0)
            jobs[jobCount++] = {streams[i], data[i] + head, whole};
        streams[i]->Tail(data[i] + tail, sizes[i] - tail);
    }
    LaneScheduler<Stream>::Run(jobs, jobCount);
}

} // namespace fyrn::hash
