// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace helpers {

// Names the instances of a typed test suite after their families.
struct FamilyNames {
    template <class Family>
    static std::string GetName(int) {
        return Family::name;
    }
};

} // namespace helpers
