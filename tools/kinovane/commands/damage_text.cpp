// SPDX-License-Identifier: Apache-2.0

#include "commands/damage_text.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <system_error>
#include <variant>

#include "film/film_tree.hpp"
#include "json/json_output.hpp"
#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

bool isDigest(std::string_view text) {
    constexpr std::string_view prefix = "sha256:";
    constexpr std::size_t digits = 64;
    return text.starts_with(prefix) && text.size() == prefix.size() + digits &&
           text.find_first_not_of("0123456789abcdef", prefix.size()) == std::string_view::npos;
}

std::string sizeOf(std::uint64_t bytes) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    return sizeText(static_cast<std::int64_t>(std::min(bytes, largest)));
}

std::string sizesText(std::uint64_t actual, std::int64_t recorded) {
    if (recorded < 0)
        return sizeOf(actual) + ", but the recorded size is below zero";
    const bool isShort = actual < static_cast<std::uint64_t>(recorded);
    std::string found = actual == 0 ? "empty" : sizeOf(actual);
    std::string expected = sizeText(recorded);
    if (found == expected) {
        found = std::to_string(actual) + " B";
        expected = std::to_string(recorded) + " B";
    }
    return found + ", recorded " + expected + (isShort ? ": cut short" : ": too long");
}

std::string changeText(const ArtifactOutcome& outcome) {
    if (outcome.sizeDiffers && outcome.actualBytes)
        return sizesText(*outcome.actualBytes, outcome.artifact.bytes);
    return "its content is not what was recorded";
}

bool holdsParentComponent(const fs::path& path) {
    return std::find(path.begin(), path.end(), "..") != path.end();
}

/// Where the path leads, if that is outside the film's folder.
std::optional<fs::path> locationOutside(const std::string& path, const fs::path& root) {
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(root, error);
    if (error)
        return std::nullopt;
    fs::path location = fs::weakly_canonical(folder / path, error);
    if (error || isInsideLexically(location, folder))
        return std::nullopt;
    return location;
}

std::string misplacementText(const std::string& path, const fs::path& root) {
    if (path.empty())
        return "the recorded path is empty";
    if (path.find('\0') != std::string::npos)
        return "the recorded path holds a NUL byte";
    if (path.front() == '/')
        return "the recorded path is absolute";
    if (fs::path(path).lexically_normal() == "." || fs::path(path).lexically_normal() == "./")
        return "the recorded path is that of the film's folder";
    if (const std::optional<fs::path> outside = locationOutside(path, root))
        return "leads out of the film's folder, to " + shownPath(outside->string());
    return holdsParentComponent(path) ? R"(the recorded path holds "..")" : "leads out of the film's folder";
}

/// Where a link without a target leads. Empty for a path that is no link.
std::string missingTargetText(const std::string& path, const fs::path& root) {
    std::error_code error;
    const fs::path target = fs::read_symlink(root / path, error);
    return error ? "" : "a link to " + shownPath(target.string()) + ", where there is no file";
}

/// What is in place of a regular file; empty when the file system does not tell.
std::string otherTypeText(const std::string& path, const fs::path& root) {
    std::error_code ignored;
    switch (fs::status(root / path, ignored).type()) {
    case fs::file_type::directory:
        return "is a folder, not a file";
    case fs::file_type::fifo:
        return "is a named pipe, not a file";
    case fs::file_type::socket:
        return "is a socket, not a file";
    case fs::file_type::block:
    case fs::file_type::character:
        return "is a device, not a file";
    default:
        return "";
    }
}

std::string failureText(const ArtifactOutcome& outcome, const fs::path& root) {
    if (outcome.failure == std::errc::is_a_directory || outcome.failure == std::errc::operation_not_supported)
        if (std::string type = otherTypeText(outcome.artifact.path, root); !type.empty())
            return type;
    return shown(outcome.failure.message());
}

Style styleOf(FileState state) {
    switch (state) {
    case FileState::sound:
        return Style::good;
    case FileState::unreadable:
        return Style::warning;
    default:
        return Style::bad;
    }
}

const VistrelHandoffError::hashMismatch* mismatchOf(const ArtifactOutcome& outcome) {
    return outcome.refusal ? std::get_if<VistrelHandoffError::hashMismatch>(&outcome.refusal->value())
                           : nullptr;
}

} // namespace

FileState stateOf(const ArtifactOutcome& outcome) {
    if (outcome.refusal) {
        const auto& refusal = outcome.refusal->value();
        if (std::holds_alternative<VistrelHandoffError::missingArtifact>(refusal))
            return FileState::missing;
        if (std::holds_alternative<VistrelHandoffError::unsafeArtifactPath>(refusal))
            return FileState::misplaced;
    } else if (outcome.failure) {
        return FileState::unreadable;
    }
    if (outcome.sound())
        return FileState::sound;
    return isDigest(outcome.artifact.sha256) ? FileState::changed : FileState::malformed;
}

std::string_view nameOf(FileState state) {
    switch (state) {
    case FileState::sound:
        return "sound";
    case FileState::changed:
        return "changed";
    case FileState::missing:
        return "missing";
    case FileState::misplaced:
        return "misplaced";
    case FileState::malformed:
        return "malformed";
    case FileState::unreadable:
        return "unreadable";
    }
    return "";
}

std::string reasonText(const ArtifactOutcome& outcome, const fs::path& root) {
    switch (stateOf(outcome)) {
    case FileState::sound:
        return "";
    case FileState::changed:
        return changeText(outcome);
    case FileState::missing:
        return missingTargetText(outcome.artifact.path, root);
    case FileState::misplaced:
        return misplacementText(outcome.artifact.path, root);
    case FileState::malformed:
        return R"(the recorded digest is not "sha256:" and 64 lowercase digits)";
    case FileState::unreadable:
        return failureText(outcome, root);
    }
    return "";
}

std::string pathLine(std::string_view word, const std::string& path, const std::string& remark,
                     std::size_t columns) {
    std::string line(word);
    const std::size_t width = displayWidth(word);
    line += std::string(width < wordColumns ? wordColumns - width : 1, ' ') +
            (path.empty() ? "''" : shownPath(path));
    if (remark.empty())
        return line + "\n";
    if (displayWidth(line) + 2 + displayWidth(remark) <= columns)
        return line + "  " + remark + "\n";
    line += "\n";
    for (const std::string& part : wrapped(remark, std::max(columns, 2 * wordColumns) - wordColumns))
        line += std::string(wordColumns, ' ') + part + "\n";
    return line;
}

std::string fileText(const ArtifactOutcome& outcome, const fs::path& root, std::size_t columns,
                     bool verbose) {
    const FileState state = stateOf(outcome);
    const std::string remark =
        state == FileState::sound ? sizeOf(outcome.actualBytes.value_or(0)) : reasonText(outcome, root);
    std::string text =
        pathLine(styled(styleOf(state), nameOf(state)), outcome.artifact.path, remark, columns);
    if (!verbose)
        return text;
    const std::string indent(wordColumns, ' ');
    text += indent + styled(Style::dim, "recorded " + shown(outcome.artifact.sha256)) + "\n";
    if (const auto* mismatch = mismatchOf(outcome))
        text += indent + styled(Style::dim, "found    " + shown(mismatch->actual)) + "\n";
    return text;
}

json::object fileJSON(const ArtifactOutcome& outcome, const fs::path& root) {
    const FilmArtifact& artifact = outcome.artifact;
    const FileState state = stateOf(outcome);
    const std::string reason = reasonText(outcome, root);
    json::value actualDigest;
    if (const auto* mismatch = mismatchOf(outcome))
        actualDigest = mismatch->actual;
    else if (state == FileState::sound)
        actualDigest = artifact.sha256;
    return {{"path", artifact.path},
            {"kind", artifact.kind},
            {"state", nameOf(state)},
            {"reason", reason.empty() ? json::value() : json::value(reason)},
            {"recordedBytes", artifact.bytes},
            {"actualBytes", optionalValue(outcome.actualBytes)},
            {"recordedDigest", artifact.sha256},
            {"actualDigest", actualDigest}};
}

} // namespace kinovane::tool
