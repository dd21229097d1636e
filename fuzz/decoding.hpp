// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include <kinovane/json.hpp>

#include "promise.hpp"
#include "support/heap_count.hpp"
#include "unicode.hpp"

namespace kinovane::fuzz {

/// The texts of a JSONDecodingError.
struct ErrorTexts {
    std::string path;
    std::string message;

    /// The path is empty also when the document is not an object.
    bool isSyntaxError() const { return path.empty() && message.starts_with("line "); }

    bool operator==(const ErrorTexts&) const = default;
};

/// The record that a document holds, or the error of decoding it.
template <class Record>
using Outcome = std::variant<Record, ErrorTexts>;

inline ErrorTexts textsOf(const JSONDecodingError& error) {
    ErrorTexts texts{error.path(), error.what()};
    promise(!texts.message.empty(), "an error has a message");
    promise(isLegible(texts.message), "a message is legible", texts.message);
    promise(texts.message.starts_with(texts.path), "a message begins with the path", texts.message);
    return texts;
}

/// Decodes a document, which throws nothing but JSONDecodingError.
template <class Record>
Outcome<Record> decode(std::string_view document) {
    try {
        return decodeJSON<Record>(document);
    } catch (const JSONDecodingError& error) {
        return textsOf(error);
    } catch (const std::exception& error) {
        promise(false, "decoding throws nothing but JSONDecodingError", error.what());
        throw;
    }
}

/// The same, within the memory that a document of this size may take.
template <class Record>
Outcome<Record> decodeWithinMemory(std::string_view document) {
    std::optional<Outcome<Record>> outcome;
    const std::size_t peak = test::peakBytesOf([&] { outcome = decode<Record>(document); });
    constexpr std::size_t smallest = std::size_t{32} << 10U;
    if (std::holds_alternative<ErrorTexts>(*outcome))
        promise(peak < smallest + 8 * document.size(), "a document that is refused takes little memory",
                document);
    else
        promise(peak < smallest + 32 * document.size(), "a document takes memory in proportion to its size",
                document);
    return std::move(*outcome);
}

} // namespace kinovane::fuzz
