// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// An operation whose allocations are made to fail: each one once, and all from each one on.
struct AllocationSweep {
    std::string path; ///< How the record names the operation.
    std::function<void()> operation;
    /// Restores everything, before each attempt.
    std::function<void()> prepare = [] {};
    /// What has to hold after each attempt, beside what always has to. `succeeded` tells whether the
    /// operation returned.
    std::function<void(bool succeeded)> check = [](bool /*succeeded*/) {};

    /// What always has to hold: the operation succeeds or fails with std::bad_alloc or one of the library's
    /// errors, and no descriptor, thread or child is left.
    void run() const;
};

} // namespace kinovane::test
