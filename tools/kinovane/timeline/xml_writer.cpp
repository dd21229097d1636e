// SPDX-License-Identifier: Apache-2.0

#include "timeline/xml_writer.hpp"

#include <cstdint>

#include "terminal/character.hpp"

namespace kinovane::tool {

namespace {

/// The production "Char" of XML 1.0.
bool isXMLCharacter(std::int32_t codePoint) {
    return codePoint == '\t' || codePoint == '\n' || codePoint == '\r' ||
           (codePoint >= 0x20 && codePoint != 0xFFFE && codePoint != 0xFFFF);
}

std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto [codePoint, length] = firstCharacter(text);
        switch (codePoint) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\'':
            result += "&apos;";
            break;
        // A reader would take them for spaces in an attribute, and change line breaks everywhere.
        case '\t':
        case '\n':
        case '\r':
            result += "&#" + std::to_string(codePoint) + ";";
            break;
        default:
            result += isXMLCharacter(codePoint) ? text.substr(0, length) : "\uFFFD";
        }
        text.remove_prefix(length);
    }
    return result;
}

} // namespace

XMLWriter::XMLWriter(std::string_view root, const Attributes& attributes)
    : document_("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE " + std::string(root) + ">\n") {
    begin(root, attributes);
}

void XMLWriter::begin(std::string_view name, const Attributes& attributes) {
    line(startTag(name, attributes) + ">");
    open_.emplace_back(name);
}

void XMLWriter::end() {
    const std::string name = open_.back();
    open_.pop_back();
    line("</" + name + ">");
}

void XMLWriter::empty(std::string_view name, const Attributes& attributes) {
    line(startTag(name, attributes) + "/>");
}

void XMLWriter::text(std::string_view name, std::string_view text) {
    line(startTag(name, {}) + ">" + escaped(text) + "</" + std::string(name) + ">");
}

std::string XMLWriter::document() {
    while (!open_.empty())
        end();
    return document_;
}

void XMLWriter::line(const std::string& markup) {
    document_ += std::string(2 * open_.size(), ' ') + markup + "\n";
}

std::string XMLWriter::startTag(std::string_view name, const Attributes& attributes) {
    std::string tag = "<" + std::string(name);
    for (const auto& [attribute, value] : attributes)
        tag += " " + std::string(attribute) + "=\"" + escaped(value) + "\"";
    return tag;
}

} // namespace kinovane::tool
