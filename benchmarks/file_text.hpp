// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>

namespace kinovane::benchmarks {

/// The bytes of a whole file, read into memory that is not initialised first.
class FileText {
  public:
    explicit FileText(const std::filesystem::path& file);

    std::string_view view() const noexcept { return {bytes_.get(), size_}; }

  private:
    std::size_t size_ = 0;
    std::unique_ptr<char[]> bytes_;
};

/// Writes a file, or overwrites it.
void storeText(const std::filesystem::path& file, std::string_view text);

} // namespace kinovane::benchmarks
