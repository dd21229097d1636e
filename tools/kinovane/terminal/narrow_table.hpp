// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "terminal/text_table.hpp"

namespace kinovane::tool {

/// A table with a row of headers that leaves columns out when the terminal is too narrow for all of them, and
/// cuts the text of wide columns. Its rows are never wrapped.
class NarrowTable {
  public:
    struct Column {
        std::string header;
        TextTable::Alignment alignment;
        std::size_t least; ///< The least width that the column is cut to.
        std::size_t most;
        unsigned rank; ///< The column with the highest rank is left out first; one of rank 0 never.
    };

    explicit NarrowTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one cell for each column. Their text must be `shown`, and may be `styled`.
    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    std::string text(std::size_t columns) const;

  private:
    struct Choice {
        std::size_t column;
        std::size_t width;
    };

    std::vector<Choice> chosenColumns(std::size_t columns) const;
    std::size_t naturalWidth(std::size_t column) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace kinovane::tool
