// SPDX-License-Identifier: Apache-2.0

#include "commands/publish_target.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include <unistd.h>

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include "commands/manifest_changes.hpp"
#include "film/own_files.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

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

/// Whether the file is JSON of any version of the handoff contract.
bool isHandoffManifest(const fs::path& file) {
    constexpr std::string_view contract = "quexrun/film-vistrel-handoff.";
    constexpr std::uintmax_t largest = std::uintmax_t{256} << 20U; // The importer reads no larger one.
    std::error_code error;
    if (fs::file_size(file, error) > largest || error)
        return false;
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    boost::system::error_code invalid;
    const boost::json::value document = boost::json::parse(text, invalid);
    if (invalid || !document.is_object())
        return false;
    const boost::json::value* version = document.get_object().if_contains("contractVersion");
    return version != nullptr && version->is_string() &&
           std::string_view(version->get_string()).starts_with(contract);
}

/// The absolute path of --output.
fs::path outputPath(const fs::path& output) {
    if (output.empty())
        throw UsageError("--output is empty");
    fs::path path = fs::absolute(output);
    if (!path.has_filename())
        throw UsageError("--output is a folder: " + shownPath(output.string()) +
                         "\nNext: kinovane publish --output " + shownPath((output / manifestName).string()));
    return path;
}

/// Refuses a target that the manifest must not replace. `subject` is what names the target.
void requireReplaceable(const fs::path& target, const std::string& subject, const FilmWorkspaceSnapshot& film,
                        bool force) {
    const std::string shownTarget = shownPath(target.string());
    if (isOwnFile(film, target))
        throw UsageError(subject + " would replace one of the film's own files: " + shownTarget);
    std::error_code ignored; // What cannot be reached is reported when it is written to.
    const fs::file_type type = fs::status(target, ignored).type();
    if (type == fs::file_type::not_found || type == fs::file_type::none || type == fs::file_type::unknown)
        return;
    if (type == fs::file_type::directory)
        throw UsageError(subject + " is a folder: " + shownTarget + "\nNext: kinovane publish --output " +
                         shownPath((target / manifestName).lexically_normal().string()));
    if (type != fs::file_type::regular)
        throw UsageError(subject + " is " + nameOf(type) + ", not a file: " + shownTarget);
    if (!force && !isHandoffManifest(target))
        throw UsageError(subject + " would replace a file that is no handoff manifest: " + shownTarget +
                         "\nNext: kinovane publish --force, if the file may be replaced");
}

/// The folder in which the first file or folder is created when the target is written.
fs::path folderToWriteIn(const fs::path& target) {
    std::error_code ignored;
    const fs::path file = fs::canonical(target, ignored); // A link is followed when it is written to.
    const fs::path folder = (ignored ? target : file).parent_path();
    // Only a missing folder is created; for any other reason the attempt to write tells what is wrong.
    return fs::status(folder, ignored).type() == fs::file_type::not_found &&
                   ignored == std::errc::no_such_file_or_directory
               ? folder.parent_path()
               : folder;
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    const fs::path parent = fs::temp_directory_path();
    std::string name = (parent / "kinovane-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw fs::filesystem_error("cannot create a temporary folder", parent, lastError());
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

PublishTarget::PublishTarget(const PublishRequest& request, const FilmWorkspaceSnapshot& film)
    : isStandardOutput_(request.manifest == "-") {
    const fs::path usual = fs::absolute(film.root / manifestName);
    if (isStandardOutput_) {
        // Nothing is replaced.
    } else if (request.dryRun && !request.manifest) {
        manifest_ = folder_.emplace().path() / manifestName;
    } else {
        manifest_ = request.manifest ? outputPath(*request.manifest) : usual;
        requireReplaceable(manifest_, request.manifest ? "--output" : "the manifest", film, request.force);
        previous_ = readManifest(manifest_);
    }
    if (!previous_)
        previous_ = readManifest(usual);
    if (previous_ && previous_->source.projectId != film.project.projectId)
        previous_.reset(); // It tells nothing about this film.
}

void PublishTarget::requireWritable() const {
    if (isStandardOutput_)
        return;
    const fs::path folder = folderToWriteIn(manifest_);
    std::error_code ignored;
    if (const auto type = fs::status(folder, ignored).type();
        type == fs::file_type::not_found && ignored == std::errc::no_such_file_or_directory)
        throw CommandError(
            ExitStatus::fileSystem,
            "the folder of the manifest does not exist: " + shownPath(manifest_.parent_path().string()) +
                "\nNext: mkdir -p " + shownPath(manifest_.parent_path().string()));
    std::string name = (folder / ".kinovane-XXXXXX").string();
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0)
        throw fs::filesystem_error("cannot write to the folder of the manifest", folder, lastError());
    ::close(descriptor);
    ::unlink(name.c_str());
}

} // namespace kinovane::tool
