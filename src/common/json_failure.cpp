#include "common/json_failure.hpp"

#include <algorithm>
#include <utility>

namespace kinovane::json {

Failure Failure::mismatch(std::string_view expected, std::string_view found) {
    std::string text = ": expected ";
    text += expected;
    text += ", found ";
    text += found;
    return Failure(std::move(text));
}

void Failure::within(std::string_view key) { prepend(std::string(key)); }

void Failure::within(std::size_t index) { prepend('[' + std::to_string(index) + ']'); }

void Failure::prepend(std::string outer) {
    if (!path.empty() && !path.starts_with('['))
        outer += '.';
    outer += path;
    path = std::move(outer);
}

std::string Failure::message() const {
    constexpr std::string_view colon = ": ";
    // Without a path the whole document is meant, and there is nothing to put in front of the colon.
    return path.empty() && text.starts_with(colon) ? text.substr(colon.size()) : path + text;
}

std::string syntaxMessage(std::string_view document, std::size_t offset, std::string_view what) {
    const std::string_view before = document.substr(0, std::min(offset, document.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto column = 1 + std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart),
                                          before.end(), [](char byte) { return (byte & '\xC0') != '\x80'; });
    std::string message = "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
    message += what;
    return message;
}

} // namespace kinovane::json
