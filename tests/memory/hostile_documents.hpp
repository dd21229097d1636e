// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "common/json/shape.hpp"

namespace kinovane::test {

/// The size of the documents, smaller without optimisation, where the many documents take long.
#ifdef NDEBUG
inline constexpr std::size_t hostileSize = std::size_t{2} << 20U;
#else
inline constexpr std::size_t hostileSize = std::size_t{1} << 18U;
#endif

/// A document meant to make the decoder use as much memory as possible.
struct HostileDocument {
    std::string sentence;
    std::string text;
    bool accepted; ///< Whether the document is valid.
};

/// Calls `use` with each such document of a record. Each has about `size` bytes.
void forEachHostileDocument(const json::Shape& record, std::size_t size,
                            const std::function<void(const HostileDocument&)>& use);

} // namespace kinovane::test
