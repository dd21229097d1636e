// SPDX-License-Identifier: Apache-2.0

#include "terminal/display_width.hpp"

#include <algorithm>

#include <utf8proc.h>

#include "terminal/character.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::string_view ellipsis = "…";
constexpr std::int32_t emojiPresentation = 0xFE0F;
constexpr std::size_t emojiWidth = 2;

struct Cluster {
    std::string_view text;
    std::size_t width;
    bool isMarker = false;
};

/// Whether the parts of a cluster that begins with this character are drawn into one cell or pair of cells:
/// an emoji with its joined emoji and skin tones, or the letters of a Hangul syllable.
bool isDrawnAsOne(std::int32_t codePoint) {
    switch (utf8proc_get_property(codePoint)->boundclass) {
    case UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC:
    case UTF8PROC_BOUNDCLASS_L:
    case UTF8PROC_BOUNDCLASS_LV:
    case UTF8PROC_BOUNDCLASS_LVT:
        return true;
    default:
        return false;
    }
}

/// Characters that U+FE0F makes an emoji: pictographs, and the digits and signs of keycaps.
bool canBeEmoji(std::int32_t codePoint) {
    return (codePoint >= '0' && codePoint <= '9') || codePoint == '#' || codePoint == '*' ||
           utf8proc_get_property(codePoint)->boundclass == UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC;
}

std::size_t widthOf(std::int32_t codePoint) {
    return static_cast<std::size_t>(std::max(utf8proc_charwidth(codePoint), 0));
}

/// The first cluster of a text that is not empty. Characters that are escaped and style markers are clusters
/// of their own.
Cluster firstCluster(std::string_view text) {
    const auto [first, firstLength] = firstCharacter(text);
    if (isStyleMarker(first))
        return {text.substr(0, firstLength), 0, true};
    if (!isPrintable(first))
        return {text.substr(0, firstLength), shown(text.substr(0, firstLength)).size()};

    std::size_t width = widthOf(first);
    std::size_t length = firstLength;
    std::int32_t previous = first;
    utf8proc_int32_t state = 0;
    while (length < text.size()) {
        const auto [next, nextLength] = firstCharacter(text.substr(length));
        if (!isPrintable(next) || utf8proc_grapheme_break_stateful(previous, next, &state))
            break;
        if (next == emojiPresentation && canBeEmoji(first))
            width = emojiWidth;
        else
            width = isDrawnAsOne(first) ? std::max(width, widthOf(next)) : width + widthOf(next);
        length += nextLength;
        previous = next;
    }
    return {text.substr(0, length), width};
}

std::vector<Cluster> clustersOf(std::string_view text) {
    std::vector<Cluster> clusters;
    while (!text.empty()) {
        clusters.push_back(firstCluster(text));
        text.remove_prefix(clusters.back().text.size());
    }
    return clusters;
}

/// The text with "…" instead of what lies between its first and its last columns. A cluster that does not fit
/// whole is left out.
std::string shortened(std::string_view text, std::size_t firstColumns, std::size_t lastColumns) {
    const std::vector<Cluster> clusters = clustersOf(text);
    auto begin = clusters.begin();
    for (; begin != clusters.end() && begin->width <= firstColumns; ++begin)
        firstColumns -= begin->width;
    auto end = clusters.end();
    for (; end != begin && std::prev(end)->width <= lastColumns; --end)
        lastColumns -= std::prev(end)->width;

    std::string result;
    std::for_each(clusters.begin(), begin, [&](const Cluster& cluster) { result += cluster.text; });
    result += ellipsis;
    std::for_each(begin, end, [&](const Cluster& cluster) {
        if (cluster.isMarker)
            result += cluster.text;
    });
    std::for_each(end, clusters.end(), [&](const Cluster& cluster) { result += cluster.text; });
    return result;
}

/// Appends a word that is wider than a line.
void appendBroken(std::vector<std::string>& lines, std::string_view word, std::size_t columns) {
    std::size_t width = displayWidth(lines.back());
    for (const Cluster& cluster : clustersOf(word)) {
        if (width > 0 && width + cluster.width > columns) {
            lines.emplace_back();
            width = 0;
        }
        lines.back() += cluster.text;
        width += cluster.width;
    }
}

} // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Cluster cluster = firstCluster(text);
        width += cluster.width;
        text.remove_prefix(cluster.text.size());
    }
    return width;
}

std::string fitted(std::string_view text, std::size_t columns) {
    if (columns == 0)
        return {};
    return displayWidth(text) <= columns ? std::string(text) : shortened(text, columns - 1, 0);
}

std::string fittedMiddle(std::string_view text, std::size_t columns) {
    if (columns == 0)
        return {};
    const std::size_t kept = columns - 1;
    return displayWidth(text) <= columns ? std::string(text) : shortened(text, kept / 2, kept - kept / 2);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines(1);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' ', 1), text.size());
        std::string_view word = text.substr(0, end); // with the space before it
        text.remove_prefix(end);
        if (!lines.back().empty() && displayWidth(lines.back()) + displayWidth(word) > columns) {
            lines.emplace_back();
            word.remove_prefix(word.front() == ' ' ? 1 : 0);
        }
        if (columns > 0 && displayWidth(word) > columns)
            appendBroken(lines, word, columns);
        else
            lines.back() += word;
    }
    return lines;
}

} // namespace kinovane::tool
