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

/// A long text that only grows at its end, in pieces that stay where they are: a single text would be copied
/// each time it outgrows its place, and its memory touched anew. Once moved from it is of no more use.
class TextBuffer {
  public:
    void append(char character) {
        *room(1) = character;
        ++end_;
    }

    void append(std::string_view text) {
        if (text.size() > static_cast<std::size_t>(limit_ - end_))
            appendAcross(text);
        else if (!text.empty())
            end_ = static_cast<char*>(std::memcpy(end_, text.data(), text.size())) + text.size();
    }

    /// Room for `size` characters, not yet part of the text; `advance` makes them so.
    char* room(std::size_t size) {
        if (size > static_cast<std::size_t>(limit_ - end_))
            addPiece(size);
        return end_;
    }

    /// All the room in the piece at hand, at least one character.
    std::span<char> room() { return {room(1), limit_}; }

    void advance(std::size_t size) noexcept { end_ += size; }

    std::size_t size() const noexcept;

    /// The text, piece by piece; valid until something is appended.
    std::vector<std::string_view> pieces() const;

    /// The text in one piece; nothing is left here.
    std::string join() &&;

  private:
    struct Release {
        std::align_val_t alignment{};
        void operator()(char* memory) const noexcept { ::operator delete(memory, alignment); }
    };
    using Memory = std::unique_ptr<char, Release>;
    struct Piece {
        Memory text;
        std::size_t length; ///< Of all but the last, which ends at `end_`.
    };

    static Memory allocate(std::size_t size);
    void appendAcross(std::string_view text);
    void addPiece(std::size_t size);

    std::vector<Piece> pieces_;
    std::size_t total_ = 0; ///< Of all pieces but the last.
    char* end_ = nullptr;   ///< Of the text, in the last piece.
    char* limit_ = nullptr; ///< Of the last piece.
};

} // namespace kinovane
