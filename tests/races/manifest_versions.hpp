// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <kinovane/handoff.hpp>

namespace kinovane::test {

/// A manifest that differs from other versions in every record and in its length, and is large enough to be
/// written in several calls.
inline VistrelHandoff manifestVersion(std::size_t version) {
    const std::string text = "version " + std::to_string(version);
    VistrelHandoff manifest;
    manifest.contractVersion = text;
    manifest.exportedAt = text;
    for (std::size_t asset = 0; asset < 400 + 50 * version; ++asset)
        manifest.assets.push_back({text, text, text, text, static_cast<std::int64_t>(version), text, text});
    return manifest;
}

inline std::string manifestText(std::size_t version) {
    return encodeJSON(manifestVersion(version), JSONFormat::pretty);
}

} // namespace kinovane::test
