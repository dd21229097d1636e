// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::tool {

/// The known word that the user probably meant: the one that needs the fewest changes of one character, or
/// exchanges of two neighbours, but not more than a third of its length. The first of several.
std::optional<std::string> similarWord(std::string_view word, const std::vector<std::string>& known);

} // namespace kinovane::tool
