// SPDX-License-Identifier: Apache-2.0

#include "report.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace kinovane::benchmarks {

namespace {

constexpr std::size_t columns = 6;
using Cells = std::array<std::string, columns>;

std::string number(double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.2f", value);
    return text.data();
}

Cells cellsOf(const Row& row) {
    return {std::to_string(row.figure.number) + ". " + row.figure.title,
            row.peer,
            number(row.median()),
            row.target ? (row.atMost ? "<= " : ">= ") + number(*row.target) : "",
            std::to_string(row.ratios.size()),
            row.missed() ? "missed" : ""};
}

} // namespace

void Report::add(const std::vector<Row>& rows) {
    for (Row row : rows) {
        if (quick_)
            row.target.reset();
        const auto position =
            std::upper_bound(rows_.begin(), rows_.end(), row.figure.number,
                             [](int number, const Row& other) { return number < other.figure.number; });
        rows_.insert(position, row);
        const Cells cells = cellsOf(row);
        std::cerr << "  " << cells[0] << " | " << cells[1] << " | " << cells[2] << " | " << cells[3] << ' '
                  << cells[5] << std::endl;
    }
}

void Report::print(std::ostream& out) const {
    std::vector<Cells> lines{{"figure", "peer", "ratio", "target", "rounds", ""}};
    for (const Row& row : rows_)
        lines.push_back(cellsOf(row));
    std::array<std::size_t, columns> widths{};
    for (const Cells& line : lines)
        for (std::size_t column = 0; column < columns; ++column)
            widths[column] = std::max(widths[column], line[column].size());
    for (const Cells& line : lines) {
        std::string text;
        for (std::size_t column = 0; column < columns; ++column) {
            if (column > 0)
                text += " | ";
            text += line[column] + std::string(widths[column] - line[column].size(), ' ');
        }
        text.erase(text.find_last_not_of(" |") + 1);
        out << text << '\n';
    }
}

void Report::write(const std::filesystem::path& file) const {
    nlohmann::ordered_json document = nlohmann::ordered_json::array();
    for (const Row& row : rows_) {
        nlohmann::ordered_json entry;
        entry["figure"] = row.figure.number;
        entry["title"] = row.figure.title;
        entry["peer"] = row.peer;
        entry["ratio"] = row.median();
        if (row.target) {
            entry["target"] = *row.target;
            entry["bound"] = row.atMost ? "at most" : "at least";
            entry["met"] = !row.missed();
        }
        entry["ratios"] = row.ratios;
        document.push_back(std::move(entry));
    }
    std::ofstream out(file);
    out << document.dump(2) << '\n';
    if (!out.flush())
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace kinovane::benchmarks
