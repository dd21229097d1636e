// SPDX-License-Identifier: Apache-2.0

// kinovane_soak RUNS LOADS BUILDS
// Runs programs, loads films and builds handoffs in one process. Measures memory, descriptors, threads and
// child processes after each tenth of the work. Fails if there is more of them after the last tenth than
// after the first.

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include <malloc.h>
#include <sys/wait.h>

#include "soak/resources.hpp"
#include "soak/work.hpp"

namespace {

using kinovane::test::countProcess;
using kinovane::test::growth;
using kinovane::test::Resources;
using kinovane::test::resourcesNow;
using kinovane::test::Rounds;
using kinovane::test::Work;

constexpr std::size_t tenths = 10;
/// Done before the first measurement, because some memory is kept from the first use on.
constexpr Rounds warmUp{200, 20, 30};

/// The number of items for this tenth when `count` items are spread evenly.
std::size_t share(std::size_t tenth, std::size_t count) {
    return count * (tenth + 1) / tenths - count * tenth / tenths;
}

/// Makes the C library return freed memory to the system. It would otherwise keep some for every thread,
/// which would hide a leak.
void returnFreedMemory() {
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_MMAP_THRESHOLD, 128 << 10);
}

bool hasChildren() {
    int status = 0;
    return ::waitpid(-1, &status, WNOHANG) != -1 || errno != ECHILD;
}

int soak(const Rounds& rounds) {
    using Clock = std::chrono::steady_clock;
    returnFreedMemory();
    Work work;
    const auto restingCounts = countProcess();
    work.perform(warmUp);

    std::vector<Resources> history;
    std::printf("%5s  %9s  %12s  %12s  %8s  %9s\n", "tenth", "seconds", "memory (KiB)", "descriptors",
                "threads", "children");
    const Clock::time_point begin = Clock::now();
    for (std::size_t tenth = 0; tenth < tenths; ++tenth) {
        work.perform({share(tenth, rounds.runs), share(tenth, rounds.loads), share(tenth, rounds.builds)});
        const Resources now = resourcesNow(restingCounts);
        history.push_back(now);
        std::printf("%5zu  %9.1f  %12zu  %12zu  %8zu  %9zu\n", tenth + 1,
                    std::chrono::duration<double>(Clock::now() - begin).count(), now.memory / 1024,
                    now.counts.descriptors, now.counts.threads, now.counts.children);
        std::fflush(stdout);
    }
    if (const std::optional<std::string> grown = growth(history.front(), history.back())) {
        std::printf("kinovane_soak: %s\n", grown->c_str());
        return 1;
    }
    if (hasChildren()) {
        std::puts("kinovane_soak: a child process is left as a zombie");
        return 1;
    }
    std::puts("kinovane_soak: nothing grows");
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    try {
        const std::vector<std::string> words(arguments + 1, arguments + count);
        if (words.size() != 3) {
            std::fputs("usage: kinovane_soak RUNS LOADS BUILDS\n", stderr);
            return 2;
        }
        return soak({std::stoul(words[0]), std::stoul(words[1]), std::stoul(words[2])});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kinovane_soak: %s\n", error.what());
        return 1;
    }
}
