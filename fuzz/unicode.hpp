// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 by Unicode's own table of well-formed byte sequences, to compare the library with. It shares nothing
/// with the library, and is slow.
namespace kinovane::fuzz {

/// The bytes that belong together at one place of a text: a character, or the longest beginning of one, or a
/// byte that begins none.
struct Piece {
    std::size_t length = 1;
    bool whole = false;
};

/// `position` is inside `text`.
Piece pieceAt(std::string_view text, std::size_t position);

bool isWellFormed(std::string_view text);

/// The text with one U+FFFD for each piece that is no character.
std::string repaired(std::string_view text);

/// Whether a person can read all of a message: it is UTF-8 and holds no control character.
bool isLegible(std::string_view message);

} // namespace kinovane::fuzz
