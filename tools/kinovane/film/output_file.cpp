// SPDX-License-Identifier: Apache-2.0

#include "film/output_file.hpp"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <unistd.h>

#include "film/own_files.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

const char* nameOf(fs::file_type type) {
    switch (type) {
    case fs::file_type::directory:
        return "a folder";
    case fs::file_type::fifo:
        return "a named pipe";
    case fs::file_type::socket:
        return "a socket";
    default:
        return "a device";
    }
}

std::string withFileName(const fs::path& folder, const OutputKind& kind) {
    return "\nNext: kinovane " + std::string(kind.command) + " --output " +
           shownPath((folder / kind.fileName).string());
}

} // namespace

fs::path outputPath(const fs::path& output, const OutputKind& kind) {
    if (output.empty())
        throw UsageError("--output is empty");
    fs::path path = fs::absolute(output);
    if (!path.has_filename())
        throw UsageError("--output is a folder: " + shownPath(output.string()) + withFileName(output, kind));
    return path;
}

void requireReplaceable(const fs::path& target, const std::string& subject, const FilmWorkspaceSnapshot* film,
                        bool force, const OutputKind& kind) {
    const std::string shownTarget = shownPath(target.string());
    if (film != nullptr && isOwnFile(*film, target))
        throw UsageError(subject + " would replace one of the film's own files: " + shownTarget);
    std::error_code ignored; // What cannot be reached is reported when it is written to.
    const fs::file_type type = fs::status(target, ignored).type();
    if (type == fs::file_type::not_found || type == fs::file_type::none || type == fs::file_type::unknown)
        return;
    if (type == fs::file_type::directory)
        throw UsageError(subject + " is a folder: " + shownTarget +
                         withFileName(target.lexically_normal(), kind));
    if (type != fs::file_type::regular)
        throw UsageError(subject + " is " + nameOf(type) + ", not a file: " + shownTarget);
    if (!force && !kind.isSuchFile(target))
        throw UsageError(subject + " would replace a file that is no " + std::string(kind.name) + ": " +
                         shownTarget + "\nNext: kinovane " + std::string(kind.command) +
                         " --force, if the file may be replaced");
}

fs::path folderOf(const fs::path& target) {
    std::error_code ignored;
    const fs::path file = fs::canonical(target, ignored);
    return (ignored ? target : file).parent_path();
}

void requireWritable(const fs::path& target, const fs::path& folder, std::string_view name) {
    std::error_code ignored;
    if (const auto type = fs::status(folder, ignored).type();
        type == fs::file_type::not_found && ignored == std::errc::no_such_file_or_directory)
        throw CommandError(ExitStatus::fileSystem,
                           "the folder of the " + std::string(name) +
                               " does not exist: " + shownPath(target.parent_path().string()) +
                               "\nNext: mkdir -p " + shownPath(target.parent_path().string()));
    std::string file = (folder / ".kinovane-XXXXXX").string();
    const int descriptor = ::mkstemp(file.data());
    if (descriptor < 0)
        throw fs::filesystem_error("cannot write", folder, std::error_code(errno, std::generic_category()));
    ::close(descriptor);
    ::unlink(file.c_str());
}

} // namespace kinovane::tool
