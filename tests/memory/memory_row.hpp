// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "common/json/shape.hpp"

namespace kinovane::test {

/// A record, and how its document is read.
struct MemoryRow {
    std::string name;
    const json::Shape* shape;
    /// Whether the document was accepted. Nothing of it is left.
    bool (*read)(std::string_view document);
};

/// How a failed test names the record.
void PrintTo(const MemoryRow& row, std::ostream* stream);

/// Every record that a document or a reply can hold.
std::vector<MemoryRow> memoryRows();

} // namespace kinovane::test
