// SPDX-License-Identifier: Apache-2.0

#include "common/text_buffer.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <sys/mman.h>

namespace kinovane {

namespace {

constexpr std::size_t firstPiece = std::size_t{1} << 10U;
constexpr std::size_t largestPiece = std::size_t{4} << 20U;

/// What processors call a large page.
constexpr std::size_t largePage = std::size_t{2} << 20U;

/// Memory that is filled from start to end is had more cheaply in large pages, on systems that give them to
/// whoever asks.
void preferLargePages([[maybe_unused]] char* memory, [[maybe_unused]] std::size_t size) noexcept {
#ifdef MADV_HUGEPAGE
    const auto misplaced = reinterpret_cast<std::uintptr_t>(memory) % largePage;
    const std::size_t skipped = misplaced == 0 ? 0 : largePage - misplaced;
    if (size >= skipped + largePage)
        ::madvise(memory + skipped, (size - skipped) / largePage * largePage, MADV_HUGEPAGE);
#endif
}

} // namespace

TextBuffer::Memory TextBuffer::allocate(std::size_t size) {
    const bool large = size % largePage == 0;
    const std::align_val_t alignment{large ? largePage : alignof(std::max_align_t)};
    Memory memory(static_cast<char*>(::operator new(size, alignment)), Release{alignment});
    if (large)
        preferLargePages(memory.get(), size);
    return memory;
}

void TextBuffer::appendAcross(std::string_view text) {
    while (!text.empty()) {
        const std::string_view part = text.substr(0, room().size());
        append(part);
        text.remove_prefix(part.size());
    }
}

void TextBuffer::addPiece(std::size_t size) {
    if (!pieces_.empty()) {
        Piece& last = pieces_.back();
        last.length = static_cast<std::size_t>(end_ - last.text.get());
        total_ += last.length;
    }
    const std::size_t capacity = std::max(size, std::clamp(total_, firstPiece, largestPiece));
    pieces_.push_back({allocate(capacity), 0});
    end_ = pieces_.back().text.get();
    limit_ = end_ + capacity;
}

std::size_t TextBuffer::size() const noexcept {
    return pieces_.empty() ? 0 : total_ + static_cast<std::size_t>(end_ - pieces_.back().text.get());
}

std::vector<std::string_view> TextBuffer::pieces() const {
    std::vector<std::string_view> result;
    result.reserve(pieces_.size());
    for (const Piece& piece : pieces_)
        result.emplace_back(piece.text.get(), piece.length);
    if (!pieces_.empty())
        result.back() = std::string_view(pieces_.back().text.get(), end_);
    return result;
}

std::string TextBuffer::join() && {
    const std::vector<std::string_view> parts = pieces();
    std::string text;
    text.reserve(size());
    preferLargePages(text.data(), text.capacity());
    for (std::size_t index = 0; index < parts.size(); ++index) {
        text += parts[index];
        pieces_[index].text.reset();
    }
    return text;
}

} // namespace kinovane
