// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::test {

/// A fresh directory of its own, removed with everything in it.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

    /// Writes a file, and the directories above it; gives its location.
    std::filesystem::path write(std::string_view name, std::string_view content) const;

  private:
    std::filesystem::path path_;
};

std::string contentOf(const std::filesystem::path& file);

/// The names of everything in a directory, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& directory);

} // namespace kinovane::test
