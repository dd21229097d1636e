#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Plain values as JSON text, appended to a growing document.
namespace kinovane::json {

/// Appends the text in quotes. Only what JSON requires is escaped, so "/" and characters beyond ASCII stand
/// as they are. Returns false when the text is not UTF-8; what was appended is then of no use.
[[nodiscard]] bool appendString(std::string& document, std::string_view text);

void appendInteger(std::string& document, std::int64_t value);

/// Appends the shortest form that reads back equal. The value is finite.
void appendReal(std::string& document, double value);

} // namespace kinovane::json
