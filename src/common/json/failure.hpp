// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kinovane::json {

/// Keys of a map that have not been checked: `first` and those after it. The values of the others are right.
struct UncheckedKeys {
    std::size_t map; ///< Its number in the document.
    std::string first;
};

/// What is wrong with a value, and where. The path is built from the inside out, and only when something is
/// wrong.
class Failure {
  public:
    std::string path;
    std::string text; ///< Follows the path: " is missing", or ": expected …".

    /// Set when it is not known yet whether a value is wrong; path and text are empty then.
    std::optional<UncheckedKeys> uncheckedKeys;

    explicit Failure(std::string about) : text(std::move(about)) {}

    static Failure missing() { return Failure(" is missing"); }
    static Failure mismatch(std::string_view expected, std::string_view found);

    /// Extends the path by the key, or the index, of the value that holds the failure.
    void prependKey(std::string_view key);
    void prependIndex(std::size_t index);

    std::string message() const;

  private:
    void prepend(std::string outer);
};

} // namespace kinovane::json
