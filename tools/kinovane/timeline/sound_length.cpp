// SPDX-License-Identifier: Apache-2.0

#include "timeline/sound_length.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane::tool {

namespace {

constexpr std::int64_t riffHeader = 12;
constexpr std::int64_t chunkHeader = 8;
constexpr int mostChunks = 1000;

/// An open file, which may be anything.
class Sound {
  public:
    explicit Sound(const std::filesystem::path& file)
        : descriptor_(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
        struct stat status{};
        if (descriptor_ >= 0 && ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode))
            size_ = status.st_size;
    }
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;
    ~Sound() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    /// 0 for anything but a file.
    std::int64_t size() const noexcept { return size_; }

    /// Fills the bytes from this position of the file. False when it has fewer.
    bool read(std::array<char, 12>& bytes, std::int64_t position, std::size_t count) const {
        if (position > size_ - static_cast<std::int64_t>(count))
            return false;
        ssize_t read = 0;
        do
            read = ::pread(descriptor_, bytes.data(), count, position);
        while (read < 0 && errno == EINTR);
        return read == static_cast<ssize_t>(count);
    }

  private:
    int descriptor_;
    std::int64_t size_ = 0;
};

/// Four bytes, the least significant first.
std::int64_t number(const std::array<char, 12>& bytes, std::size_t position) {
    std::uint32_t value = 0;
    for (std::size_t index = 4; index-- > 0;)
        value = (value << 8U) | static_cast<unsigned char>(bytes.at(position + index));
    return value;
}

std::string_view tag(const std::array<char, 12>& bytes, std::size_t position) {
    return std::string_view(bytes.data(), bytes.size()).substr(position, 4);
}

} // namespace

std::optional<std::int64_t> soundLength(const std::filesystem::path& file) {
    const Sound sound(file);
    std::array<char, 12> bytes{};
    if (!sound.read(bytes, 0, riffHeader) || tag(bytes, 0) != "RIFF" || tag(bytes, 8) != "WAVE")
        return std::nullopt;
    std::int64_t bytesPerSecond = 0;
    std::int64_t position = riffHeader;
    for (int chunk = 0; chunk < mostChunks && sound.read(bytes, position, chunkHeader); ++chunk) {
        const bool isFormat = tag(bytes, 0) == "fmt ";
        const bool isData = tag(bytes, 0) == "data";
        const std::int64_t length = number(bytes, 4);
        position += chunkHeader;
        if (isFormat && sound.read(bytes, position, 12))
            bytesPerSecond = number(bytes, 8);
        // A program that records may leave the length at its largest value, or not write all of the sound.
        if (isData && bytesPerSecond > 0)
            return std::min(length, sound.size() - position) * 1000 / bytesPerSecond;
        position += length + length % 2;
    }
    return std::nullopt;
}

} // namespace kinovane::tool
