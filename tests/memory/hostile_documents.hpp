// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "common/json/shape.hpp"

namespace kinovane::test {

/// How large the documents are. Their number makes them slow without optimisation.
#ifdef NDEBUG
inline constexpr std::size_t hostileSize = std::size_t{2} << 20U;
#else
inline constexpr std::size_t hostileSize = std::size_t{1} << 18U;
#endif

/// A document that makes a reader take as much memory as it can be made to.
struct HostileDocument {
    std::string sentence;
    std::string text;
    bool accepted;
};

/// Calls `use` with every such document of a record, each of about `size` bytes.
void forEachHostileDocument(const json::Shape& record, std::size_t size,
                            const std::function<void(const HostileDocument&)>& use);

} // namespace kinovane::test
