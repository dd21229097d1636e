// SPDX-License-Identifier: Apache-2.0

#include "common/json/parser.hpp"

#include <boost/json/basic_parser_impl.hpp>

#include <kinovane/json.hpp>

#include "common/json/failure.hpp"
#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

namespace bj = boost::json;

constexpr std::size_t maxDepth = 512;

std::string_view describe(bj::error_code code) {
    switch (static_cast<bj::error>(code.value())) {
    case bj::error::incomplete:
        return "the document ends too early";
    case bj::error::too_deep:
        return "nested more than 512 levels deep";
    case bj::error::exponent_overflow:
        return "the number's exponent is too large";
    case bj::error::illegal_leading_surrogate:
    case bj::error::illegal_trailing_surrogate:
    case bj::error::expected_utf16_escape:
        return "an escape in a string stands for no character";
    default:
        return "this is not valid JSON";
    }
}

/// Whether the end of a document's beginning stands inside a string.
bool endsInString(std::string_view beginning) {
    bool inString = false;
    for (std::size_t position = 0; position < beginning.size(); ++position)
        if (beginning[position] == '"')
            inString = !inString;
        else if (inString && beginning[position] == '\\')
            ++position;
    return inString;
}

/// The parser points at the beginning of a string that is not UTF-8; a user wants the place itself.
std::optional<std::size_t> encodingFault(std::string_view document, std::size_t from) {
    const bool inString = endsInString(document.substr(0, from));
    const auto plain = [](char byte) {
        return byte != '"' && byte != '\\' && static_cast<unsigned char>(byte) >= 0x20;
    };
    if (!inString && from < document.size() && sequenceLength(document, from) == 0)
        return from;
    while (inString && from < document.size() && plain(document[from])) {
        const std::size_t length = sequenceLength(document, from);
        if (length == 0)
            return from;
        from += length;
    }
    return std::nullopt;
}

[[noreturn]] void throwSyntaxError(std::string_view document, std::size_t offset, std::string_view what) {
    throw JSONDecodingError({}, syntaxMessage(document, offset, what));
}

bj::parse_options options() {
    bj::parse_options options;
    options.max_depth = maxDepth;
    return options;
}

} // namespace

Parser::Parser(void* target, const Shape& shape) : parser_(options(), target, shape) {}

Parser::Parser(void* target, const Shape& shape, Survey& survey)
    : parser_(options(), target, shape, survey) {}

std::size_t Parser::take(std::string_view chunk, bool more, bj::error_code& error) {
    return parser_.write_some(more, chunk.data(), chunk.size(), error);
}

bool Parser::takeWhole(std::string_view document) {
    receiver().setDocumentSize(document.size());
    bj::error_code error;
    const std::size_t end = take(document, false, error);
    if (receiver().exceeded())
        return false;
    if (error) {
        if (error == bj::error::syntax)
            if (const auto fault = encodingFault(document, end))
                throwSyntaxError(document, *fault, "the text is not UTF-8");
        throwSyntaxError(document, end, describe(error));
    }
    if (end < document.size())
        throwSyntaxError(document, end, "something follows the end of the document");
    return true;
}

std::optional<Failure::Undecided> Parser::conclude() const {
    const std::optional<Failure>& failure = parser_.handler().failure();
    if (!failure)
        return std::nullopt;
    if (!failure->undecided)
        throw JSONDecodingError(failure->path, failure->message());
    return failure->undecided;
}

} // namespace kinovane::json
