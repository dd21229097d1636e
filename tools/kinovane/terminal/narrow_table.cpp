// SPDX-License-Identifier: Apache-2.0

#include "terminal/narrow_table.hpp"

#include <algorithm>
#include <utility>

#include "terminal/display_width.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;

} // namespace

std::size_t NarrowTable::naturalWidth(std::size_t column) const {
    std::size_t width = displayWidth(columns_[column].header);
    for (const std::vector<std::string>& row : rows_)
        width = std::max(width, displayWidth(row.at(column)));
    return std::min(width, columns_[column].most);
}

std::vector<NarrowTable::Choice> NarrowTable::chosenColumns(std::size_t columns) const {
    std::vector<std::size_t> natural;
    std::vector<Choice> chosen;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        natural.push_back(naturalWidth(column));
        chosen.push_back({column, std::min(natural[column], columns_[column].least)});
    }
    const auto rankOf = [&](const Choice& choice) { return columns_[choice.column].rank; };
    std::size_t used = 0;
    const auto measure = [&] {
        used = indent;
        for (const Choice& choice : chosen)
            used += choice.width + gap;
        used -= gap;
    };
    measure();
    while (used > columns) {
        const auto last = std::ranges::max_element(chosen, {}, rankOf);
        if (rankOf(*last) == 0)
            break;
        chosen.erase(last);
        measure();
    }
    // What is left over goes to the columns from left to right.
    std::size_t spare = columns - std::min(columns, used);
    for (Choice& choice : chosen) {
        const std::size_t more = std::min(spare, natural[choice.column] - choice.width);
        choice.width += more;
        spare -= more;
    }
    return chosen;
}

std::string NarrowTable::text(std::size_t columns) const {
    const std::vector<Choice> chosen = chosenColumns(columns);
    std::vector<TextTable::Alignment> alignments;
    std::vector<std::string> headers;
    for (const auto& [column, width] : chosen) {
        alignments.push_back(columns_[column].alignment);
        headers.push_back(styled(Style::dim, columns_[column].header));
    }
    TextTable table(alignments);
    table.addUnwrapped(headers);
    for (const std::vector<std::string>& row : rows_) {
        std::vector<std::string> cells;
        for (const auto& [column, width] : chosen)
            cells.push_back(fitted(row.at(column), width));
        table.addUnwrapped(std::move(cells));
    }
    return table.text(columns);
}

} // namespace kinovane::tool
