// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <system_error>
#include <thread>

#include "support/child_counts.hpp"
#include "support/sanitizers.hpp"

namespace kinovane::test {

inline constexpr std::size_t restingThreads = underThreadSanitizer ? 2 : 1;

/// What this process has while no operation runs, once the threads of earlier operations have gone: a thread
/// may be listed for an instant after it was joined, and longer when nobody waits for it.
inline ProcessCounts restingCounts() {
    try {
        std::thread([] {}).join();
    } catch (const std::system_error&) {
        return countProcess(); // Where none can be started, none is on its way out.
    }
    ProcessCounts resting = countProcess();
    resting.threads = restingThreads;
    return settledCounts(resting);
}

} // namespace kinovane::test
