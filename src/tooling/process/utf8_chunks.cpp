// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/utf8_chunks.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/utf8.hpp"

namespace kinovane {

namespace {

/// How many bytes the first byte of a sequence announces; 1 for every other byte.
std::size_t announcedLength(char first) {
    const auto byte = static_cast<unsigned char>(first);
    if (byte >= 0xF0)
        return 4;
    if (byte >= 0xE0)
        return 3;
    return byte >= 0xC0 ? 2 : 1;
}

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// How many bytes at the end of a text may be the beginning of a character. A byte that begins a sequence
/// ends every sequence before it, so a text may be divided in front of it whatever follows.
std::size_t incompleteLength(std::string_view text) {
    const std::size_t longest = std::min<std::size_t>(3, text.size());
    for (std::size_t length = 1; length <= longest; ++length) {
        const char byte = text[text.size() - length];
        if (!continues(byte))
            return announcedLength(byte) > length ? length : 0;
    }
    return 0;
}

} // namespace

std::string UTF8Chunks::next(std::string_view bytes) {
    std::string chunk = std::exchange(incomplete_, {});
    chunk += bytes;
    const std::size_t heldBack = incompleteLength(chunk);
    incomplete_ = chunk.substr(chunk.size() - heldBack);
    chunk.resize(chunk.size() - heldBack);
    return repairUTF8(std::move(chunk));
}

std::string UTF8Chunks::last() { return repairUTF8(std::exchange(incomplete_, {})); }

} // namespace kinovane
