// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <array>
#include <string_view>

#include "bytes.hpp"
#include "picture.hpp"

namespace film {
namespace {

constexpr std::array<std::uint32_t, 256> crcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder >> 1U) ^ ((remainder & 1U) != 0 ? 0xEDB88320U : 0U);
        table[byte] = remainder;
    }
    return table;
}();

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char character : bytes)
        sum = crcTable[(sum ^ static_cast<unsigned char>(character)) & 0xFFU] ^ (sum >> 8U);
    return ~sum;
}

std::uint32_t adler32(std::string_view bytes) {
    constexpr std::uint32_t modulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char character : bytes) {
        low = (low + static_cast<unsigned char>(character)) % modulus;
        high = (high + low) % modulus;
    }
    return (high << 16U) | low;
}

void appendChunk(Bytes& file, std::string_view type, std::string_view data) {
    const std::string named = std::string(type) + std::string(data);
    file.big32(size32(data.size())).text(named).big32(crc32(named));
}

/// A zlib stream whose blocks are stored as they are: valid for every reader, and no compressor is needed.
std::string stored(std::string_view bytes) {
    constexpr std::size_t largestBlock = 65535;
    Bytes stream;
    stream.byte(0x78).byte(0x01);
    for (std::size_t start = 0; start < bytes.size(); start += largestBlock) {
        const std::string_view block = bytes.substr(start, largestBlock);
        const auto length = static_cast<std::uint32_t>(block.size());
        const bool last = start + block.size() == bytes.size();
        stream.byte(last ? 1 : 0).little16(length).little16(~length).text(block);
    }
    stream.big32(adler32(bytes));
    return stream.content();
}

} // namespace

std::string encodePng(const Picture& picture) {
    Bytes header;
    header.big32(picture.width).big32(picture.height);
    // Eight bits for each of three colours, the only compression, filter and order there are.
    header.byte(8).byte(2).byte(0).byte(0).byte(0);

    const std::size_t rowSize = std::size_t{3} * picture.width;
    std::string rows;
    for (std::size_t row = 0; row < picture.height; ++row) {
        rows += '\0'; // this row is not filtered
        rows.append(picture.pixels, row * rowSize, rowSize);
    }

    Bytes file;
    file.text("\x89PNG\r\n\x1A\n");
    appendChunk(file, "IHDR", header.content());
    appendChunk(file, "IDAT", stored(rows));
    appendChunk(file, "IEND", "");
    return file.content();
}

} // namespace film
