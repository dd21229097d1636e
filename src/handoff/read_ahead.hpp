// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <span>
#include <thread>

#include "common/files/regular_file.hpp"

namespace kinovane {

/// Reads a file on a thread of its own, a little ahead of whoever works on its bytes. The buffer is divided
/// into a few pieces, which go round between the two.
class ReadAhead {
  public:
    /// `file` and `buffer` outlive this object, and are its own for so long. Throws std::system_error when no
    /// thread can be started; nothing has been read then.
    ReadAhead(RegularFile& file, std::span<std::byte> buffer);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Stops reading.
    ~ReadAhead();

    /// The next bytes, which stay until the next call; none at the end of the file. Throws what reading
    /// threw.
    std::span<const std::byte> next();

  private:
    static constexpr std::size_t pieceCount = 4;

    struct Piece {
        std::span<std::byte> space;
        std::size_t length = 0;
    };

    void read() noexcept;
    bool halfEmpty() const noexcept { return filled_ - emptied_ <= pieceCount / 2; }

    RegularFile& file_;
    std::array<Piece, pieceCount> pieces_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t filled_ = 0;  ///< How many pieces have been read so far.
    std::size_t emptied_ = 0; ///< How many the other side has done with.
    bool holding_ = false;    ///< The other side works on a piece.
    bool resting_ = false;    ///< Everything is full. Waking a thread costs as much as reading a piece, so
                              ///< the next ones are read only once there is room for several.
    bool ended_ = false;      ///< Nothing more will be read.
    bool stopped_ = false;    ///< Nobody wants more.
    std::exception_ptr failure_;
    std::thread reader_; ///< Last, so that everything is there when it starts.
};

} // namespace kinovane
