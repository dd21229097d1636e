// SPDX-License-Identifier: Apache-2.0

// What is JSON and what is not: the reader and an independent grammar agree on every text.

#include <algorithm>
#include <charconv>
#include <cstddef>

#include <kinovane/workspace.hpp>

#include "decoding.hpp"
#include "json_grammar.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

/// Takes a number and the text after it from the front of a message.
std::size_t takeNumber(std::string_view& message, std::string_view before) {
    promise(message.starts_with(before), "a syntax error tells line and column", message);
    message.remove_prefix(before.size());
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(message.data(), message.data() + message.size(), number);
    promise(error == std::errc() && number > 0, "lines and columns are counted from 1", message);
    message.remove_prefix(static_cast<std::size_t>(end - message.data()));
    return number;
}

/// The line exists, and the column is one of its characters or just after them.
void checkPlace(std::string_view text, const Refusal& refusal) {
    std::string_view message = refusal.message;
    const std::size_t line = takeNumber(message, "line ");
    const std::size_t column = takeNumber(message, ", column ");
    promise(message.starts_with(": ") && message.size() > 2, "a syntax error says what is wrong", message);
    for (std::size_t above = 1; above < line; ++above) {
        const std::size_t lineEnd = text.find('\n');
        promise(lineEnd != std::string_view::npos, "a syntax error is on a line of the text",
                refusal.message);
        text.remove_prefix(lineEnd + 1);
    }
    promise(column <= text.substr(0, text.find('\n')).size() + 1, "a syntax error is in a column of its line",
            refusal.message);
}

/// Every field of this record is optional, so any object is one unless a field's value is wrong.
void compare(std::string_view text) {
    const Reading reading = readByGrammar(text);
    const auto outcome = decodeWithinMemory<FilmTarget>(text);
    const auto* refusal = std::get_if<Refusal>(&outcome);
    const bool syntaxError = refusal != nullptr && refusal->isSyntaxError();
    if (syntaxError)
        checkPlace(text, *refusal);
    if (reading.longExponent)
        return;
    promise(syntaxError == !reading.valid,
            reading.valid ? "JSON is no syntax error" : "what is not JSON is a syntax error", text);
    if (reading.valid && !reading.isObject)
        promise(refusal != nullptr && refusal->path.empty() &&
                    refusal->message.starts_with("expected an object, found "),
                "a record is an object", text);
    if (reading.isObject)
        promise(refusal == nullptr || !refusal->path.empty(), "a wrong value of an object has a place", text);
}

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kinovane::fuzz::compare(kinovane::fuzz::textOf(data, size));
    return 0;
}
