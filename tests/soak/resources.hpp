// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "support/child_counts.hpp"

namespace kinovane::test {

/// What this process holds.
struct Resources {
    std::size_t memory = 0; ///< Resident bytes.
    ProcessCounts counts;
};

/// Of now, once the threads that have been waited for are gone from the list.
Resources resourcesNow(const ProcessCounts& expected);

/// What has grown from one moment to a later one by more than is allowed, as a text; nothing when all is
/// well.
std::optional<std::string> growth(const Resources& first, const Resources& last);

/// A memory allocator keeps a little here and there; a leak of 60 bytes in each of 20 000 runs is more.
inline constexpr std::size_t allowedMemory = std::size_t{1} << 20U;

} // namespace kinovane::test
