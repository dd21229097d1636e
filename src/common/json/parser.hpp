// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "common/json/check_results.hpp"
#include "common/json/failure.hpp"
#include "common/json/long_exponents.hpp"
#include "common/json/shape.hpp"

namespace kinovane::json {

/// Parses one document and builds its value. The parsing is done by Boost.JSON, which only the source
/// includes.
class Parser {
  public:
    /// Stores the values in `target`, and stops when they would take too much memory.
    Parser(void* target, const Shape& shape);

    /// When `target` is null, only checks the values, and fills `results`. Otherwise stores the values by the
    /// results of the check, without a limit on memory.
    Parser(void* target, const Shape& shape, CheckResults& results);

    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;
    ~Parser();

    enum class Outcome {
        done,
        memoryExceeded, ///< The values would take too much memory.
        longExponent,   ///< Has to be parsed again, with the long exponents of the document.
    };

    /// Parses a whole document. `exponents` are its long exponents, or null when they are not known. Throws
    /// JSONDecodingError when the document is not valid JSON.
    Outcome parse(std::string_view document, const LongExponents* exponents = nullptr);

    /// Parses the next chunk of a document that has at least `documentSize` bytes. Returns false when the
    /// document is not valid JSON, or its values would take too much memory.
    bool parseChunk(std::string_view chunk, std::uint64_t documentSize);

    /// Ends a document that was parsed in chunks. Returns false when it is not complete.
    bool parseEnd();

    /// Called after the end of a document. Throws JSONDecodingError when a value is wrong. Returns the keys
    /// that another pass has to check.
    std::optional<UncheckedKeys> finish() const;

  private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace kinovane::json
