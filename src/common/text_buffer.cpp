// SPDX-License-Identifier: Apache-2.0

#include "common/text_buffer.hpp"

#include <algorithm>
#include <cstddef>

#include "common/huge_pages.hpp"

namespace kinovane {

namespace {

constexpr std::size_t smallestChunk = std::size_t{1} << 10U;
constexpr std::size_t largestChunk = std::size_t{4} << 20U;

} // namespace

TextBuffer::Memory TextBuffer::allocate(std::size_t size) {
    const bool large = size % hugePage == 0;
    const std::align_val_t alignment{large ? hugePage : alignof(std::max_align_t)};
    Memory memory(static_cast<char*>(::operator new(size, alignment)), Deleter{alignment});
    if (large)
        adviseHugePages(memory.get(), size);
    return memory;
}

void TextBuffer::appendAcrossChunks(std::string_view text) {
    while (!text.empty()) {
        const std::string_view part = text.substr(0, prepare().size());
        append(part);
        text.remove_prefix(part.size());
    }
}

void TextBuffer::addChunk(std::size_t size) {
    if (!chunks_.empty()) {
        Chunk& last = chunks_.back();
        last.length = static_cast<std::size_t>(end_ - last.memory.get());
        completedLength_ += last.length;
    }
    // As large as the text so far, within limits, so that the number of chunks stays small.
    const std::size_t capacity = std::max(size, std::clamp(completedLength_, smallestChunk, largestChunk));
    chunks_.push_back({allocate(capacity), 0});
    end_ = chunks_.back().memory.get();
    limit_ = end_ + capacity;
}

std::size_t TextBuffer::size() const noexcept {
    if (chunks_.empty())
        return 0;
    return completedLength_ + static_cast<std::size_t>(end_ - chunks_.back().memory.get());
}

std::vector<std::string_view> TextBuffer::chunks() const {
    std::vector<std::string_view> result;
    result.reserve(chunks_.size());
    for (const Chunk& chunk : chunks_)
        result.emplace_back(chunk.memory.get(), chunk.length);
    if (!chunks_.empty())
        result.back() = std::string_view(chunks_.back().memory.get(), end_);
    return result;
}

std::string TextBuffer::join() && {
    const std::vector<std::string_view> parts = chunks();
    std::string text;
    text.reserve(size());
    adviseHugePages(text.data(), text.capacity());
    for (std::size_t index = 0; index < parts.size(); ++index) {
        text += parts[index];
        chunks_[index].memory.reset();
    }
    return text;
}

} // namespace kinovane
