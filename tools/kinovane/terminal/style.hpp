// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace kinovane::tool {

/// How text looks on a terminal with colours: bold, green, red, yellow, faint.
enum class Style { heading, good, bad, warning, dim };

/// The text between two markers, which are Unicode noncharacters for use inside this program. `shown` escapes
/// noncharacters, so that the text of a document cannot contain a marker. Styles can be nested.
std::string styled(Style style, std::string_view text);

/// The text for a terminal, after `cleanedLines`: each marker becomes an escape sequence, or nothing without
/// `colour`. No other control character but the line feed remains, and no style is open at the end.
std::string rendered(std::string_view text, bool colour);

} // namespace kinovane::tool
