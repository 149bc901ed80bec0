// SPDX-License-Identifier: MIT
// The main program of tests that can be run as on a lesser processor (CpuLevel.h).
#include "tests/helpers/CpuLevel.h"

#include <gtest/gtest.h>

int main(int argc, char* argv[]) {
    fyrn::kernels::LimitCpuFeatures(helpers::CpuFeaturesOfLevel(helpers::CpuLevel()));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
