// SPDX-License-Identifier: Apache-2.0

#include "asset_files.hpp"

#include "common/digest.hpp"
#include "common/refusal.hpp"

namespace simulator::vistrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunkSize = std::size_t{1} << 20U;

[[noreturn]] void refuse(const json::object& asset, const std::string& reason) {
    throw Refusal("asset " + jsonQuoted(textOf(asset, "relativePath")) + ": " + reason);
}

fs::path resolveRoot(const std::string& projectRoot) {
    const std::string name = "source.projectRoot: " + jsonQuoted(projectRoot);
    if (!projectRoot.starts_with('/'))
        throw Refusal(name + " is not an absolute path");
    if (projectRoot.find('\0') != std::string::npos)
        throw Refusal(name + " has a NUL character");
    std::error_code error;
    fs::path resolved = fs::canonical(projectRoot, error);
    if (error)
        refuseForSystem("find the project folder", projectRoot, error);
    if (!fs::is_directory(resolved, error))
        throw Refusal(name + " is not a folder");
    return resolved;
}

} // namespace

AssetFiles::AssetFiles(const std::string& projectRoot)
    : root_(resolveRoot(projectRoot)), buffer_(chunkSize) {}

void AssetFiles::verify(const json::object& asset) {
    File source = open(asset);
    read(asset, source, nullptr);
}

void AssetFiles::copy(const json::object& asset, const fs::path& target) {
    File source = open(asset);
    fs::create_directories(target.parent_path());
    File file = File::create(target);
    read(asset, source, &file);
    file.close();
}

File AssetFiles::open(const json::object& asset) const {
    std::error_code error;
    const fs::path resolved = fs::canonical(root_ / textOf(asset, "relativePath"), error);
    if (error)
        refuse(asset, "the file cannot be found: " + error.message());
    if (resolved == root_)
        refuse(asset, "is the project folder itself");
    if (!isInside(resolved, root_))
        refuse(asset, "leads out of the project folder to " + jsonQuoted(resolved.native()));
    const fs::file_status status = fs::status(resolved, error);
    if (error)
        refuse(asset, "the file cannot be examined: " + error.message());
    if (!fs::is_regular_file(status))
        refuse(asset, "is not a regular file");
    return File::openRegular(resolved);
}

void AssetFiles::read(const json::object& asset, File& source, File* target) {
    const auto expectedBytes = static_cast<std::uint64_t>(integerOf(asset, "bytes"));
    // Checked first, so that a truncated master is refused without reading gigabytes.
    if (const std::uint64_t size = source.size(); size != expectedBytes) {
        refuse(asset, "has " + std::to_string(size) + " bytes, but the manifest states " +
                          std::to_string(expectedBytes));
    }
    Digest digest;
    std::uint64_t bytes = 0;
    // A file that keeps growing must not keep the import running.
    while (bytes <= expectedBytes) {
        const std::span<const char> chunk = std::span(buffer_).first(source.read(buffer_));
        if (chunk.empty())
            break;
        bytes += chunk.size();
        digest.add(chunk);
        if (target != nullptr)
            target->write(chunk);
    }
    if (bytes != expectedBytes)
        refuse(asset, "changed while it was being read");
    const std::string expected = textOf(asset, "sha256");
    if (const std::string actual = "sha256:" + digest.finish(); actual != expected)
        refuse(asset, "has the digest " + actual + ", but the manifest states " + expected);
}

bool isInside(const fs::path& path, const fs::path& folder) {
    // With the slash, "/films/run-2" does not count as a part of "/films/run".
    std::string prefix = folder.native();
    if (!prefix.ends_with('/'))
        prefix += '/';
    return path.native().size() > prefix.size() && path.native().starts_with(prefix);
}

} // namespace simulator::vistrel
