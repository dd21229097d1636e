// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "common/json/shape.hpp"

namespace kinovane::test {

/// A record of the library, for tests that are run for every record.
struct RecordType {
    std::string name;
    const json::Shape* shape;
    /// Decodes the document, and returns whether it was accepted. Frees the record.
    bool (*read)(std::string_view document);
};

/// Makes GoogleTest print the record's name.
void PrintTo(const RecordType& type, std::ostream* stream);

/// Every record that is decoded from a document or a reply.
std::vector<RecordType> recordTypes();

} // namespace kinovane::test
