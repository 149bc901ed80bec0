// SPDX-License-Identifier: MIT
// Makes allocations fail: the programs that link this have an operator new that can refuse.
#pragma once

#include <cstddef>

namespace fakes {

// While it lives, every allocation of exactly `size` bytes throws std::bad_alloc.
class FailingAllocation {
  public:
    explicit FailingAllocation(std::size_t size);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

} // namespace fakes
