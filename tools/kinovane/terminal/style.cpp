// SPDX-License-Identifier: Apache-2.0

#include "terminal/style.hpp"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "terminal/character.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

/// The escape sequence of each style, in the order of the enumerators.
constexpr std::array<std::string_view, 5> sequences{"\x1b[1m", "\x1b[32m", "\x1b[31m", "\x1b[33m", "\x1b[2m"};
constexpr std::string_view reset = "\x1b[0m";

/// The last marker ends the style that was begun last; each of the others begins a style.
constexpr std::int32_t endMarker = lastStyleMarker;
static_assert(endMarker - firstStyleMarker == sequences.size());

/// The UTF-8 form of U+FDD0 to U+FDDF.
std::string encoded(std::int32_t marker) {
    return std::string("\xef\xb7") + static_cast<char>(0x90 + (marker - firstStyleMarker));
}

/// Replaces markers by escape sequences.
class Painter {
  public:
    void pass(std::string_view characters) { text_ += characters; }

    void begin(std::string_view sequence) {
        if (open_.size() == deepest) {
            ++ignored_;
            return;
        }
        open_.push_back(sequence);
        text_ += sequence;
    }

    void end() {
        if (ignored_ > 0) {
            --ignored_;
            return;
        }
        if (open_.empty())
            return;
        open_.pop_back();
        text_ += reset;
        for (const std::string_view outer : open_)
            text_ += outer;
    }

    std::string finished() {
        if (!open_.empty())
            text_ += reset;
        return std::move(text_);
    }

  private:
    static constexpr std::size_t deepest = 16; ///< Limits what `end` repeats.

    std::string text_;
    std::vector<std::string_view> open_;
    std::size_t ignored_ = 0; ///< Styles that were begun inside `deepest` others.
};

} // namespace

std::string styled(Style style, std::string_view text) {
    std::string result = encoded(firstStyleMarker + static_cast<std::int32_t>(style));
    result += text;
    return result + encoded(endMarker);
}

std::string rendered(std::string_view text, bool colour) {
    const std::string cleaned = cleanedLines(text);
    Painter painter;
    for (std::string_view rest = cleaned; !rest.empty();) {
        const auto [codePoint, length] = firstCharacter(rest);
        if (!isStyleMarker(codePoint))
            painter.pass(rest.substr(0, length));
        else if (colour && codePoint == endMarker)
            painter.end();
        else if (colour)
            painter.begin(sequences[static_cast<std::size_t>(codePoint - firstStyleMarker)]);
        rest.remove_prefix(length);
    }
    return painter.finished();
}

} // namespace kinovane::tool
