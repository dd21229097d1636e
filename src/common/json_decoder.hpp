#pragma once

#include <filesystem>
#include <string_view>

#include "common/json_shape.hpp"
#include "common/regular_file.hpp"

namespace kinovane::json {

/// Reads a whole document into the freshly made value at `target`, which has this shape. Throws
/// JSONDecodingError; the value is then of no use.
void decodeInto(void* target, const Shape& shape, std::string_view document);

/// The same for a document in a file, which is read in pieces, so that memory holds the value alone. Returns
/// false when the document is not valid JSON. Throws std::filesystem::filesystem_error, and
/// JSONDecodingError.
[[nodiscard]] bool decodeInto(void* target, const Shape& shape, RegularFile file);

template <class T>
T decode(std::string_view document) {
    T value{};
    decodeInto(&value, shapeOf<T>(), document);
    return value;
}

/// Reads the document at `location`. Throws JSONDecodingError, and std::filesystem::filesystem_error, also
/// for a document of more than `maximumDocumentSize` bytes.
template <class T>
T decodeFile(const std::filesystem::path& location) {
    T value{};
    if (decodeInto(&value, shapeOf<T>(), RegularFile(location)))
        return value;
    // The message tells line and column, and for that the whole text is needed.
    return decode<T>(readDocument(location));
}

} // namespace kinovane::json
