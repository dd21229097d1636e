// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <system_error>

#include <kinovane/handoff.hpp>

#include "handoff/containment_layouts.hpp"

namespace kinovane::test {

// Results of examining an artifact.
inline const LayoutOutcome accepted{LayoutOutcome::Kind::accepted, {}};
inline const LayoutOutcome unsafe{LayoutOutcome::Kind::unsafe, {}};
inline const LayoutOutcome missing{LayoutOutcome::Kind::missing, {}};

inline LayoutOutcome failure(std::errc code) { return {LayoutOutcome::Kind::failure, code}; }

// Results of computing the digest of a file.
inline const LayoutDigest content{std::string(layoutDigest), {}};
inline const LayoutDigest noSuchFile{"", std::errc::no_such_file_or_directory};
inline const LayoutDigest notADirectory{"", std::errc::not_a_directory};
inline const LayoutDigest isADirectory{"", std::errc::is_a_directory};
inline const LayoutDigest notARegularFile{"", std::errc::operation_not_supported};
inline const LayoutDigest permissionDenied{"", std::errc::permission_denied};
inline const LayoutDigest tooLong{"", std::errc::filename_too_long};
inline const LayoutDigest tooManyLinks{"", std::errc::too_many_symbolic_link_levels};

/// The digest of a file of the system.
inline LayoutDigest digestOf(const std::filesystem::path& file) {
    const std::string bytes = contentOf(file);
    return {VistrelHandoffBuilder::sha256(std::as_bytes(std::span(bytes))), {}};
}

inline std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int time = 0; time < times; ++time)
        result += text;
    return result;
}

} // namespace kinovane::test
