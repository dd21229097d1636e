// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::fuzz {

/// What a text is by the grammar of JSON (RFC 8259), and by what this library refuses besides: text that is
/// not UTF-8, escapes that stand for no character, and more than 512 levels.
struct Reading {
    bool valid = false;
    bool isObject = false;     ///< Only of a valid text.
    bool longExponent = false; ///< A number has an exponent of more than nine digits, which may be refused.
};

/// A byte-order mark at the start is skipped. Shares nothing with the library.
Reading readByGrammar(std::string_view text);

} // namespace kinovane::fuzz
