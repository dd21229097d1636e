// SPDX-License-Identifier: Apache-2.0

#include "asset_files.hpp"

#include "common/digest.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace vistrel {
namespace {

using simulator::Digest;
using simulator::File;
using simulator::jsonQuoted;
using simulator::Refusal;
using simulator::refuseForSystem;

constexpr std::size_t pieceSize = std::size_t{1} << 20U;

[[noreturn]] void refuse(const Asset& asset, const std::string& reason) {
    throw Refusal("asset " + jsonQuoted(asset.relativePath) + ": " + reason);
}

std::filesystem::path resolveRoot(const std::string& projectRoot) {
    const std::filesystem::path root(projectRoot);
    if (!root.is_absolute())
        throw Refusal("source.projectRoot: " + jsonQuoted(projectRoot) + " is not an absolute path");
    if (projectRoot.find('\0') != std::string::npos)
        throw Refusal("source.projectRoot: " + jsonQuoted(projectRoot) + " has a NUL character");
    std::error_code error;
    std::filesystem::path resolved = std::filesystem::canonical(root, error);
    if (error)
        refuseForSystem("find the project folder", root, error);
    if (!std::filesystem::is_directory(resolved, error))
        throw Refusal("source.projectRoot: " + jsonQuoted(projectRoot) + " is not a folder");
    return resolved;
}

} // namespace

AssetFiles::AssetFiles(const std::string& projectRoot)
    : root_(resolveRoot(projectRoot)), buffer_(pieceSize) {}

void AssetFiles::verify(const Asset& asset) {
    File source = open(asset);
    stream(asset, source, nullptr);
}

void AssetFiles::copy(const Asset& asset, const std::filesystem::path& target) {
    File source = open(asset);
    std::filesystem::create_directories(target.parent_path());
    File file = File::create(target);
    stream(asset, source, &file);
    file.close();
}

simulator::File AssetFiles::open(const Asset& asset) const {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(root_ / asset.relativePath, error);
    if (error)
        refuse(asset, "the file cannot be found: " + error.message());
    if (resolved == root_)
        refuse(asset, "is the project folder itself");
    if (!isInside(resolved, root_))
        refuse(asset, "leads out of the project folder to " + jsonQuoted(resolved.native()));
    const std::filesystem::file_status status = std::filesystem::status(resolved, error);
    if (error)
        refuse(asset, "the file cannot be examined: " + error.message());
    if (!std::filesystem::is_regular_file(status))
        refuse(asset, "is not a regular file");
    return File::openResolved(resolved);
}

void AssetFiles::stream(const Asset& asset, File& source, File* target) {
    const auto expectedBytes = static_cast<std::uint64_t>(asset.bytes);
    // Asked first, so that a film with a truncated master is refused without reading gigabytes.
    if (const std::uint64_t size = source.size(); size != expectedBytes) {
        refuse(asset, "has " + std::to_string(size) + " bytes, but the manifest states " +
                          std::to_string(asset.bytes));
    }
    Digest digest;
    std::uint64_t bytes = 0;
    while (const std::size_t count = source.read(buffer_)) {
        const std::span<const char> piece = std::span(buffer_).first(count);
        bytes += count;
        // A file that grows while it is read would otherwise keep the import going for as long as it grows.
        if (bytes > expectedBytes)
            break;
        digest.add(piece);
        if (target != nullptr)
            target->write(piece);
    }
    if (bytes != expectedBytes)
        refuse(asset, "changed while it was being read");
    if (const std::string actual = "sha256:" + digest.finish(); actual != asset.sha256)
        refuse(asset, "has the digest " + actual + ", but the manifest states " + asset.sha256);
}

bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder) {
    // The slash keeps "/films/run-2" from counting as a part of "/films/run".
    std::string prefix = folder.native();
    if (!prefix.ends_with('/'))
        prefix += '/';
    return path.native().size() > prefix.size() && path.native().starts_with(prefix);
}

} // namespace vistrel
