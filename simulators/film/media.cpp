// SPDX-License-Identifier: Apache-2.0

#include "media.hpp"

#include <cstdint>

#include <boost/crc.hpp>

#include "common/embedded_file.hpp"

namespace simulator::film {
namespace {

std::string bigEndian(std::size_t value) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

std::string littleEndian(std::size_t value) {
    const std::string bytes = bigEndian(value);
    return {bytes.rbegin(), bytes.rend()};
}

/// Adds a text chunk before the last chunk, which has a fixed size.
std::string pngWith(std::string file, const std::string& text) {
    constexpr std::size_t lastChunkSize = 12;
    const std::string chunk = std::string("tEXtComment") + '\0' + text;
    boost::crc_32_type sum;
    sum.process_bytes(chunk.data(), chunk.size());
    return file.insert(file.size() - lastChunkSize,
                       bigEndian(chunk.size() - 4) + chunk + bigEndian(sum.checksum()));
}

/// Adds a list of information at the end and states the new size in the header.
std::string wavWith(std::string file, std::string text) {
    text += text.size() % 2 == 0 ? std::string(2, '\0') : std::string(1, '\0'); // the size is even
    file += "LIST" + littleEndian(text.size() + 12) + "INFOICMT" + littleEndian(text.size()) + text;
    return file.replace(4, 4, littleEndian(file.size() - 8));
}

/// Adds a box of free space.
std::string mp4With(const std::string& file, const std::string& text) {
    return file + bigEndian(text.size() + 8) + "free" + text;
}

} // namespace

std::string mediaFile(std::string_view recording, const std::string& text) {
    const std::string file(embeddedFile(recording));
    if (recording.ends_with(".png"))
        return pngWith(file, text);
    if (recording.ends_with(".wav"))
        return wavWith(file, text);
    return mp4With(file, text);
}

} // namespace simulator::film
