// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include "common/files/regular_file.hpp"
#include "common/json/shape.hpp"

namespace kinovane::json {

// The values of a document are stored in the freshly made value at `target`, which has this shape; it is of
// no use when an exception is thrown. Beside the caller's text, decoding takes less than 8 times the
// document's size (and 128 KiB) for a document that is refused, and less than 32 times for one that is
// accepted.

/// Decodes a whole document. Throws JSONDecodingError.
void decodeInto(void* target, const Shape& shape, std::string_view document);

/// Decodes a document in a file, which is read in chunks, so that memory holds the value alone. Returns
/// false, and the value is empty, when the whole text is needed: to say where the document is not valid JSON,
/// or because the value would take too much memory. Throws std::filesystem::filesystem_error, and
/// JSONDecodingError.
[[nodiscard]] bool decodeInto(void* target, const Shape& shape, RegularFile file);

/// The same as `decodeInto` with a text, but the document is first checked and then stored, so that it takes
/// the least memory. Throws JSONDecodingError.
void checkAndDecodeInto(void* target, const Shape& shape, std::string_view document);

template <class T>
T decode(std::string_view document) {
    T value{};
    decodeInto(&value, shapeOf<T>(), document);
    return value;
}

/// Decodes the document at `location`. Throws JSONDecodingError, and std::filesystem::filesystem_error, also
/// for a document of more than `maximumDocumentSize` bytes.
template <class T>
T decodeFile(const std::filesystem::path& location) {
    T value{};
    if (!decodeInto(&value, shapeOf<T>(), RegularFile(location)))
        checkAndDecodeInto(&value, shapeOf<T>(), readDocument(location));
    return value;
}

} // namespace kinovane::json
