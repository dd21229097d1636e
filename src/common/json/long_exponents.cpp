// SPDX-License-Identifier: Apache-2.0

#include "common/json/long_exponents.hpp"

#include <algorithm>

namespace kinovane::json {

namespace {

constexpr std::size_t mostShortDigits = 9;

/// The position after the string that begins at `begin`.
std::size_t endOfString(std::string_view document, std::size_t begin) {
    for (std::size_t position = begin + 1; position < document.size(); ++position)
        if (document[position] == '\\')
            ++position;
        else if (document[position] == '"')
            return position + 1;
    return document.size();
}

} // namespace

LongExponents longExponentsOf(std::string_view document) {
    LongExponents result;
    std::size_t position = 0;
    while ((position = document.find_first_of("\"eE", position)) != std::string_view::npos) {
        if (document[position] == '"') {
            position = endOfString(document, position);
            continue;
        }
        // The "e" of "true" and "false" is followed by no digit.
        ++position;
        if (position < document.size() && (document[position] == '+' || document[position] == '-'))
            ++position;
        const std::size_t end = std::min(document.find_first_not_of("0123456789", position), document.size());
        if (end - position > mostShortDigits)
            result.push_back({position, end - position});
        position = end;
    }
    return result;
}

} // namespace kinovane::json
