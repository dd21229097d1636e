// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane::tool {

/// The lines of the text, each wrapped to `columns` columns.
std::string paragraphs(std::string_view text, std::size_t columns);

/// "Next: …, then COMMAND", or the command on a line of its own if that is wider than `columns`. The command
/// is never broken, so that it can be copied.
std::string nextCommandText(const std::string& explanation, const std::string& command, std::size_t columns);

} // namespace kinovane::tool
