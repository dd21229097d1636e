// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kinovane::json {

/// What is wrong with a value, and where. The path is built from the inside out, only once something has
/// failed.
class Failure {
  public:
    std::string path;
    std::string text; ///< Follows the path: " is missing", or ": expected …".

    /// Whether a map holds a wrong value is not known: only its keys before this one were examined.
    struct Undecided {
        std::size_t map; ///< Its number in the document.
        std::string firstKey;
    };
    std::optional<Undecided> undecided;

    explicit Failure(std::string about) : text(std::move(about)) {}

    static Failure missing() { return Failure(" is missing"); }
    static Failure mismatch(std::string_view expected, std::string_view found);

    /// The same failure seen from the object, or the list, that holds the value.
    void within(std::string_view key);
    void within(std::size_t index);

    std::string message() const;

  private:
    void prepend(std::string outer);
};

/// The message of a syntax error: line and column (both from 1, the column in characters) of the byte at
/// `offset`.
std::string syntaxMessage(std::string_view document, std::size_t offset, std::string_view what);

} // namespace kinovane::json
