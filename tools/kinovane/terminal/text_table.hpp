// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kinovane::tool {

/// Rows of cells in aligned columns. The last column is wrapped when the others leave too little space for
/// it.
class TextTable {
  public:
    enum class Alignment { left, right };

    explicit TextTable(std::vector<Alignment> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one cell for each column. Their text must be `shown`, and may be `styled`. All but the
    /// last are cut to 100 columns.
    void add(std::vector<std::string> cells);

    /// The same, but the last cell is not wrapped, so that it can be copied.
    void addUnwrapped(std::vector<std::string> cells);

    /// The rows in lines of at most `columns` terminal columns, as far as only the last column is too wide.
    /// If it has fewer than 20 columns, a cell that does not fit is put below the others of its row. Nothing
    /// is wrapped to fewer than 20 columns.
    std::string text(std::size_t columns = 100) const;

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
