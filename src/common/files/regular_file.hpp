// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include "common/files/descriptor.hpp"

struct stat;

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

    /// Whether the content was changed since the file was opened, as far as its size and its modification
    /// time tell. A file that was replaced or removed is still the same file here.
    bool hasChanged() const;

  private:
    RegularFile(Descriptor descriptor, std::string location, const struct stat& status) noexcept;

    Descriptor descriptor_;
    std::string location_;
    std::uint64_t size_ = 0;
    std::int64_t modifiedSeconds_ = 0;     ///< The modification time at the time of opening.
    std::int64_t modifiedNanoseconds_ = 0; ///< The rest of it.
    std::uint64_t position_ = 0;           ///< The number of bytes read so far.
    bool ended_ = false;                   ///< The end of the file was reached.
};

/// The error code for a failure to open a file. ENXIO becomes std::errc::operation_not_supported: it is the
/// reason for a socket, and its own text ("No such device or address") would mislead.
std::error_code openFailure(int error);

/// How often a document is read that changes each time. The limit keeps a load from lasting as long as
/// another program writes.
inline constexpr int maximumReads = 8;

/// Opens the file and calls `read`, which reads it. When another program changes the file meanwhile, the
/// result may be mixed from two contents, and an error may come from an incomplete one: the file is then
/// opened again and `read` is called again, `maximumReads` times altogether. After that, the last error is
/// thrown; without one, std::filesystem::filesystem_error with std::errc::device_or_resource_busy.
void readUnchanged(const std::filesystem::path& location, const std::function<void(RegularFile&)>& read);

/// The content of a document. Throws std::filesystem::filesystem_error, as `readUnchanged` does.
std::string readDocument(const std::filesystem::path& location);

/// The size above which a document is refused, in bytes. The documents of long productions have tens of
/// megabytes. Decoding needs less than 32 times the size of the document in the worst case, which is a list
/// of the smallest possible elements; the limit thus keeps the memory of a load below 8 GiB.
inline constexpr std::uint64_t maximumDocumentSize = std::uint64_t{256} << 20U;

} // namespace kinovane
