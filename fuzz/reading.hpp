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

/// A document that was not read, as a user is told.
struct Refusal {
    std::string path;
    std::string message;

    /// Only a document that is not JSON has a line and a column; one that holds no object has no path either.
    bool isSyntaxError() const { return path.empty() && message.starts_with("line "); }

    bool operator==(const Refusal&) const = default;
};

inline Refusal refusalOf(const JSONDecodingError& error) {
    Refusal refusal{error.path(), error.what()};
    promise(!refusal.message.empty(), "a refusal says why");
    promise(isLegible(refusal.message), "a person can read a refusal", refusal.message);
    promise(refusal.message.starts_with(refusal.path), "a refusal begins with the place", refusal.message);
    return refusal;
}

/// The record, or the refusal. Nothing else may come out of the library.
template <class Record>
std::variant<Record, Refusal> tryToRead(std::string_view document) {
    try {
        return decodeJSON<Record>(document);
    } catch (const JSONDecodingError& error) {
        return refusalOf(error);
    } catch (const std::exception& error) {
        promise(false, "only a JSONDecodingError comes out of reading", error.what());
        throw;
    }
}

/// The same, within the memory that a document of this size may take.
template <class Record>
std::variant<Record, Refusal> readDocument(std::string_view document) {
    std::optional<std::variant<Record, Refusal>> answer;
    const std::size_t peak = test::peakBytesOf([&] { answer = tryToRead<Record>(document); });
    constexpr std::size_t smallest = std::size_t{32} << 10U;
    if (std::holds_alternative<Refusal>(*answer))
        promise(peak < smallest + 8 * document.size(), "a document that is refused takes little memory",
                document);
    else
        promise(peak < smallest + 32 * document.size(), "a document takes memory in proportion to its size",
                document);
    return std::move(*answer);
}

} // namespace kinovane::fuzz
