// SPDX-License-Identifier: Apache-2.0

#include "support/child_counts.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include <unistd.h>

#include "support/sanitizers.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

std::size_t entriesIn(const fs::path& directory) {
    std::error_code ignored; // Threads come and go while they are listed.
    const fs::directory_iterator entries(directory, ignored);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t countChildren() {
    std::size_t children = 0;
    for (const fs::directory_entry& thread : fs::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        children += static_cast<std::size_t>(
            std::distance(std::istream_iterator<std::string>(list), std::istream_iterator<std::string>()));
    }
    return children;
}

/// Starts the thread of the thread sanitizer, which comes with the first other thread, so that it is always
/// counted.
void startSanitizersThread() {
    if (!underThreadSanitizer)
        return;
    try {
        std::thread([] {}).join();
    } catch (const std::system_error&) {
        return; // No thread can be started.
    }
}

} // namespace

ProcessCounts countProcess() {
    startSanitizersThread();
    return {entriesIn("/proc/self/fd"), entriesIn("/proc/self/task"), countChildren()};
}

ProcessCounts settledCounts(const ProcessCounts& expected, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        const ProcessCounts counts = countProcess();
        if (counts == expected || std::chrono::steady_clock::now() > end)
            return counts;
        std::this_thread::yield();
    }
}

} // namespace kinovane::test
