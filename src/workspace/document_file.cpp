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
    RegularFile file(location);
    const auto read = [&](std::span<std::byte> buffer) { return file.readDocumentChunk(buffer); };
    return json::decodeInto(target, shape, read, file.size());
}

} // namespace

void decodeDocumentInto(void* target, const json::Shape& shape, const std::filesystem::path& location) {
    if (!decodeInChunks(target, shape, location))
        json::checkAndDecodeInto(target, shape, readDocument(location));
}

} // namespace kinovane
