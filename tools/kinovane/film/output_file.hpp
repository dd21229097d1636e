// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// What a command stores at --output, for its messages and its decisions.
struct OutputKind {
    std::string_view command;  ///< Such as "publish".
    std::string_view name;     ///< What the file is: "handoff manifest".
    std::string_view fileName; ///< The name that is proposed when --output is a folder.

    /// Whether a file that exists already is such a file, so that it may be replaced.
    bool (*isSuchFile)(const std::filesystem::path& file);
};

/// The absolute path of --output. Throws UsageError when it is empty or ends with "/".
std::filesystem::path outputPath(const std::filesystem::path& output, const OutputKind& kind);

/// Throws UsageError for a target that must not be replaced: one of the film's own files, anything that is no
/// regular file, and, unless forced, a file of another kind. `subject` is what names the target in messages.
void requireReplaceable(const std::filesystem::path& target, const std::string& subject,
                        const FilmWorkspaceSnapshot& film, bool force, const OutputKind& kind);

} // namespace kinovane::tool
