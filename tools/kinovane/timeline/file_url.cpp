// SPDX-License-Identifier: Apache-2.0

#include "timeline/file_url.hpp"

#include <string_view>

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

bool isUnreserved(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

std::string percentEncoded(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char byte : path)
        if (isUnreserved(byte) || byte == '/') {
            encoded += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            encoded += '%';
            encoded += digits[value >> 4U];
            encoded += digits[value & 0xFU];
        }
    return encoded;
}

} // namespace

std::string fileURL(const fs::path& file) {
    return "file://" + percentEncoded(file.lexically_normal().native());
}

std::string relativeURL(const fs::path& file, const fs::path& folder) {
    return percentEncoded(file.lexically_normal().lexically_relative(folder).native());
}

} // namespace kinovane::tool
