// SPDX-License-Identifier: Apache-2.0

#include "common/json/decoder.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "common/json/parser.hpp"

namespace kinovane::json {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view withoutByteOrderMark(std::string_view document) {
    if (document.starts_with(byteOrderMark))
        document.remove_prefix(byteOrderMark.size());
    return document;
}

/// Checks the document as often as it takes to know that it is right, which is once unless a map holds very
/// many wrong values that later ones replace.
void check(const Shape& shape, std::string_view document, Survey& survey) {
    for (;;) {
        survey.forgetLists();
        Parser parser(nullptr, shape, survey);
        static_cast<void>(parser.takeWhole(document)); // Nothing is stored, so the receiver does not stop.
        const std::optional<Failure::Undecided> undecided = parser.conclude();
        if (!undecided)
            return;
        survey.firstKeys.insert_or_assign(undecided->map, undecided->firstKey);
    }
}

} // namespace

void decodeInto(void* target, const Shape& shape, std::string_view document) {
    const std::string_view text = withoutByteOrderMark(document);
    {
        Parser parser(target, shape);
        if (parser.takeWhole(text) && !parser.conclude())
            return;
    }
    shape.reset(target);
    checkAndDecodeInto(target, shape, document);
}

void checkAndDecodeInto(void* target, const Shape& shape, std::string_view document) {
    document = withoutByteOrderMark(document);
    Survey survey;
    check(shape, document, survey);
    survey.sortLists();
    Parser parser(target, shape, survey);
    static_cast<void>(parser.takeWhole(document)); // Its memory is not limited.
    static_cast<void>(parser.conclude());          // Every map has been decided.
}

bool decodeInto(void* target, const Shape& shape, const ReadChunk& read, std::uint64_t expectedSize) {
    constexpr std::size_t chunkSize = std::size_t{64} << 10U; // Stays in the processor's cache.
    // In this order: the parser takes its own address for the sign that a chunk ended too early, so the end
    // of a chunk must never be there.
    struct State {
        State(void* target, const Shape& shape) : parser(target, shape) {} // NOLINT(*-member-init)
        Parser parser;
        std::array<char, chunkSize> buffer; ///< Filled by reading.
    };
    const auto complete = [&] {
        State state(target, shape);
        const std::span<std::byte> buffer = std::as_writable_bytes(std::span(state.buffer));
        // A byte-order mark is recognised in one chunk only.
        std::size_t count = 0;
        while (count < byteOrderMark.size()) {
            const std::size_t more = read(buffer.subspan(count));
            if (more == 0)
                break;
            count += more;
        }
        std::string_view chunk = withoutByteOrderMark({state.buffer.data(), count});
        boost::json::error_code error;
        for (std::uint64_t size = count; count != 0; size += count) {
            // There may be more than was expected.
            state.parser.receiver().setDocumentSize(std::max(size, expectedSize));
            if (state.parser.take(chunk, true, error) < chunk.size() || error)
                return false;
            count = read(buffer);
            chunk = {state.buffer.data(), count};
        }
        state.parser.take({}, false, error);
        return !error && !state.parser.conclude();
    };
    if (complete())
        return true;
    shape.reset(target);
    return false;
}

} // namespace kinovane::json
