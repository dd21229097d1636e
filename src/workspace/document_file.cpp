// SPDX-License-Identifier: Apache-2.0

#include "workspace/document_file.hpp"

#include <cstddef>
#include <span>

#include "common/files/regular_file.hpp"
#include "common/json/decoder.hpp"

namespace kinovane {

namespace {

/// Returns false when decoding needs the whole text. The file is closed by then.
bool decodeInChunks(void* target, const json::Shape& shape, const std::filesystem::path& location) {
    bool decoded = false;
    readUnchanged(location, [&](RegularFile& file) {
        shape.reset(target); // An earlier attempt may have stored values.
        const auto read = [&](std::span<std::byte> buffer) { return file.readDocumentChunk(buffer); };
        decoded = json::decodeInto(target, shape, read, file.size());
    });
    return decoded;
}

} // namespace

void decodeDocumentInto(void* target, const json::Shape& shape, const std::filesystem::path& location) {
    if (!decodeInChunks(target, shape, location))
        json::checkAndDecodeInto(target, shape, readDocument(location));
}

} // namespace kinovane
