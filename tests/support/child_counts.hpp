// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace kinovane::test {

/// The numbers of descriptors, threads and children of this process, to compare before and after.
struct ProcessCounts {
    std::size_t descriptors = 0;
    std::size_t threads = 0;
    std::size_t children = 0; ///< Zombies included.

    bool operator==(const ProcessCounts&) const = default;
};

ProcessCounts countProcess();

/// Counts until the numbers are as expected or the time has passed, and returns the last counts: a thread may
/// be listed for a short time after it was joined.
ProcessCounts settledCounts(const ProcessCounts& expected,
                            std::chrono::milliseconds timeout = std::chrono::seconds(10));

} // namespace kinovane::test
