// SPDX-License-Identifier: Apache-2.0

#include "terminal/text_table.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "terminal/human_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t pageWidth = 100;
constexpr std::size_t narrowestColumn = 20;
constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;

std::string padding(const std::string& cell, std::size_t width) {
    return std::string(width - std::min(width, displayWidth(cell)), ' ');
}

} // namespace

void TextTable::add(std::vector<std::string> cells) { add(std::move(cells), true); }

void TextTable::addUnwrapped(std::vector<std::string> cells) { add(std::move(cells), false); }

void TextTable::add(std::vector<std::string> cells, bool wrapped) {
    if (cells.size() != columns_.size())
        throw std::logic_error("a row must have one cell for each column");
    rows_.push_back({std::move(cells), wrapped});
}

std::vector<std::size_t> TextTable::widths() const {
    std::vector<std::size_t> widths(columns_.size());
    for (const Row& row : rows_)
        for (std::size_t column = 0; column < row.cells.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row.cells[column]));
    return widths;
}

std::string TextTable::text() const {
    const std::vector<std::size_t> width = widths();
    const std::size_t last = columns_.size() - 1;
    std::size_t lastColumn = indent;
    for (std::size_t column = 0; column < last; ++column)
        lastColumn += width[column] + gap;
    const std::size_t lastWidth = std::max(pageWidth - std::min(pageWidth, lastColumn), narrowestColumn);

    std::string text;
    for (const auto& [row, wrapped] : rows_) {
        std::string line(indent, ' ');
        for (std::size_t column = 0; column < last; ++column) {
            const std::string blank = padding(row[column], width[column]);
            line += columns_[column] == Alignment::left ? row[column] + blank : blank + row[column];
            line += std::string(gap, ' ');
        }
        if (columns_[last] == Alignment::right)
            line += padding(row[last], width[last]);
        for (const std::string& part : wrapped ? wrappedText(row[last], lastWidth) : std::vector{row[last]}) {
            line += part;
            line.erase(line.find_last_not_of(' ') + 1);
            text += line + "\n";
            line.assign(lastColumn, ' ');
        }
    }
    return text;
}

} // namespace kinovane::tool
