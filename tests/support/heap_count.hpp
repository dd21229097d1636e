// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <utility>

/// How much memory a program allocates. A program that uses this gets an operator new and delete that count.
namespace kinovane::test {

/// The bytes that are allocated now.
std::size_t allocatedBytes() noexcept;

/// The most bytes that were allocated at once since the last call of `startPeak`.
std::size_t peakBytes() noexcept;
void startPeak() noexcept;

/// How many bytes more than before were allocated at once while `action` ran. Counts every thread.
template <class Action>
std::size_t peakBytesOf(Action&& action) {
    const std::size_t before = allocatedBytes();
    startPeak();
    std::forward<Action>(action)();
    return peakBytes() - before;
}

} // namespace kinovane::test
