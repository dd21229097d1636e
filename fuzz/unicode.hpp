// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 according to Unicode's table of well-formed byte sequences: a simple and slow model that shares no
/// code with the library.
namespace kinovane::fuzz {

/// The bytes at a position of a text that belong together: a character, the longest prefix of one, or a
/// single byte that begins no character.
struct Sequence {
    std::size_t length = 1;
    bool valid = false; ///< Whether it is a character.
};

/// `position` must be inside `text`.
Sequence sequenceAt(std::string_view text, std::size_t position);

bool isWellFormed(std::string_view text);

/// The text with one U+FFFD for each sequence that is no character.
std::string repaired(std::string_view text);

/// Whether the message is UTF-8 without control characters.
bool isLegible(std::string_view message);

} // namespace kinovane::fuzz
