// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::tool {

// The texts below are single lines. They are measured and cut by grapheme clusters, which are what a user
// sees as one character. A style marker (see style.hpp) is zero columns wide and is never lost by a cut. A
// character that `shown` escapes is as wide as its escape.

/// The width of the text in terminal columns.
std::size_t displayWidth(std::string_view text);

/// The text in at most `columns` columns. A text that is wider ends with "…".
std::string fitted(std::string_view text, std::size_t columns);

/// The same, but the end of the text is kept as well as its beginning: "/films/…/run.json".
std::string fittedMiddle(std::string_view text, std::size_t columns);

/// The text in lines of at most `columns` columns, broken at spaces. A word that is wider than a line is
/// broken between clusters, and a cluster that is wider has its own line. If `columns` is 0, each word has
/// its own line. At least one line.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

} // namespace kinovane::tool
