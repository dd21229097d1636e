// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace kinovane::tool {

/// The text as one word of a shell command: unchanged if no character of it means something to a shell,
/// otherwise in quotes. Text that a terminal must not get is quoted as $'…' (see shown_text.hpp).
std::string shellWord(std::string_view text);

} // namespace kinovane::tool
