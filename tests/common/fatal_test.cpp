// SPDX-License-Identifier: Apache-2.0

#include "common/fatal.hpp"

#include <csignal>

#include <gtest/gtest.h>

namespace kinovane {
namespace {

TEST(FatalStopDeathTest, WritesTheMessageAndAborts) {
    EXPECT_EXIT(fatalStop("two files would be published as one"), testing::KilledBySignal(SIGABRT),
                "^two files would be published as one\n$");
}

} // namespace
} // namespace kinovane
