// SPDX-License-Identifier: Apache-2.0

#include "tooling/film_tool/pi_version.hpp"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace kinovane {

namespace {

std::int64_t numberOf(std::string_view part) {
    // A number may have a sign. from_chars accepts "-" but not "+".
    if (part.starts_with('+') && !part.starts_with("+-"))
        part.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
    return error == std::errc() && end == part.data() + part.size() ? number : 0;
}

} // namespace

std::vector<std::int64_t> versionComponents(std::string_view text) {
    if (text.starts_with('v'))
        text.remove_prefix(1);
    std::vector<std::int64_t> components;
    while (!text.empty()) {
        const std::size_t dot = std::min(text.find('.'), text.size());
        if (dot != 0)
            components.push_back(numberOf(text.substr(0, dot)));
        text.remove_prefix(std::min(dot + 1, text.size()));
    }
    return components;
}

bool isNewer(std::string_view a, std::string_view b) { return versionComponents(b) < versionComponents(a); }

} // namespace kinovane
