// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane::test {

/// A text of exactly `bytes` bytes, with numbered lines, so that a comparison finds lost or repeated parts.
inline std::string numberedLines(std::string_view word, std::size_t bytes) {
    std::string text;
    text.reserve(bytes + 64);
    for (std::size_t line = 0; text.size() < bytes; ++line)
        text.append(word).append(" ").append(std::to_string(line)).append("\n");
    text.resize(bytes);
    return text;
}

} // namespace kinovane::test
