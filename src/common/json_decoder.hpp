#pragma once

#include <string_view>

#include "common/json_shape.hpp"

namespace kinovane::json {

/// Reads a whole document into the freshly made value at `target`, which has this shape. Throws
/// JSONDecodingError; the value is then of no use.
void decodeInto(void* target, const Shape& shape, std::string_view document);

template <class T>
T decode(std::string_view document) {
    T value{};
    decodeInto(&value, shapeOf<T>(), document);
    return value;
}

} // namespace kinovane::json
