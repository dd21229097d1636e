// SPDX-License-Identifier: Apache-2.0

#include "common/json/decoder.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "common/json/check_results.hpp"
#include "common/json/parser.hpp"

namespace kinovane::json {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view withoutByteOrderMark(std::string_view text) {
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    return text;
}

const LongExponents* exponentsIn(const CheckResults& results) {
    return results.longExponents ? &*results.longExponents : nullptr;
}

/// Throws JSONDecodingError when a value is wrong. One pass is enough, unless a number has a long exponent,
/// or a map holds very many wrong values that later ones replace.
CheckResults check(const Shape& shape, std::string_view document) {
    CheckResults results;
    for (;;) {
        results.clearLists();
        Parser parser(nullptr, shape, results);
        // Stores nothing, so memory is not exceeded.
        if (parser.parse(document, exponentsIn(results)) == Parser::Outcome::longExponent) {
            results.longExponents = longExponentsOf(document);
            continue;
        }
        const std::optional<UncheckedKeys> unchecked = parser.finish();
        if (!unchecked)
            break;
        results.uncheckedKeys.insert_or_assign(unchecked->map, unchecked->first);
    }
    results.sortLists();
    return results;
}

/// Returns false when the whole text is needed. Throws JSONDecodingError when a value is wrong.
bool parseInChunks(Parser& parser, const ReadChunk& read, std::uint64_t expectedSize) {
    constexpr std::size_t chunkSize = std::size_t{64} << 10U; // Fits the processor's cache.
    std::array<char, chunkSize> text;                         // NOLINT(*-member-init): filled by reading
    const std::span<std::byte> buffer = std::as_writable_bytes(std::span(text));
    std::size_t count = 0;
    // The first chunk holds a byte-order mark as a whole.
    while (count < byteOrderMark.size()) {
        const std::size_t added = read(buffer.subspan(count));
        if (added == 0)
            break;
        count += added;
    }
    std::string_view chunk = withoutByteOrderMark({text.data(), count});
    for (std::uint64_t size = count; count != 0; size += count) {
        // The document may be larger than was expected.
        if (!parser.parseChunk(chunk, std::max(size, expectedSize)))
            return false;
        count = read(buffer);
        chunk = {text.data(), count};
    }
    return parser.parseEnd() && !parser.finish();
}

} // namespace

void decodeInto(void* target, const Shape& shape, std::string_view document) {
    const std::string_view text = withoutByteOrderMark(document);
    {
        Parser parser(target, shape);
        if (parser.parse(text) == Parser::Outcome::done && !parser.finish())
            return;
    }
    shape.reset(target);
    checkAndDecodeInto(target, shape, document);
}

bool decodeInto(void* target, const Shape& shape, const ReadChunk& read, std::uint64_t expectedSize) {
    {
        Parser parser(target, shape);
        if (parseInChunks(parser, read, expectedSize))
            return true;
    }
    shape.reset(target);
    return false;
}

void checkAndDecodeInto(void* target, const Shape& shape, std::string_view document) {
    document = withoutByteOrderMark(document);
    CheckResults results = check(shape, document);
    Parser parser(target, shape, results);
    static_cast<void>(parser.parse(document, exponentsIn(results))); // Memory is not limited.
    static_cast<void>(parser.finish());                              // Every key has been checked.
}

} // namespace kinovane::json
