// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include <boost/json/object.hpp>

#include <kinovane/handoff.hpp>

namespace kinovane::tool {

/// What is known about a recorded file after it was examined.
enum class FileState {
    sound,
    changed,    ///< Its size or its digest differs from the record.
    missing,    ///< No file exists there.
    misplaced,  ///< Its path does not lead to a file in the film's folder.
    malformed,  ///< The recorded digest is not one that a file can have.
    unreadable, ///< It could not be read, so its state is unknown.
};

FileState stateOf(const ArtifactOutcome& outcome);

/// The word for the state, in text and in JSON.
std::string_view nameOf(FileState state);

/// Why a file is not sound: "1.0 kB, recorded 14.7 kB: cut short". May be empty. `root` is the film's folder,
/// which is read to learn where a link leads.
std::string reasonText(const ArtifactOutcome& outcome, const std::filesystem::path& root);

/// The columns of the word at the beginning of a line about a file, with the blanks after it.
inline constexpr std::size_t wordColumns = 12;

/// One line about a file: state, path and reason, or the size of a sound file. If the line would be wider
/// than `columns`, the reason has a line of its own; the path is never broken. `verbose` adds the digests.
std::string fileText(const ArtifactOutcome& outcome, const std::filesystem::path& root, std::size_t columns,
                     bool verbose);

/// A line in the form of `fileText` for anything else: a word, a path and a remark, which may be empty. The
/// word and the remark must be `shown`.
std::string pathLine(std::string_view word, const std::string& path, const std::string& remark,
                     std::size_t columns);

/// The same as JSON: path, kind, state, reason (null without one), recordedBytes, actualBytes, recordedDigest
/// and actualDigest (the last two null when unknown).
boost::json::object fileJSON(const ArtifactOutcome& outcome, const std::filesystem::path& root);

} // namespace kinovane::tool
