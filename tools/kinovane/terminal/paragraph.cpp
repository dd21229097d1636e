// SPDX-License-Identifier: Apache-2.0

#include "terminal/paragraph.hpp"

#include <algorithm>

#include "terminal/display_width.hpp"

namespace kinovane::tool {

std::string paragraphs(std::string_view text, std::size_t columns) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        for (const std::string& line : wrapped(text.substr(0, end), columns))
            result += line + "\n";
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

std::string nextCommandText(const std::string& explanation, const std::string& command, std::size_t columns) {
    const std::string label = "Next: ";
    std::string line = label + explanation;
    if (!explanation.empty())
        line += " ";
    if (explanation.empty() || displayWidth(line) + displayWidth(command) <= columns)
        return line + command + "\n";
    return paragraphs(label + explanation, columns) + std::string(label.size(), ' ') + command + "\n";
}

} // namespace kinovane::tool
