// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::test {

/// A new temporary directory, removed with its contents by the destructor.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    /// Below `parent` instead of the system's directory for temporary files.
    explicit TemporaryDirectory(const std::filesystem::path& parent);
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

    /// Writes a file, creates the directories above it, and returns its path.
    std::filesystem::path write(std::string_view name, std::string_view content) const;

  private:
    std::filesystem::path path_;
};

/// The bytes of a file.
std::string contentOf(const std::filesystem::path& file);

/// The names of the entries of a directory, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& directory);

} // namespace kinovane::test
