// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kinovane::tool {

// What is wrong with the value of an argument, or an empty text: validators for CLI11.

std::string wholeNumberError(const std::string& text, std::int64_t least, std::int64_t most);

std::string frameRateError(const std::string& text);

/// For a value that must be one of several words.
std::string choiceError(const std::string& text, const std::vector<std::string>& words);

} // namespace kinovane::tool
