#include "common/json_decoder.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <boost/json/basic_parser_impl.hpp>

#include <kinovane/json.hpp>

#include "common/json_failure.hpp"
#include "common/json_number.hpp"
#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

namespace bj = boost::json;

constexpr std::size_t deepestNesting = 512;

std::string_view nameOf(Kind kind) {
    switch (kind) {
    case Kind::text:
        return "a string";
    case Kind::integer:
        return "an integer";
    case Kind::real:
        return "a number";
    case Kind::boolean:
        return "true or false";
    case Kind::list:
        return "a list";
    case Kind::map:
    case Kind::record:
        break;
    }
    return "an object";
}

/// A number as it is quoted in a message.
std::string quotedNumber(std::string_view text) {
    constexpr std::size_t longest = 40;
    return text.size() <= longest ? std::string(text) : std::string(text.substr(0, longest)) + "…";
}

/// What a frame has only when it is needed, which is seldom.
struct Extra {
    std::map<std::size_t, Failure> rowFailures; ///< Of a record's members, or of a list's elements.
    std::map<std::string, Failure, std::less<>> keyFailures; ///< Of a map's values.
    std::shared_ptr<void> form;
    void* record = nullptr; ///< What the form is for.
};

/// An object or a list that is being read.
struct Frame {
    const Shape* shape = nullptr;
    void* target = nullptr;
    std::size_t current = 0;    ///< The row, or the element, that is being read.
    std::uint64_t seen = 0;     ///< The rows met so far.
    std::string_view entryKey;  ///< Of the value of a map that is being read.
    void* entryValue = nullptr; ///< Its address.
    std::unique_ptr<Extra> extra;

    Extra& needExtra() {
        if (!extra)
            extra = std::make_unique<Extra>();
        return *extra;
    }

    void note(Failure&& failure);
    void forgetRow(std::size_t row) {
        if (extra)
            extra->rowFailures.erase(row);
    }
    std::optional<Failure> firstFailure();
};

void Frame::note(Failure&& failure) {
    switch (shape->kind) {
    case Kind::record:
        failure.within(shape->rows[current].key);
        needExtra().rowFailures.insert_or_assign(current, std::move(failure));
        break;
    case Kind::map:
        failure.within(entryKey);
        needExtra().keyFailures.insert_or_assign(std::string(entryKey), std::move(failure));
        break;
    default:
        // The elements of a list come in order, so the first failure is the one to report.
        if (needExtra().rowFailures.empty()) {
            failure.within(current);
            extra->rowFailures.emplace(current, std::move(failure));
        }
    }
}

std::optional<Failure> Frame::firstFailure() {
    if (shape->kind == Kind::map) {
        if (!extra || extra->keyFailures.empty())
            return std::nullopt;
        return std::move(extra->keyFailures.begin()->second);
    }
    const std::uint64_t missing = shape->requiredRows & ~seen;
    const bool wrong = extra && !extra->rowFailures.empty();
    if (missing == 0) { // As in every list, which may have any number of elements.
        if (!wrong)
            return std::nullopt;
        return std::move(extra->rowFailures.begin()->second);
    }
    const auto firstMissing = static_cast<std::size_t>(std::countr_zero(missing)); // 64 when there is none
    if (wrong && extra->rowFailures.begin()->first < firstMissing)
        return std::move(extra->rowFailures.begin()->second);
    Failure failure = Failure::missing();
    failure.within(shape->rows[firstMissing].key);
    return failure;
}

/// Takes the parser's events and puts the values where they belong. A wrong value does not stop it, because a
/// syntax error further on would be the one to report, and a later key may replace the wrong value.
class Receiver {
  public:
    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;

    Receiver(void* target, const Shape& shape) : rootTarget_(target), rootShape_(&shape) {
        frames_.reserve(16);
    }

    const std::optional<Failure>& failure() const { return failure_; }

    // The names and signatures from here on are the parser's.
    using Code = bj::error_code;
    using View = bj::string_view;

    bool on_document_begin(Code& /*error*/) { return true; }
    bool on_document_end(Code& /*error*/) { return true; }

    bool on_object_begin(Code& /*error*/) {
        begin("an object", [](Kind kind) { return kind == Kind::record || kind == Kind::map; });
        return true;
    }
    bool on_object_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }
    bool on_array_begin(Code& /*error*/) {
        begin("a list", [](Kind kind) { return kind == Kind::list; });
        return true;
    }
    bool on_array_end(std::size_t /*count*/, Code& /*error*/) {
        end();
        return true;
    }

    bool on_key_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_key(View rest, std::size_t /*size*/, Code& /*error*/) {
        if (skipped_ == 0)
            openKey(joined(rest));
        parts_.clear();
        return true;
    }

    bool on_string_part(View part, std::size_t /*size*/, Code& /*error*/) { return keepPart(part); }
    bool on_string(View rest, std::size_t /*size*/, Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::text)
                static_cast<std::string*>(place.open())->assign(joined(rest));
            else
                mismatch(place, "a string");
        }
        parts_.clear();
        return true;
    }

    bool on_number_part(View part, Code& /*error*/) { return keepPart(part); }
    bool on_int64(std::int64_t /*value*/, View rest, Code& /*error*/) { return number(rest); }
    bool on_uint64(std::uint64_t /*value*/, View rest, Code& /*error*/) { return number(rest); }
    bool on_double(double /*value*/, View rest, Code& /*error*/) { return number(rest); }

    bool on_bool(bool value, Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.shape->kind == Kind::boolean)
                *static_cast<bool*>(place.open()) = value;
            else
                mismatch(place, value ? "true" : "false");
        }
        return true;
    }

    bool on_null(Code& /*error*/) {
        if (const Place place = nextPlace(); place.shape != nullptr) {
            if (place.row != nullptr && !place.row->required)
                place.row->clear(place.address);
            else
                mismatch(place, "null");
        }
        return true;
    }

    bool on_comment_part(View /*part*/, Code& /*error*/) { return true; }
    bool on_comment(View /*rest*/, Code& /*error*/) { return true; }

  private:
    /// Where the next value belongs; nowhere, when its key is unknown.
    struct Place {
        const Shape* shape = nullptr;
        void* address = nullptr;
        const Row* row = nullptr; ///< Of a record's member; the address is then the record's.

        void* open() const { return row != nullptr ? row->open(address) : address; }
    };

    static constexpr std::size_t noRow = SIZE_MAX;

    Place nextPlace() {
        if (skipped_ != 0)
            return {};
        if (frames_.empty())
            return {rootShape_, rootTarget_, nullptr};
        Frame& frame = frames_.back();
        switch (frame.shape->kind) {
        case Kind::record: {
            if (frame.current == noRow)
                return {};
            const Row& row = frame.shape->rows[frame.current];
            return {row.shape, frame.target, &row};
        }
        case Kind::map:
            return {frame.shape->element, frame.entryValue, nullptr};
        default:
            ++frame.current; // Begins at the index before the first.
            return {frame.shape->element, frame.shape->append(frame.target), nullptr};
        }
    }

    template <class Fits>
    void begin(std::string_view found, Fits fits) {
        if (skipped_ != 0) {
            ++skipped_;
            return;
        }
        const Place place = nextPlace();
        if (place.shape == nullptr || !fits(place.shape->kind)) {
            if (place.shape != nullptr)
                mismatch(place, found);
            skipped_ = 1;
            return;
        }
        Frame& frame = frames_.emplace_back();
        frame.shape = place.shape;
        frame.target = place.open();
        frame.current = noRow;
        if (frame.shape->makeForm != nullptr) {
            Extra& extra = frame.needExtra();
            extra.record = frame.target;
            extra.form = frame.shape->makeForm();
            frame.target = extra.form.get();
        }
    }

    void end() {
        if (skipped_ != 0) {
            --skipped_;
            return;
        }
        Frame& frame = frames_.back();
        std::optional<Failure> failure = frame.firstFailure();
        if (frame.shape->takeForm != nullptr && !failure)
            frame.shape->takeForm(frame.target, frame.extra->record);
        frames_.pop_back();
        if (failure)
            note(std::move(*failure));
    }

    void openKey(std::string_view key) {
        Frame& frame = frames_.back();
        if (frame.shape->kind == Kind::map) {
            const Shape::Entry entry = frame.shape->enter(frame.target, key);
            frame.entryKey = entry.key;
            frame.entryValue = entry.value;
            if (frame.extra)
                frame.extra->keyFailures.erase(std::string(key));
            return;
        }
        frame.current = rowOf(frame, key);
        if (frame.current == noRow)
            return;
        const std::uint64_t bit = std::uint64_t{1} << frame.current;
        if ((frame.seen & bit) != 0) {
            // The last of two equal keys wins, so nothing of the first may be left.
            frame.shape->rows[frame.current].clear(frame.target);
            frame.forgetRow(frame.current);
        }
        frame.seen |= bit;
    }

    /// Most documents have their keys in declared order, so the row after the last one is looked at first.
    static std::size_t rowOf(const Frame& frame, std::string_view key) {
        const std::span<const Row> rows = frame.shape->rows;
        const std::size_t next = frame.current + 1; // noRow + 1 is 0
        if (next < rows.size() && rows[next].key == key)
            return next;
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return each.key == key; });
        return row == rows.end() ? noRow : static_cast<std::size_t>(row - rows.begin());
    }

    bool number(View rest) {
        if (const Place place = nextPlace(); place.shape != nullptr)
            putNumber(place, joined(rest));
        parts_.clear();
        return true;
    }

    void putNumber(const Place& place, std::string_view text) {
        if (place.shape->kind == Kind::integer) {
            const IntegerValue integer = integerValue(text);
            if (integer.fault == NumberFault::none)
                *static_cast<std::int64_t*>(place.open()) = integer.value;
            else
                note(Failure::mismatch(
                    integer.fault == NumberFault::fraction ? "an integer" : "an integer that fits 64 bits",
                    quotedNumber(text)));
        } else if (place.shape->kind == Kind::real) {
            if (const std::optional<double> real = realValue(text))
                *static_cast<double*>(place.open()) = *real;
            else
                note(Failure::mismatch("a number that fits a double", quotedNumber(text)));
        } else {
            mismatch(place, "a number");
        }
    }

    void mismatch(const Place& place, std::string_view found) {
        note(Failure::mismatch(nameOf(place.shape->kind), found));
    }

    void note(Failure&& failure) {
        if (frames_.empty())
            failure_ = std::move(failure);
        else
            frames_.back().note(std::move(failure));
    }

    bool keepPart(View part) {
        if (skipped_ == 0)
            parts_.append(part.data(), part.size());
        return true;
    }

    /// The parts so far and the rest; valid until the next event.
    std::string_view joined(View rest) {
        if (parts_.empty())
            return {rest.data(), rest.size()};
        parts_.append(rest.data(), rest.size());
        return parts_;
    }

    void* rootTarget_;
    const Shape* rootShape_;
    std::vector<Frame> frames_;
    std::size_t skipped_ = 0; ///< How deep inside a value that belongs nowhere.
    std::string parts_;
    std::optional<Failure> failure_;
};

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
    constexpr std::size_t pieceSize = std::size_t{64}
                                      << 10U; // Stays in the processor's cache while it is parsed.
    std::array<char, pieceSize> buffer;       // NOLINT(*-member-init): filled by reading
    Parser parser(target, shape);
    bj::error_code error;
    bool first = true;
    while (const std::size_t count = file.readDocumentPiece(std::as_writable_bytes(std::span(buffer)))) {
        std::string_view piece(buffer.data(), count);
        if (std::exchange(first, false) && piece.starts_with(byteOrderMark))
            piece.remove_prefix(byteOrderMark.size());
        if (parser.take(piece, true, error) < piece.size() || error)
            return false;
    }
    parser.take({}, false, error);
    if (error)
        return false;
    parser.throwFailure();
    return true;
}

} // namespace kinovane::json
