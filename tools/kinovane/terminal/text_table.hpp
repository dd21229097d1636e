// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kinovane::tool {

/// Rows of cells in aligned columns. The last column is wrapped at 100 terminal columns.
class TextTable {
  public:
    enum class Alignment { left, right };

    explicit TextTable(std::vector<Alignment> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one cell for each column. Cells must be plain text.
    void add(std::vector<std::string> cells);

    /// The same, but the last cell is not wrapped, so that it can be copied.
    void addUnwrapped(std::vector<std::string> cells);

    std::string text() const;

  private:
    struct Row {
        std::vector<std::string> cells;
        bool wrapped;
    };

    void add(std::vector<std::string> cells, bool wrapped);
    std::vector<std::size_t> widths() const;

    std::vector<Alignment> columns_;
    std::vector<Row> rows_;
};

} // namespace kinovane::tool
