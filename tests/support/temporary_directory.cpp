// SPDX-License-Identifier: Apache-2.0

#include "support/temporary_directory.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kinovane::test {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() : TemporaryDirectory(fs::temp_directory_path()) {}

TemporaryDirectory::TemporaryDirectory(const fs::path& parent) {
    // Canonical, so that tests can compare paths with those that the library returns.
    std::string name = (fs::canonical(parent) / "kinovane-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    // A test may have removed the permission to list a directory.
    fs::permissions(path_, fs::perms::owner_all, ignored);
    for (auto entry = fs::recursive_directory_iterator(path_, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored))
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            fs::permissions(entry->path(), fs::perms::owner_all, ignored);
    fs::remove_all(path_, ignored);
}

fs::path TemporaryDirectory::write(std::string_view name, std::string_view content) const {
    const fs::path file = path_ / name;
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
    return file;
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> namesIn(const fs::path& directory) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kinovane::test
