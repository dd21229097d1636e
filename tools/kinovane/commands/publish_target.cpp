// SPDX-License-Identifier: Apache-2.0

#include "commands/publish_target.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

#include <unistd.h>

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include "commands/manifest_changes.hpp"
#include "film/file_content.hpp"
#include "film/handoff_file.hpp"
#include "film/output_file.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

/// Whether the file is JSON of any version of the handoff contract.
bool isHandoffManifest(const fs::path& file) {
    constexpr std::string_view contract = "quexrun/film-vistrel-handoff.";
    std::error_code error;
    const std::string text = contentOf(file, error, largestManifest);
    if (error)
        return false;
    boost::system::error_code invalid;
    const boost::json::value document = boost::json::parse(text, invalid);
    if (invalid || !document.is_object())
        return false;
    const boost::json::value* version = document.get_object().if_contains("contractVersion");
    return version != nullptr && version->is_string() &&
           std::string_view(version->get_string()).starts_with(contract);
}

constexpr OutputKind manifestKind{"publish", "handoff manifest", manifestName, isHandoffManifest};

/// The folder in which the first file or folder is created when the target is written.
fs::path folderToWriteIn(const fs::path& target) {
    const fs::path folder = folderOf(target);
    std::error_code ignored;
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
        manifest_ = request.manifest ? outputPath(*request.manifest, manifestKind) : usual;
        requireReplaceable(manifest_, request.manifest ? "--output" : "the manifest", &film, request.force,
                           manifestKind);
        previous_ = readManifest(manifest_);
    }
    if (!previous_)
        previous_ = readManifest(usual);
    if (previous_ && previous_->source.projectId != film.project.projectId)
        previous_.reset(); // It tells nothing about this film.
}

void PublishTarget::requireWritable() const {
    if (!isStandardOutput_)
        tool::requireWritable(manifest_, folderToWriteIn(manifest_), "manifest");
}

} // namespace kinovane::tool
