// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane {

/// The length in bytes of the well-formed UTF-8 sequence that begins at `position`, which is less than
/// `text.size()`; 0 when there is none.
std::size_t sequenceLength(std::string_view text, std::size_t position) noexcept;

/// The number of consecutive ASCII bytes from `position` on.
std::size_t asciiLength(std::string_view text, std::size_t position = 0) noexcept;

/// Whether the whole text is well-formed UTF-8.
bool isUTF8(std::string_view text) noexcept;

/// Replaces ill-formed bytes by U+FFFD, one for each maximal subpart of a sequence, as the Unicode Standard
/// recommends. Well-formed text is returned unchanged, without a copy.
std::string repairUTF8(std::string text);

} // namespace kinovane
