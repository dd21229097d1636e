#include "common/json_decoder.hpp"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>

#include <kinovane/json.hpp>

#include "common/json_failure.hpp"
#include "common/json_receiver.hpp"
#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

namespace bj = boost::json;

constexpr std::size_t deepestNesting = 512;

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
    for (std::size_t position = 0; position < beginning.size(); ++position) {
        if (beginning[position] == '"')
            inString = !inString;
        else if (inString && beginning[position] == '\\')
            ++position;
    }
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

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

class Parser {
  public:
    Parser(void* target, const Shape& shape) : parser_(options(), target, shape) {}

    /// Takes a piece of the document and returns how much of it was used: less than all when the document has
    /// ended, or when `error` says what is wrong.
    std::size_t take(std::string_view piece, bool more, bj::error_code& error) {
        return parser_.write_some(more, piece.data(), piece.size(), error);
    }

    void throwFailure() const {
        if (const std::optional<Failure>& failure = parser_.handler().failure())
            throw JSONDecodingError(failure->path, failure->message());
    }

  private:
    static bj::parse_options options() {
        bj::parse_options options;
        options.max_depth = deepestNesting;
        return options;
    }

    bj::basic_parser<Receiver> parser_;
};

} // namespace

void decodeInto(void* target, const Shape& shape, std::string_view document) {
    if (document.starts_with(byteOrderMark))
        document.remove_prefix(byteOrderMark.size());
    Parser parser(target, shape);
    bj::error_code error;
    const std::size_t end = parser.take(document, false, error);
    if (error) {
        if (error == bj::error::syntax)
            if (const auto fault = encodingFault(document, end))
                throwSyntaxError(document, *fault, "the text is not UTF-8");
        throwSyntaxError(document, end, describe(error));
    }
    if (end < document.size())
        throwSyntaxError(document, end, "something follows the end of the document");
    parser.throwFailure();
}

bool decodeInto(void* target, const Shape& shape, RegularFile file) {
    constexpr std::size_t pieceSize = std::size_t{64} << 10U; // Stays in the processor's cache.
    // In this order: the parser takes its own address for the sign that a piece ended too early, so the end
    // of a piece must never be there.
    struct State {
        State(void* target, const Shape& shape) : parser(target, shape) {} // NOLINT(*-member-init)
        Parser parser;
        std::array<char, pieceSize> buffer; ///< Filled by reading.
    };
    State state(target, shape);
    bj::error_code error;
    bool first = true;
    while (const std::size_t count =
               file.readDocumentPiece(std::as_writable_bytes(std::span(state.buffer)))) {
        std::string_view piece(state.buffer.data(), count);
        if (std::exchange(first, false) && piece.starts_with(byteOrderMark))
            piece.remove_prefix(byteOrderMark.size());
        if (state.parser.take(piece, true, error) < piece.size() || error)
            return false;
    }
    state.parser.take({}, false, error);
    if (error)
        return false;
    state.parser.throwFailure();
    return true;
}

} // namespace kinovane::json
