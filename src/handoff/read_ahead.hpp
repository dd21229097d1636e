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

/// Reads a file on its own thread, a few chunks ahead of the thread that uses them. The buffer is divided
/// into chunks that are filled and used in turn (a bounded ring).
class ReadAhead {
  public:
    /// `file` and `buffer` must outlive this object and not be used by others meanwhile. Throws
    /// std::system_error when no thread can be started; nothing has been read then.
    ReadAhead(RegularFile& file, std::span<std::byte> buffer);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Stops reading.
    ~ReadAhead();

    /// The next chunk, valid until the next call; empty at the end of the file. Throws the exception that
    /// reading threw.
    std::span<const std::byte> next();

  private:
    static constexpr std::size_t chunkCount = 4;

    struct Chunk {
        std::span<std::byte> space;
        std::size_t length = 0;
    };

    void read() noexcept;
    bool halfEmpty() const noexcept { return filled_ - released_ <= chunkCount / 2; }

    RegularFile& file_;
    std::array<Chunk, chunkCount> chunks_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t filled_ = 0;   ///< How many chunks have been read so far.
    std::size_t released_ = 0; ///< How many of them are no longer in use.
    bool inUse_ = false;       ///< The other thread uses a chunk.
    bool waiting_ = false;     ///< All chunks are full. Waking a thread costs as much as reading a chunk, so
                               ///< reading continues only when there is space for several.
    bool ended_ = false;       ///< The end of the file, or a failure.
    bool stopped_ = false;     ///< This object is being destroyed.
    std::exception_ptr failure_;
    std::thread reader_; ///< Last, so that all other members exist when it starts.
};

} // namespace kinovane
