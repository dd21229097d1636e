// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane {

/// A long text that grows at its end. It is stored in chunks that never move, because a std::string would be
/// copied to new memory every time it outgrows its capacity. A moved-from buffer may only be destroyed.
class TextBuffer {
  public:
    void append(char character) {
        *prepare(1) = character;
        commit(1);
    }

    void append(std::string_view text) {
        if (text.size() > static_cast<std::size_t>(limit_ - end_))
            appendAcrossChunks(text);
        else if (!text.empty())
            end_ = static_cast<char*>(std::memcpy(end_, text.data(), text.size())) + text.size();
    }

    /// Contiguous space for `size` characters. They become part of the text with `commit`.
    char* prepare(std::size_t size) {
        if (size > static_cast<std::size_t>(limit_ - end_))
            addChunk(size);
        return end_;
    }

    /// The free space of the last chunk, of at least one character. Used in the same way.
    std::span<char> prepare() { return {prepare(1), limit_}; }

    /// Appends the first `size` characters of the prepared space.
    void commit(std::size_t size) noexcept { end_ += size; }

    std::size_t size() const noexcept;

    /// The text in order, one view per chunk; valid until something is appended.
    std::vector<std::string_view> chunks() const;

    /// The whole text as one string. Frees each chunk once it is copied.
    std::string join() &&;

  private:
    struct Deleter {
        std::align_val_t alignment{};
        void operator()(char* memory) const noexcept { ::operator delete(memory, alignment); }
    };
    using Memory = std::unique_ptr<char, Deleter>;
    struct Chunk {
        Memory memory;
        std::size_t length; ///< Set when the next chunk is added; the last chunk's text ends at `end_`.
    };

    static Memory allocate(std::size_t size);
    void appendAcrossChunks(std::string_view text);
    void addChunk(std::size_t size);

    std::vector<Chunk> chunks_;
    std::size_t completedLength_ = 0; ///< The length of all chunks but the last.
    char* end_ = nullptr;             ///< The end of the text in the last chunk.
    char* limit_ = nullptr;           ///< The end of the last chunk's memory.
};

} // namespace kinovane
