// SPDX-License-Identifier: Apache-2.0

#include "terminal/text_table.hpp"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include "terminal/display_width.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t narrowestColumn = 20;
constexpr std::size_t widestColumn = 100; // Each row is as wide as the widest.
constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;
constexpr std::size_t indentBelow = 6; // Of the last cell when it is below the others.

std::string padding(const std::string& cell, std::size_t width) {
    return std::string(width - std::min(width, displayWidth(cell)), ' ');
}

/// Adds the line without the blanks at its end.
void appendLine(std::string& text, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
}

} // namespace

void TextTable::add(std::vector<std::string> cells) { add(std::move(cells), true); }

void TextTable::addUnwrapped(std::vector<std::string> cells) { add(std::move(cells), false); }

void TextTable::add(std::vector<std::string> cells, bool wrapped) {
    if (cells.size() != columns_.size())
        throw std::logic_error("a row must have one cell for each column");
    for (std::string& cell : std::span(cells).first(cells.size() - 1))
        cell = fitted(cell, widestColumn);
    rows_.push_back({std::move(cells), wrapped});
}

std::vector<std::size_t> TextTable::widths() const {
    std::vector<std::size_t> widths(columns_.size());
    for (const Row& row : rows_)
        for (std::size_t column = 0; column < row.cells.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row.cells[column]));
    return widths;
}

std::string TextTable::text(std::size_t columns) const {
    const std::vector<std::size_t> width = widths();
    const std::size_t last = columns_.size() - 1;
    std::size_t lastColumn = indent;
    for (std::size_t column = 0; column < last; ++column)
        lastColumn += width[column] + gap;
    const std::size_t space = columns - std::min(columns, lastColumn);
    std::string text;
    for (const auto& [row, isWrapped] : rows_) {
        std::string line(indent, ' ');
        for (std::size_t column = 0; column < last; ++column) {
            const std::string blank = padding(row[column], width[column]);
            line += columns_[column] == Alignment::left ? row[column] + blank : blank + row[column];
            line += std::string(gap, ' ');
        }
        if (columns_[last] == Alignment::right)
            line += padding(row[last], width[last]);
        std::vector<std::string> parts{row[last]};
        std::size_t partColumn = lastColumn;
        if (isWrapped && space < narrowestColumn && displayWidth(row[last]) > space) {
            appendLine(text, line);
            partColumn = indentBelow;
            line.assign(partColumn, ' ');
        }
        if (isWrapped)
            parts = wrapped(row[last], std::max(columns - std::min(columns, partColumn), narrowestColumn));
        for (const std::string& part : parts) {
            appendLine(text, line + part);
            line.assign(partColumn, ' ');
        }
    }
    return text;
}

} // namespace kinovane::tool
