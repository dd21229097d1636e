// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string_view>

#include "common/text_buffer.hpp"

/// Appends plain values to a document as JSON text.
namespace kinovane::json {

/// Appends the text in quotes. Only what JSON requires is escaped, so "/" and characters beyond ASCII are
/// written as they are. Returns false when the text is not UTF-8; the document is then incomplete.
[[nodiscard]] bool appendString(TextBuffer& document, std::string_view text);

void appendInteger(TextBuffer& document, std::int64_t value);

/// Appends the shortest form that reads back equal. The value is finite.
void appendReal(TextBuffer& document, double value);

} // namespace kinovane::json
