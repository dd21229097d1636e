// SPDX-License-Identifier: Apache-2.0

#include "examples/guide_page.hpp"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kinovane::test {

namespace {

/// The text between two others; empty if one of them is missing.
std::string_view between(std::string_view text, std::string_view before, std::string_view after) {
    const std::size_t start = text.find(before);
    if (start == std::string_view::npos)
        return {};
    text.remove_prefix(start + before.size());
    const std::size_t end = text.find(after);
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end);
}

} // namespace

GuidePage::GuidePage(std::string_view name) {
    std::ifstream file(std::string(KINOVANE_GUIDE) + '/' + std::string(name));
    if (!file)
        throw std::runtime_error("docs/guide has no " + std::string(name));
    text_.assign(std::istreambuf_iterator<char>(file), {});
}

std::string GuidePage::printedBy(std::string_view program) const {
    return std::string(
        between(text_, "<!-- printed by " + std::string(program) + " -->\n```text\n", "```\n"));
}

std::vector<std::string> GuidePage::codeIn(std::string_view name) const {
    const std::string part(name);
    std::string_view text = between(text_, "<!-- " + part + " -->\n", "<!-- end of " + part + " -->");
    std::vector<std::string> found;
    while (true) {
        const std::string_view code = between(text, "`", "`");
        if (code.empty())
            return found;
        found.emplace_back(code);
        text.remove_prefix(text.find('`') + code.size() + 2);
    }
}

} // namespace kinovane::test
