// SPDX-License-Identifier: Apache-2.0

#include "soak/resources.hpp"

#include <chrono>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

#include "support/sanitizers.hpp"

namespace kinovane::test {

namespace {

std::size_t residentMemory() {
    std::ifstream file("/proc/self/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    if (!(file >> size >> resident))
        throw std::runtime_error("the memory of this process cannot be read");
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

} // namespace

Resources resourcesNow(const ProcessCounts& expected) {
    const ProcessCounts counts = settledCounts(expected, std::chrono::seconds(1));
    return {residentMemory(), counts};
}

std::optional<std::string> growth(const Resources& first, const Resources& last) {
    if (last.counts.descriptors != first.counts.descriptors)
        return "descriptors are left open";
    if (last.counts.threads != first.counts.threads)
        return "threads are left running";
    if (last.counts.children != first.counts.children)
        return "child processes are left";
    if (!memoryIsSanitized && last.memory > first.memory + allowedMemory)
        return "memory grows";
    return std::nullopt;
}

} // namespace kinovane::test
