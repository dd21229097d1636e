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
/// regular file, and, unless forced, a file of another kind. `subject` is what names the target in messages;
/// `film` is null when there is none.
void requireReplaceable(const std::filesystem::path& target, const std::string& subject,
                        const FilmWorkspaceSnapshot* film, bool force, const OutputKind& kind);

/// Creates and removes a file where `target` will be stored, so that a folder that cannot be written to is
/// reported before the work begins. `folder` is the one in which the first file or folder is created; `name`
/// is that of the output in the message. Throws CommandError (`fileSystem`) when the folder does not exist,
/// and std::filesystem::filesystem_error.
void requireWritable(const std::filesystem::path& target, const std::filesystem::path& folder,
                     std::string_view name);

/// The folder of the file that is written as `target`: a link is followed.
std::filesystem::path folderOf(const std::filesystem::path& target);

} // namespace kinovane::tool
