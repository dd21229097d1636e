// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "common/json/shape.hpp"

namespace kinovane {

/// Decodes the document at `location` into the default-constructed value at `target`, which has this shape.
void decodeDocumentInto(void* target, const json::Shape& shape, const std::filesystem::path& location);

/// The record that the document at `location` holds. Throws JSONDecodingError, and
/// std::filesystem::filesystem_error, also for a document of more than `maximumDocumentSize` bytes, and for
/// one that changes each time it is read (std::errc::device_or_resource_busy).
template <class Record>
Record decodeDocument(const std::filesystem::path& location) {
    Record record{};
    decodeDocumentInto(&record, json::shapeOf<Record>(), location);
    return record;
}

} // namespace kinovane
