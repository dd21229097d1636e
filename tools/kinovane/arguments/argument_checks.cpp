// SPDX-License-Identifier: Apache-2.0

#include "arguments/argument_checks.hpp"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "timeline/frame_rate.hpp"

namespace kinovane::tool {

std::string wholeNumberError(const std::string& text, std::int64_t least, std::int64_t most) {
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && rest == end && number >= least && number <= most)
        return {};
    return "\"" + text + "\" is not a whole number from " + std::to_string(least) + " to " +
           std::to_string(most);
}

std::string frameRateError(const std::string& text) {
    return frameRateOf(text) ? std::string() : "\"" + text + "\" is not a frame rate from 1 to 1000";
}

std::string choiceError(const std::string& text, const std::vector<std::string>& words) {
    if (std::ranges::find(words, text) != words.end())
        return {};
    std::string list;
    for (const std::string& word : words)
        list += (list.empty() ? "" : ", ") + word;
    return "\"" + text + "\" is not one of " + list;
}

} // namespace kinovane::tool
