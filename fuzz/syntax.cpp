// SPDX-License-Identifier: Apache-2.0

// Whether a text is valid JSON: the decoder and an independent parser agree on every text.

#include <algorithm>
#include <charconv>
#include <cstddef>

#include <kinovane/workspace.hpp>

#include "decoding.hpp"
#include "json_grammar.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

/// Removes `before` and the number after it from the front of a message; returns the number.
std::size_t removeNumber(std::string_view& message, std::string_view before) {
    promise(message.starts_with(before), "a syntax error has line and column", message);
    message.remove_prefix(before.size());
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(message.data(), message.data() + message.size(), number);
    promise(error == std::errc() && number > 0, "lines and columns are counted from 1", message);
    message.remove_prefix(static_cast<std::size_t>(end - message.data()));
    return number;
}

/// The line exists, and the column is that of one of its characters or just after them.
void checkPosition(std::string_view text, const ErrorTexts& error) {
    std::string_view message = error.message;
    const std::size_t line = removeNumber(message, "line ");
    const std::size_t column = removeNumber(message, ", column ");
    promise(message.starts_with(": ") && message.size() > 2, "a syntax error has a description", message);
    for (std::size_t above = 1; above < line; ++above) {
        const std::size_t lineEnd = text.find('\n');
        promise(lineEnd != std::string_view::npos, "a syntax error is on a line of the text", error.message);
        text.remove_prefix(lineEnd + 1);
    }
    promise(column <= text.substr(0, text.find('\n')).size() + 1, "a syntax error is in a column of its line",
            error.message);
}

/// Every field of this record is optional, so any object is one unless a field's value is wrong.
void compare(std::string_view text) {
    const GrammarResult grammar = parseByGrammar(text);
    const auto outcome = decodeWithinMemory<FilmTarget>(text);
    const auto* error = std::get_if<ErrorTexts>(&outcome);
    const bool syntaxError = error != nullptr && error->isSyntaxError();
    if (syntaxError)
        checkPosition(text, *error);
    promise(syntaxError == !grammar.valid,
            grammar.valid ? "valid JSON is no syntax error" : "invalid JSON is a syntax error", text);
    if (grammar.valid && !grammar.isObject)
        promise(error != nullptr && error->path.empty() &&
                    error->message.starts_with("expected an object, found "),
                "a record is an object", text);
    if (grammar.isObject)
        promise(error == nullptr || !error->path.empty(), "a wrong value in an object has a path", text);
}

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kinovane::fuzz::compare(kinovane::fuzz::textOf(data, size));
    return 0;
}
