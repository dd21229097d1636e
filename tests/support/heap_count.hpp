// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <utility>

/// The heap use of a program. A program that uses this gets counting versions of operator new and delete.
namespace kinovane::test {

/// The number of bytes allocated now.
std::size_t allocatedBytes() noexcept;

/// The largest number of bytes allocated at a time since the last call of `startPeak`.
std::size_t peakBytes() noexcept;
void startPeak() noexcept;

/// The peak number of bytes that `action` allocates. Counts the allocations of every thread.
template <class Action>
std::size_t peakBytesOf(Action&& action) {
    const std::size_t before = allocatedBytes();
    startPeak();
    std::forward<Action>(action)();
    return peakBytes() - before;
}

} // namespace kinovane::test
