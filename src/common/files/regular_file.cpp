// SPDX-License-Identifier: Apache-2.0

#include "common/files/regular_file.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

#include "common/files/file_lease.hpp"
#include "common/files/location.hpp"
#include "common/files/retry_interrupted.hpp"
#include "common/files/standard_descriptors.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

static_assert(sizeof(off_t) >= sizeof(std::uint64_t), "media files have 2 GiB and more");

[[noreturn]] void fail(const char* what, const fs::path& location, std::error_code code) {
    throw fs::filesystem_error(what, location, code);
}

[[noreturn]] void failWithErrno(const char* what, const fs::path& location) {
    fail(what, location, std::error_code(errno, std::generic_category()));
}

Descriptor openForReading(const fs::path& location) {
    if (location.empty())
        fail("cannot open, because the location is empty", location,
             make_error_code(std::errc::no_such_file_or_directory));
    if (holdsNUL(location.native()))
        fail("cannot open", location, make_error_code(std::errc::no_such_file_or_directory));
    Descriptor descriptor = retryWhileLeased(
        [&] { return openAboveStandard([&] { return ::open(location.c_str(), RegularFile::openFlags); }); });
    if (!descriptor)
        fail("cannot open", location, openFailure(errno));
    return descriptor;
}

struct stat statusOf(int descriptor, const std::string& location) {
    struct stat status{};
    if (::fstat(descriptor, &status) != 0)
        failWithErrno("cannot examine", location);
    return status;
}

std::string remainingText(RegularFile& file) {
    std::string text;
    // The size is only an estimate: the file may grow or shrink while it is read. One byte more than that
    // lets the first read find the end.
    std::size_t length = 0;
    for (;;) {
        if (length == text.size())
            text.resize(length == 0 ? static_cast<std::size_t>(std::min(file.size(), maximumDocumentSize)) + 1
                                    : 2 * length);
        const std::size_t count =
            file.readDocumentChunk(std::as_writable_bytes(std::span(text).subspan(length)));
        if (count == 0)
            break;
        length += count;
    }
    text.resize(length);
    return text;
}

/// A template, so that the name of the member on macOS is not looked up on Linux, and the other way round.
template <class Status>
const timespec& modificationTime(const Status& status) {
    if constexpr (requires { status.st_mtim; })
        return status.st_mtim;
    else
        return status.st_mtimespec;
}

} // namespace

const int RegularFile::openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

RegularFile::RegularFile(const fs::path& location)
    : RegularFile(openForReading(location), location.native()) {}

RegularFile::RegularFile(Descriptor descriptor, std::string location)
    : descriptor_(std::move(descriptor)), location_(std::move(location)) {
    const struct stat status = statusOf(descriptor_.get(), location_);
    if (S_ISDIR(status.st_mode))
        fail("cannot read", location_, make_error_code(std::errc::is_a_directory));
    if (!S_ISREG(status.st_mode))
        fail("not a regular file", location_, make_error_code(std::errc::operation_not_supported));
    size_ = static_cast<std::uint64_t>(status.st_size);
    modifiedSeconds_ = modificationTime(status).tv_sec;
    modifiedNanoseconds_ = modificationTime(status).tv_nsec;
}

RegularFile::RegularFile(Descriptor descriptor, std::string location, const struct stat& status) noexcept
    : descriptor_(std::move(descriptor)), location_(std::move(location)),
      size_(static_cast<std::uint64_t>(status.st_size)), modifiedSeconds_(modificationTime(status).tv_sec),
      modifiedNanoseconds_(modificationTime(status).tv_nsec) {}

std::optional<RegularFile> RegularFile::from(Descriptor descriptor, std::string location) {
    const struct stat status = statusOf(descriptor.get(), location);
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    return RegularFile(std::move(descriptor), std::move(location), status);
}

std::size_t RegularFile::read(std::span<std::byte> buffer) {
    if (ended_)
        return 0;
    const auto count =
        retryInterrupted([&] { return ::read(descriptor_.get(), buffer.data(), buffer.size()); });
    if (count < 0)
        failWithErrno("cannot read", location_);
    position_ += static_cast<std::uint64_t>(count);
    // A short read that reaches the size from `fstat` is the end of the file, and saves the read that would
    // return 0. Generated files, such as those in /proc, have size 0 and are read to their end.
    ended_ = static_cast<std::size_t>(count) < buffer.size() && position_ == size_ && size_ != 0;
    return static_cast<std::size_t>(count);
}

std::size_t RegularFile::readDocumentChunk(std::span<std::byte> buffer) {
    const std::size_t count = size_ > maximumDocumentSize ? 0 : read(buffer);
    if (std::max(size_, position_) > maximumDocumentSize)
        fail("cannot read", location_, make_error_code(std::errc::file_too_large));
    return count;
}

bool RegularFile::hasChanged() const {
    const struct stat status = statusOf(descriptor_.get(), location_);
    return size_ != static_cast<std::uint64_t>(status.st_size) ||
           modifiedSeconds_ != modificationTime(status).tv_sec ||
           modifiedNanoseconds_ != modificationTime(status).tv_nsec;
}

std::error_code openFailure(int error) {
    return error == ENXIO ? make_error_code(std::errc::operation_not_supported)
                          : std::error_code(error, std::generic_category());
}

void readUnchanged(const fs::path& location, const std::function<void(RegularFile&)>& read) {
    for (int count = 1; count <= maximumReads; ++count) {
        RegularFile file(location);
        try {
            read(file);
        } catch (...) {
            if (count == maximumReads || !file.hasChanged())
                throw;
            continue;
        }
        if (!file.hasChanged())
            return;
    }
    fail("changed while it was read", location, make_error_code(std::errc::device_or_resource_busy));
}

std::string readDocument(const fs::path& location) {
    std::string text;
    readUnchanged(location, [&](RegularFile& file) { text = remainingText(file); });
    return text;
}

} // namespace kinovane
