// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace kinovane::tool {

/// The text with a visible escape for everything that `isPrintable` excludes: \n, \t, \r, \x1b (control
/// characters of ASCII), \u{202e} (others), \xff (bytes that are not UTF-8). A backslash is not escaped.
std::string shown(std::string_view text);

/// The path, so that it can be copied into a shell. It is unchanged, with its spaces, if `shown` does not
/// change it; otherwise it is quoted as $'…', which bash, zsh and ksh read as the same bytes.
std::string shownPath(std::string_view path);

/// Like `shown`, but keeps line feeds and style markers (see style.hpp).
std::string cleanedLines(std::string_view text);

} // namespace kinovane::tool
