// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <set>
#include <vector>

#include "rounds.hpp"

namespace kinovane::benchmarks {

struct Settings {
    bool quick = false;         ///< Small data and few rounds: shows that everything works, measures nothing.
    bool keep = false;          ///< Leaves the data where it is.
    std::filesystem::path data; ///< Where the data is made.
    std::filesystem::path results; ///< The JSON file.
    std::set<int> figures;         ///< Empty: all.

    bool wants(int figure) const { return figures.empty() || figures.contains(figure); }
    std::size_t rounds(std::size_t full) const { return quick ? 3 : full; }

    /// The size of some data, a part of it when quick.
    std::size_t size(std::size_t full) const { return quick ? full / 40 : full; }
};

/// Collects the rows of the table.
class Report {
  public:
    /// Ratios of small data are held to no target.
    explicit Report(bool quick) : quick_(quick) {}

    void add(const std::vector<Row>& rows);

    /// Prints one line for each row, in the order of the figures.
    void print(std::ostream& out) const;

    /// Writes the rows as JSON, with the ratio of every round.
    void write(const std::filesystem::path& file) const;

  private:
    bool quick_;
    std::vector<Row> rows_;
};

// The figures, family by family.
void measureDigests(const Settings& settings, Report& report); ///< 1 to 4
void measureLoad(const Settings& settings, Report& report);    ///< 5 to 7
void measureWrite(const Settings& settings, Report& report);   ///< 8
void measureProcess(const Settings& settings, Report& report); ///< 9 to 12

} // namespace kinovane::benchmarks
