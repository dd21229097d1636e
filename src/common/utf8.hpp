// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane {

/// The length of the well-formed UTF-8 sequence at `position`, or 0 when there is none. `position` is inside
/// `text`.
std::size_t sequenceLength(std::string_view text, std::size_t position) noexcept;

/// The length of the longest beginning of `text` from `position` on that holds only ASCII.
std::size_t asciiLength(std::string_view text, std::size_t position = 0) noexcept;

bool isUTF8(std::string_view text) noexcept;

/// Replaces whatever is not UTF-8 by U+FFFD, one for each longest beginning of a sequence, as Unicode
/// recommends. Text that is UTF-8 comes back as it was, without a copy.
std::string repairUTF8(std::string text);

} // namespace kinovane
