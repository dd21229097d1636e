// SPDX-License-Identifier: Apache-2.0

#include "common/file.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace simulator {
namespace {

/// Repeats a system call for as long as a signal interrupts it.
template <class Call>
auto uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

File::File(std::filesystem::path path, int descriptor) : path_(std::move(path)), descriptor_(descriptor) {}

File::File(File&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

File::~File() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

File File::openForReading(const std::filesystem::path& path, int extraFlags) {
    // O_NONBLOCK keeps a pipe without a writer from holding the program up; it means nothing to regular
    // files.
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | extraFlags;
    const int descriptor = uninterrupted([&] { return ::open(path.c_str(), flags); });
    if (descriptor < 0)
        refuseForSystem("open", path, lastSystemError());
    File file(path, descriptor);
    struct stat status{};
    if (::fstat(descriptor, &status) != 0)
        refuseForSystem("examine", path, lastSystemError());
    if (!S_ISREG(status.st_mode))
        throw Refusal(jsonQuoted(path.native()) + " is not a regular file");
    return file;
}

File File::openRegular(const std::filesystem::path& path) { return openForReading(path, 0); }

File File::openResolved(const std::filesystem::path& path) { return openForReading(path, O_NOFOLLOW); }

File File::create(const std::filesystem::path& path) {
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
    const int descriptor = uninterrupted([&] { return ::open(path.c_str(), flags, 0666); });
    if (descriptor < 0)
        refuseForSystem("create", path, lastSystemError());
    return {path, descriptor};
}

File File::append(const std::filesystem::path& path) {
    const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
    const int descriptor = uninterrupted([&] { return ::open(path.c_str(), flags, 0666); });
    if (descriptor < 0)
        refuseForSystem("open", path, lastSystemError());
    return {path, descriptor};
}

std::uint64_t File::size() const {
    struct stat status{};
    if (::fstat(descriptor_, &status) != 0)
        refuseForSystem("examine", path_, lastSystemError());
    return static_cast<std::uint64_t>(status.st_size);
}

std::size_t File::read(std::span<char> buffer) {
    const auto count = uninterrupted([&] { return ::read(descriptor_, buffer.data(), buffer.size()); });
    if (count < 0)
        refuseForSystem("read", path_, lastSystemError());
    return static_cast<std::size_t>(count);
}

void File::write(std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto count = uninterrupted([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
        if (count < 0)
            refuseForSystem("write", path_, lastSystemError());
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

void File::lock() {
    if (uninterrupted([&] { return ::flock(descriptor_, LOCK_EX); }) != 0)
        refuseForSystem("lock", path_, lastSystemError());
}

void File::close() {
    // After an interrupted close the descriptor is gone all the same, so it is never closed twice.
    if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR)
        refuseForSystem("finish writing", path_, lastSystemError());
}

std::string readWholeFile(const std::filesystem::path& path, std::uint64_t limit, std::string_view what) {
    File file = File::openRegular(path);
    std::string content;
    // One byte more than announced shows whether the file is still growing.
    content.resize(static_cast<std::size_t>(std::min(file.size(), limit)) + 1);
    std::size_t filled = 0;
    while (const std::size_t count = file.read(std::span(content).subspan(filled))) {
        filled += count;
        if (filled > limit) {
            throw Refusal(jsonQuoted(path.native()) + " is larger than the " + std::to_string(limit >> 20U) +
                          " MiB that " + std::string(what) + " may have");
        }
        if (filled == content.size())
            content.resize(static_cast<std::size_t>(std::min<std::uint64_t>(2 * filled, limit + 1)));
    }
    content.resize(filled);
    return content;
}

void writeWholeFile(const std::filesystem::path& path, std::string_view content) {
    File file = File::create(path);
    file.write(content);
    file.close();
}

std::filesystem::path writeUnfinished(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::path unfinished = path;
    unfinished += '.';
    unfinished += std::to_string(::getpid());
    unfinished += unfinishedSuffix;
    writeWholeFile(unfinished, content);
    return unfinished;
}

void replaceFile(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::rename(writeUnfinished(path, content), path);
}

} // namespace simulator
