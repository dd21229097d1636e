// SPDX-License-Identifier: Apache-2.0

#include "common/json/parser.hpp"

#include <cstddef>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>

#include <kinovane/json.hpp>

#include "common/json/syntax_error.hpp"
#include "common/json/token_buffer.hpp"
#include "common/json/value_builder.hpp"

namespace kinovane::json {

namespace {

namespace bj = boost::json;

constexpr std::size_t maxDepth = 512;

/// Passes the events of Boost.JSON's parser to a ValueBuilder. The constants, names and signatures are those
/// that boost::json::basic_parser requires; a handler that returns false stops the parser.
class EventHandler {
  public:
    using Error = boost::system::error_code;
    using View = bj::string_view;

    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;

    EventHandler(void* target, const Shape& shape, CheckResults* results)
        : builder_(target, shape, results) {}

    ValueBuilder& builder() { return builder_; }

    /// The next part of the number that is being parsed stands for this text.
    void replaceNumberPart(std::string_view text) { replacement_ = text; }

    bool on_document_begin(Error& /*error*/) { return true; }
    bool on_document_end(Error& /*error*/) { return true; }

    bool on_object_begin(Error& error) {
        builder_.beginObject();
        return proceed(error);
    }
    bool on_object_end(std::size_t /*count*/, Error& /*error*/) {
        builder_.end();
        return true;
    }
    bool on_array_begin(Error& error) {
        builder_.beginList();
        return proceed(error);
    }
    bool on_array_end(std::size_t /*count*/, Error& /*error*/) {
        builder_.end();
        return true;
    }

    bool on_key_part(View part, std::size_t /*size*/, Error& /*error*/) { return append(part); }
    bool on_key(View lastPart, std::size_t /*size*/, Error& error) {
        builder_.key(join(lastPart));
        return endToken(error);
    }
    bool on_string_part(View part, std::size_t /*size*/, Error& /*error*/) { return append(part); }
    bool on_string(View lastPart, std::size_t /*size*/, Error& error) {
        builder_.string(join(lastPart));
        return endToken(error);
    }

    // Boost.JSON's own conversion is not exact, so only the number's text is used.
    bool on_number_part(View part, Error& /*error*/) { return append(replaced(part)); }
    bool on_int64(std::int64_t /*value*/, View lastPart, Error& error) { return onNumber(lastPart, error); }
    bool on_uint64(std::uint64_t /*value*/, View lastPart, Error& error) { return onNumber(lastPart, error); }
    bool on_double(double /*value*/, View lastPart, Error& error) { return onNumber(lastPart, error); }

    bool on_bool(bool value, Error& error) {
        builder_.boolean(value);
        return proceed(error);
    }
    bool on_null(Error& error) {
        builder_.null();
        return proceed(error);
    }

    bool on_comment_part(View /*part*/, Error& /*error*/) { return true; }
    bool on_comment(View /*lastPart*/, Error& /*error*/) { return true; }

  private:
    bool append(View part) {
        if (!builder_.skipping())
            token_.append({part.data(), part.size()});
        return true;
    }

    View replaced(View part) {
        if (replacement_.empty())
            return part;
        const std::string_view text = std::exchange(replacement_, {});
        return {text.data(), text.size()};
    }

    std::string_view join(View lastPart) { return token_.join({lastPart.data(), lastPart.size()}); }

    bool onNumber(View lastPart, Error& error) {
        builder_.number(join(lastPart));
        return endToken(error);
    }

    bool endToken(Error& error) {
        token_.clear();
        return proceed(error);
    }

    /// Stops the parser when the values take too much memory.
    bool proceed(Error& error) const {
        if (!builder_.memoryExceeded())
            return true;
        error = bj::error::array_too_large; // The parser requires an error; no code examines which.
        return false;
    }

    ValueBuilder builder_;
    TokenBuffer token_;
    std::string_view replacement_;
};

std::string_view describe(const boost::system::error_code& code) {
    switch (static_cast<bj::error>(code.value())) {
    case bj::error::incomplete:
        return "the document ends too early";
    case bj::error::too_deep:
        return "nested more than 512 levels deep";
    case bj::error::illegal_leading_surrogate:
    case bj::error::illegal_trailing_surrogate:
    case bj::error::expected_utf16_escape:
        return "an escape in a string stands for no character";
    default:
        return "this is not valid JSON";
    }
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

// On the heap, because Boost.JSON's parser uses its own address as the end of a chunk to mark an incomplete
// token: a chunk must never really end there, as it could if both were on the stack.
struct Parser::Implementation {
    Implementation(void* target, const Shape& shape, CheckResults* results)
        : parser(options(), target, shape, results) {}

    std::size_t write(std::string_view text, bool more, boost::system::error_code& error) {
        return parser.write_some(more, text.data(), text.size(), error);
    }

    /// Parses a whole document. Boost.JSON sees the digit 0 in place of each long exponent, because versions
    /// before 1.83 refuse these.
    std::size_t writeAll(std::string_view document, const LongExponents& exponents,
                         boost::system::error_code& error) {
        std::size_t position = 0;
        for (const LongExponent& exponent : exponents) {
            const std::string_view before = document.substr(position, exponent.offset - position);
            position += write(before, true, error);
            if (error || position < exponent.offset)
                return position;
            parser.handler().replaceNumberPart(document.substr(exponent.offset, exponent.length));
            write("0", true, error);
            if (error)
                return position;
            position += exponent.length;
        }
        return position + write(document.substr(position), false, error);
    }

    ValueBuilder& builder() { return parser.handler().builder(); }

    bj::basic_parser<EventHandler> parser;
};

Parser::Parser(void* target, const Shape& shape)
    : implementation_(std::make_unique<Implementation>(target, shape, nullptr)) {}

Parser::Parser(void* target, const Shape& shape, CheckResults& results)
    : implementation_(std::make_unique<Implementation>(target, shape, &results)) {}

Parser::~Parser() = default;

Parser::Outcome Parser::parse(std::string_view document, const LongExponents* exponents) {
    implementation_->builder().setDocumentSize(document.size());
    boost::system::error_code error;
    std::size_t end =
        implementation_->writeAll(document, exponents == nullptr ? LongExponents() : *exponents, error);
    if (implementation_->builder().memoryExceeded())
        return Outcome::memoryExceeded;
    if (error == bj::error::exponent_overflow && exponents == nullptr)
        return Outcome::longExponent;
    if (error) {
        if (error == bj::error::syntax) {
            end = wrongLetterAt(document, end);
            if (const auto offset = invalidUTF8At(document, end))
                throwSyntaxError(document, *offset, "the text is not UTF-8");
        }
        throwSyntaxError(document, end, describe(error));
    }
    if (end < document.size())
        throwSyntaxError(document, end, "something follows the end of the document");
    return Outcome::done;
}

bool Parser::parseChunk(std::string_view chunk, std::uint64_t documentSize) {
    implementation_->builder().setDocumentSize(documentSize);
    boost::system::error_code error;
    return implementation_->write(chunk, true, error) == chunk.size() && !error;
}

bool Parser::parseEnd() {
    boost::system::error_code error;
    implementation_->write({}, false, error);
    return !error;
}

std::optional<UncheckedKeys> Parser::finish() const {
    const std::optional<Failure>& failure = implementation_->builder().failure();
    if (!failure)
        return std::nullopt;
    if (!failure->uncheckedKeys)
        throw JSONDecodingError(failure->path, failure->message());
    return failure->uncheckedKeys;
}

} // namespace kinovane::json
