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
    bool quick = false;            ///< Small data and few rounds, to test the benchmark.
    bool keep = false;             ///< Keeps the data files.
    std::filesystem::path data;    ///< The folder for the data.
    std::filesystem::path results; ///< The JSON file.
    std::set<int> figures;         ///< Empty: all.

    bool wants(int figure) const { return figures.empty() || figures.contains(figure); }
    std::size_t rounds(std::size_t full) const { return quick ? 3 : full; }

    /// The size of the data; smaller when quick.
    std::size_t size(std::size_t full) const { return quick ? full / 40 : full; }
};

/// Collects the rows of the table.
class Report {
  public:
    /// With `quick`, ratios are not compared with targets.
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

// The figures.
void measureDigests(const Settings& settings, Report& report); ///< 1 to 4
void measureLoad(const Settings& settings, Report& report);    ///< 5 to 7
void measureWrite(const Settings& settings, Report& report);   ///< 8
void measureProcess(const Settings& settings, Report& report); ///< 9 to 12

} // namespace kinovane::benchmarks
