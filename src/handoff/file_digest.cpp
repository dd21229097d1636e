// SPDX-License-Identifier: Apache-2.0

#include "handoff/file_digest.hpp"

#include <optional>
#include <span>
#include <system_error>

#include "handoff/read_ahead.hpp"

namespace kinovane {

namespace {

/// From this size on, starting a thread costs little compared with the hashing.
constexpr std::uint64_t largeFile = std::uint64_t{4} << 20U;

constexpr std::size_t readSize = std::size_t{1} << 20U;

} // namespace

FileDigest::FileDigest() : buffer_(readSize) {}

std::string FileDigest::of(RegularFile& file, const OnRead& onRead, bool readsAhead) {
    digest_.restart();
    if (!(readsAhead && file.size() >= largeFile && readAhead(file, onRead))) {
        while (const std::size_t count = file.read(buffer_)) {
            digest_.update(std::span(buffer_).first(count));
            if (onRead)
                onRead(count);
        }
    }
    return digest_.finish();
}

std::string FileDigest::of(AtomicFile& file) {
    digest_.restart();
    while (const std::size_t count = file.read(buffer_))
        digest_.update(std::span(buffer_).first(count));
    return digest_.finish();
}

bool FileDigest::readAhead(RegularFile& file, const OnRead& onRead) {
    std::optional<ReadAhead> reader;
    try {
        reader.emplace(file, buffer_);
    } catch (const std::system_error&) {
        return false; // No thread could be started, so the calling thread reads the file.
    }
    for (auto bytes = reader->next(); !bytes.empty(); bytes = reader->next()) {
        digest_.update(bytes);
        if (onRead)
            onRead(bytes.size());
    }
    return true;
}

} // namespace kinovane
