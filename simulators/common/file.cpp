// SPDX-License-Identifier: Apache-2.0

#include "common/file.hpp"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace simulator {
namespace {

struct stat statusOf(int descriptor, const std::filesystem::path& path) {
    struct stat status{};
    if (::fstat(descriptor, &status) != 0)
        refuseForSystem("examine", path, lastSystemError());
    return status;
}

} // namespace

// No call here is retried on EINTR: the simulators install no signal handlers.

File::File(const std::filesystem::path& path, const char* attempt, int flags)
    : path_(path), descriptor_(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {
    if (descriptor_ < 0)
        refuseForSystem(attempt, path, lastSystemError());
}

File::File(File&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

File::~File() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

File File::openRegular(const std::filesystem::path& path) {
    // O_NONBLOCK: opening a pipe must not wait for its writer.
    File file(path, "open", O_RDONLY | O_NONBLOCK);
    if (!S_ISREG(statusOf(file.descriptor_, path).st_mode))
        throw Refusal(jsonQuoted(path.native()) + " is not a regular file");
    return file;
}

File File::create(const std::filesystem::path& path) {
    return {path, "create", O_WRONLY | O_CREAT | O_TRUNC};
}

File File::append(const std::filesystem::path& path) { return {path, "open", O_WRONLY | O_CREAT | O_APPEND}; }

std::uint64_t File::size() const { return static_cast<std::uint64_t>(statusOf(descriptor_, path_).st_size); }

std::size_t File::read(std::span<char> buffer) {
    const auto count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0)
        refuseForSystem("read", path_, lastSystemError());
    return static_cast<std::size_t>(count);
}

void File::write(std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0)
            refuseForSystem("write", path_, lastSystemError());
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

void File::lock() {
    if (::flock(descriptor_, LOCK_EX) != 0)
        refuseForSystem("lock", path_, lastSystemError());
}

void File::close() {
    if (::close(std::exchange(descriptor_, -1)) != 0)
        refuseForSystem("finish writing", path_, lastSystemError());
}

std::string readWholeFile(const std::filesystem::path& path, std::uint64_t limit, std::string_view what) {
    File file = File::openRegular(path);
    std::string content;
    std::size_t filled = 0;
    // One byte beyond the size shows whether the file has grown.
    content.resize(static_cast<std::size_t>(std::min(file.size(), limit)) + 1);
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

std::filesystem::path writeTemporary(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::path temporary = path;
    temporary += '.' + std::to_string(::getpid());
    temporary += temporaryExtension;
    writeWholeFile(temporary, content);
    return temporary;
}

void replaceFile(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::rename(writeTemporary(path, content), path);
}

} // namespace simulator
