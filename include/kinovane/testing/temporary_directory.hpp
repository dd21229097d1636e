// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <stdlib.h>
#include <unistd.h>

namespace kinovane::testing {

/// A new, empty directory below the system's directory for temporary files. The destructor removes it with
/// its contents, also where a test has removed permissions.
class TemporaryDirectory {
  public:
    /// Throws std::filesystem::filesystem_error if the directory cannot be created.
    TemporaryDirectory() {
        // Canonical, so that a test can compare paths with those that the library returns.
        std::string name =
            (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "kinovane-test-XXXXXX")
                .string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::filesystem::filesystem_error("cannot create a temporary directory", name,
                                                    std::error_code(errno, std::generic_category()));
        path_ = name;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        allowRemoval(path_);
        for (auto entry = std::filesystem::recursive_directory_iterator(path_, ignored);
             entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored))
            if (!entry->is_symlink(ignored) && entry->is_directory(ignored))
                allowRemoval(entry->path());
        std::filesystem::remove_all(path_, ignored);
    }

    /// Absolute, without symbolic links.
    const std::filesystem::path& path() const noexcept { return path_; }
    /// The path of an entry, which need not exist.
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  private:
    static void allowRemoval(const std::filesystem::path& directory) noexcept {
        std::error_code ignored;
        std::filesystem::permissions(directory, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
    }

    std::filesystem::path path_;
};

} // namespace kinovane::testing
