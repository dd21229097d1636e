// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace kinovane::test {

/// What this process has open and running, to be compared before and after.
struct ProcessCounts {
    std::size_t descriptors = 0;
    std::size_t threads = 0;
    std::size_t children = 0; ///< Zombies included.

    bool operator==(const ProcessCounts&) const = default;
};

ProcessCounts countProcess();

/// A thread that has just been joined may still be listed for an instant: counts until they are as expected,
/// or until the time is over, and gives the last counts.
ProcessCounts settledCounts(const ProcessCounts& expected,
                            std::chrono::milliseconds patience = std::chrono::seconds(10));

} // namespace kinovane::test
