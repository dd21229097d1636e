#pragma once

#include <system_error>
#include <thread>

#include "support/child_counts.hpp"

namespace kinovane::test {

#if defined(__SANITIZE_THREAD__)
inline constexpr std::size_t restingThreads = 2; // One is the sanitizer's own.
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr std::size_t restingThreads = 2;
#else
inline constexpr std::size_t restingThreads = 1;
#endif
#else
inline constexpr std::size_t restingThreads = 1;
#endif

/// What this process has while no operation runs, once the threads of earlier operations have gone: a thread
/// may be listed for an instant after it was joined, and longer when nobody waits for it.
inline ProcessCounts restingCounts() {
    try {
        std::thread([] {}).join(); // A sanitizer starts its own thread with the first.
    } catch (const std::system_error&) {
        return countProcess(); // Where none can be started, none is on its way out.
    }
    ProcessCounts resting = countProcess();
    resting.threads = restingThreads;
    return settledCounts(resting);
}

} // namespace kinovane::test
