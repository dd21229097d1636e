// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <system_error>
#include <thread>

#include "support/child_counts.hpp"
#include "support/sanitizers.hpp"

namespace kinovane::test {

/// ThreadSanitizer has a thread of its own.
inline constexpr std::size_t restingThreads = underThreadSanitizer ? 2 : 1;

/// The counts while no operation runs. Waits until the threads of earlier operations have disappeared: the
/// system may list a thread for an instant after it was joined, and a detached one for longer.
inline ProcessCounts restingCounts() {
    try {
        std::thread([] {}).join();
    } catch (const std::system_error&) {
        return countProcess(); // If no thread can be started, none is about to end.
    }
    ProcessCounts resting = countProcess();
    resting.threads = restingThreads;
    return settledCounts(resting);
}

} // namespace kinovane::test
