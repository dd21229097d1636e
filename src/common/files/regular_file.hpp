// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include "common/digest.hpp"
#include "common/files/descriptor.hpp"

namespace kinovane {

/// A regular file, open for reading. Opening never blocks: a FIFO, socket, device or directory is refused.
class RegularFile {
  public:
    /// Throws std::filesystem::filesystem_error.
    explicit RegularFile(const std::filesystem::path& location);

    /// Takes over a descriptor that was opened with `openFlags`, as above. `location` is only for messages,
    /// and a text because taking a path apart costs as much as reading a small file.
    RegularFile(Descriptor descriptor, std::string location);

    /// The same; absent when the descriptor is not a regular file's.
    static std::optional<RegularFile> from(Descriptor descriptor, std::string location);

    /// How every file of a workspace is opened: without waiting for the other end of a FIFO, and closed in
    /// children.
    static const int openFlags;

    std::uint64_t size() const noexcept { return size_; }

    /// Reads into `buffer` and returns how much was read; 0 at the end of the file.
    /// Throws std::filesystem::filesystem_error.
    std::size_t read(std::span<std::byte> buffer);

    /// The same for a document, which is refused (std::errc::file_too_large) when it has more than
    /// `maximumDocumentSize` bytes: what is larger is something else by mistake.
    std::size_t readDocumentPiece(std::span<std::byte> buffer);

  private:
    RegularFile(Descriptor descriptor, std::string location, std::uint64_t size) noexcept
        : descriptor_(std::move(descriptor)), location_(std::move(location)), size_(size) {}

    Descriptor descriptor_;
    std::string location_;
    std::uint64_t size_ = 0;     ///< When it was opened.
    std::uint64_t position_ = 0; ///< How much has been read.
    bool ended_ = false;         ///< Nothing more is to be expected.
};

/// How long a file that another program holds a write lease on is waited for. Opening it asks that program to
/// give the lease up, but does not wait, because nothing is opened in a way that may block.
class LeaseWait {
  public:
    /// Pauses for a moment when errno says that there is a lease; false when there is none, or when the time
    /// is over. Leaves errno alone.
    bool pause();

  private:
    int pauses_ = 0;
};

/// The descriptor that `open` gives, tried again while another program gives up its write lease on the file.
template <class Open>
Descriptor openDespiteLease(Open open) {
    LeaseWait wait;
    for (;;) {
        Descriptor descriptor = open();
        if (descriptor || !wait.pause())
            return descriptor;
    }
}

/// What a failure to open a file means. A socket is no more a regular file than a FIFO is, but the system
/// words it as if a device were missing.
std::error_code openFailure(int error);

/// The whole of a document. Throws std::filesystem::filesystem_error.
std::string readDocument(const std::filesystem::path& location);

/// The largest document that is read. Documents of long productions have tens of megabytes; this is several
/// times as much. Decoding takes less than 32 times a document's size, so one that is all list elements of
/// the smallest kind stays below 8 GiB, which a machine that edits films can give, and one that is refused
/// stays below 2 GiB.
inline constexpr std::uint64_t maximumDocumentSize = std::uint64_t{256} << 20U;

/// How much of a file is read at once for its digest.
inline constexpr std::size_t digestReadSize = std::size_t{1} << 20U;

} // namespace kinovane
