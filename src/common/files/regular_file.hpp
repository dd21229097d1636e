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

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A regular file, open for reading. Opening never blocks on a FIFO, a device or a socket; these and
/// directories are refused. The functions throw std::filesystem::filesystem_error.
class RegularFile {
  public:
    explicit RegularFile(const std::filesystem::path& location);

    /// Takes ownership of a descriptor that was opened with `openFlags`. `location` is used in messages only.
    /// It is a string because constructing a path costs as much as reading a small file.
    RegularFile(Descriptor descriptor, std::string location);

    /// The same, but absent when the descriptor does not refer to a regular file.
    static std::optional<RegularFile> from(Descriptor descriptor, std::string location);

    /// The flags with which every file of a workspace is opened: read-only, non-blocking, close-on-exec.
    static const int openFlags;

    /// The size in bytes at the time of opening.
    std::uint64_t size() const noexcept { return size_; }

    /// Reads the next bytes into `buffer` and returns their number; 0 at the end of the file.
    std::size_t read(std::span<std::byte> buffer);

    /// The same for a document: fails with std::errc::file_too_large when the file has more than
    /// `maximumDocumentSize` bytes.
    std::size_t readDocumentChunk(std::span<std::byte> buffer);

  private:
    RegularFile(Descriptor descriptor, std::string location, std::uint64_t size) noexcept
        : descriptor_(std::move(descriptor)), location_(std::move(location)), size_(size) {}

    Descriptor descriptor_;
    std::string location_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0; ///< The number of bytes read so far.
    bool ended_ = false;         ///< The end of the file was reached.
};

/// The error code for a failure to open a file. ENXIO becomes std::errc::operation_not_supported: it is the
/// reason for a socket, and its own text ("No such device or address") would mislead.
std::error_code openFailure(int error);

/// The content of a document. Throws std::filesystem::filesystem_error.
std::string readDocument(const std::filesystem::path& location);

/// The size above which a document is refused, in bytes. The documents of long productions have tens of
/// megabytes. Decoding needs less than 32 times the size of the document in the worst case, which is a list
/// of the smallest possible elements; the limit thus keeps the memory of a load below 8 GiB.
inline constexpr std::uint64_t maximumDocumentSize = std::uint64_t{256} << 20U;

} // namespace kinovane
