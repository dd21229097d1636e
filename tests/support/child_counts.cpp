// SPDX-License-Identifier: Apache-2.0

#include "support/child_counts.hpp"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include <unistd.h>
#ifdef __APPLE__
#include <libproc.h>
#include <mach/mach.h>
#endif

#include "support/sanitizers.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

std::size_t entriesIn(const fs::path& directory) {
    std::error_code ignored; // Threads come and go while they are listed.
    const fs::directory_iterator entries(directory, ignored);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

#ifdef __APPLE__

std::size_t countDescriptors() { return entriesIn("/dev/fd"); }

std::size_t countThreads() {
    thread_act_array_t threads = nullptr;
    mach_msg_type_number_t count = 0;
    if (::task_threads(mach_task_self(), &threads, &count) != KERN_SUCCESS)
        return 0;
    for (mach_msg_type_number_t thread = 0; thread < count; ++thread)
        ::mach_port_deallocate(mach_task_self(), threads[thread]);
    ::vm_deallocate(mach_task_self(), reinterpret_cast<vm_address_t>(threads), count * sizeof *threads);
    return count;
}

std::size_t countChildren() {
    std::array<pid_t, 1024> children{};
    const int count = ::proc_listchildpids(::getpid(), children.data(), sizeof children);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

#else

std::size_t countDescriptors() { return entriesIn("/proc/self/fd"); }

std::size_t countThreads() { return entriesIn("/proc/self/task"); }

std::size_t countChildren() {
    std::size_t children = 0;
    for (const fs::directory_entry& thread : fs::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        children += static_cast<std::size_t>(
            std::distance(std::istream_iterator<std::string>(list), std::istream_iterator<std::string>()));
    }
    return children;
}

#endif

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
    return {countDescriptors(), countThreads(), countChildren()};
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
