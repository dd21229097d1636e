// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kinovane::json {

/// The message of a syntax error: line and column (both from 1, the column in characters) of the byte at
/// `offset`.
std::string syntaxMessage(std::string_view document, std::size_t offset, std::string_view what);

/// The offset of the first letter that is wrong, if the parser stopped at `offset` because `true`, `false` or
/// `null` is misspelt, otherwise `offset`. Newer versions of Boost.JSON stop at the beginning of the word.
std::size_t wrongLetterAt(std::string_view document, std::size_t offset);

/// The offset of the first byte that is not UTF-8, if the parser stopped at `offset` because of it: the byte
/// is there, or further on in the same string.
std::optional<std::size_t> invalidUTF8At(std::string_view document, std::size_t offset);

} // namespace kinovane::json
