// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "common/json/shape.hpp"

namespace kinovane::json {

// The values of a document are stored in the default-constructed value at `target`, which has this shape; the
// value is unspecified when an exception is thrown. Beside the caller's text, decoding takes less than 8
// times the document's size (and 128 KiB) for a document that is refused, and less than 32 times for one that
// is accepted.

/// Decodes a whole document. Throws JSONDecodingError.
void decodeInto(void* target, const Shape& shape, std::string_view document);

/// Copies the next bytes of a document into the buffer and returns their number; 0 at the end.
using ReadChunk = std::function<std::size_t(std::span<std::byte> buffer)>;

/// Decodes a document that is read in chunks, so that its text is never in memory as a whole.
/// `expectedSize` is the document's size in bytes as far as it is known; 0 when it is not.
///
/// Returns false, and the value is empty, when the whole text is needed: to tell where the document is not
/// valid JSON, or because its values take so much memory that they have to be checked before they are stored.
/// Throws JSONDecodingError, and whatever `read` throws.
[[nodiscard]] bool decodeInto(void* target, const Shape& shape, const ReadChunk& read,
                              std::uint64_t expectedSize);

/// Decodes a whole document in two passes, which takes the least memory: the first checks it, and the second
/// stores its values. Throws JSONDecodingError.
void checkAndDecodeInto(void* target, const Shape& shape, std::string_view document);

template <class T>
T decode(std::string_view document) {
    T value{};
    decodeInto(&value, shapeOf<T>(), document);
    return value;
}

} // namespace kinovane::json
