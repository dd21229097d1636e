// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

namespace kinovane {

/// The size of a huge page on most processors, in bytes.
inline constexpr std::size_t hugePage = std::size_t{2} << 20U;

/// Asks for huge pages: memory that is filled from start to end then causes fewer page faults.
///
/// Linux: `madvise` with MADV_HUGEPAGE. macOS: does nothing, because the system has no such request.
void adviseHugePages(char* memory, std::size_t size) noexcept;

} // namespace kinovane
