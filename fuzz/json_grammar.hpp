// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::fuzz {

/// What the grammar of JSON (RFC 8259) says of a text. Not valid are also texts that the library refuses for
/// other reasons: they are not UTF-8, have an escape for half a surrogate pair, or more than 512 levels.
struct GrammarResult {
    bool valid = false;
    bool isObject = false; ///< Only of a valid text.
};

/// Skips a byte-order mark at the start. Shares no code with the library.
GrammarResult parseByGrammar(std::string_view text);

} // namespace kinovane::fuzz
