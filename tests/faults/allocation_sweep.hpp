// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// Runs an operation many times: each allocation fails once, and then each allocation and all later ones.
struct AllocationSweep {
    std::string name; ///< Of the operation, for the output.
    std::function<void()> operation;
    /// Restores the initial state before each attempt.
    std::function<void()> prepare = [] {};
    /// Additional checks after each attempt. `succeeded` is whether the operation returned.
    std::function<void(bool succeeded)> check = [](bool /*succeeded*/) {};

    /// Always checked: the operation succeeds or fails with std::bad_alloc or one of the library's
    /// errors, and no descriptor, thread or child is left.
    void run() const;
};

} // namespace kinovane::test
