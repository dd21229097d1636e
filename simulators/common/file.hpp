// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace simulator {

/// An open file. Every failure is a Refusal that names the file.
class File {
  public:
    /// Opens a regular file for reading. A pipe or a device is refused without waiting for it.
    static File openRegular(const std::filesystem::path& path);
    /// Creates the file, or truncates the existing one.
    static File create(const std::filesystem::path& path);
    /// Opens the file for appending; creates it when it is missing.
    static File append(const std::filesystem::path& path);

    File(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File& operator=(File&&) = delete;
    ~File();

    std::uint64_t size() const;
    /// The number of bytes read; 0 at the end of the file.
    std::size_t read(std::span<char> buffer);
    void write(std::span<const char> bytes);
    /// Waits for the exclusive lock of this file and holds it until the file is closed.
    void lock();
    /// Closes the file and reports errors that the file system delays until then, such as a full disk.
    void close();

  private:
    File(const std::filesystem::path& path, const char* attempt, int flags);

    std::filesystem::path path_;
    int descriptor_;
};

/// The content of a regular file of at most `limit` bytes. The refusal of a larger one says what the file is,
/// such as "a manifest".
std::string readWholeFile(const std::filesystem::path& path, std::uint64_t limit, std::string_view what);

void writeWholeFile(const std::filesystem::path& path, std::string_view content);

/// The extension of temporary files.
inline constexpr std::string_view temporaryExtension = ".part";

/// Writes the content to a temporary file of this process beside `path`; its path.
std::filesystem::path writeTemporary(const std::filesystem::path& path, std::string_view content);

/// Replaces the file atomically: a reader sees the old content or the new one.
void replaceFile(const std::filesystem::path& path, std::string_view content);

} // namespace simulator
