// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace fyrn::hash {

// The name of the candidate that is in use.
template <class Candidate, class Function>
const char* KernelName(std::span<const Candidate> candidates, Function* chosen) {
    for (const Candidate& candidate : candidates)
        if (candidate.function == chosen)
            return candidate.name;
    return "";
}

} // namespace fyrn::hash
