// SPDX-License-Identifier: Apache-2.0

#include "film/file_content.hpp"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>

namespace kinovane::tool {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file, std::error_code& error, std::uintmax_t largest) {
    const auto fail = [&](std::errc reason) {
        error = std::make_error_code(reason);
        return std::string();
    };
    error.clear();
    std::error_code unknown; // A file without a size, such as a pipe, can be read all the same.
    if (fs::is_directory(file, unknown))
        return fail(std::errc::is_a_directory);
    if (const std::uintmax_t size = fs::file_size(file, unknown); !unknown && size > largest)
        return fail(std::errc::file_too_large);
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return fail(static_cast<std::errc>(errno));
    std::string content;
    std::array<char, std::size_t{64} * 1024> chunk{};
    do {
        stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        content.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
        if (content.size() > largest) // It has no size, or has grown.
            return fail(std::errc::file_too_large);
    } while (stream);
    return stream.bad() ? fail(std::errc::io_error) : content;
}

std::string beginningOf(const fs::path& file) {
    constexpr std::size_t length = 4096;
    std::string bytes(length, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace kinovane::tool
