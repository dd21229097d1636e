// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "support/child_counts.hpp"

namespace kinovane::test {

/// The resources that this process uses.
struct Resources {
    std::size_t memory = 0; ///< Resident bytes.
    ProcessCounts counts;
};

/// Measures now. Waits a moment for threads that were joined to disappear from the system's list.
Resources resourcesNow(const ProcessCounts& expected);

/// Describes a resource of which `last` has more than `first`, beyond what is allowed. Absent if there is
/// none.
std::optional<std::string> growth(const Resources& first, const Resources& last);

/// Memory may vary by this much, because the allocator keeps some. A leak of 60 bytes in each of 20 000 runs
/// is more.
inline constexpr std::size_t allowedMemory = std::size_t{1} << 20U;

} // namespace kinovane::test
