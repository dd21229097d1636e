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
    /// Opens a regular file for reading. A pipe or a device in its place is refused without waiting for it.
    static File openRegular(const std::filesystem::path& path);
    /// As openRegular, but refuses a symbolic link as the last piece of the path.
    static File openResolved(const std::filesystem::path& path);
    /// Creates the file, or empties the one that is there.
    static File create(const std::filesystem::path& path);
    /// Opens the file for adding to its end and creates it when it is missing.
    static File append(const std::filesystem::path& path);

    File(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File& operator=(File&&) = delete;
    ~File();

    std::uint64_t size() const;
    /// How many bytes were read; 0 at the end of the file.
    std::size_t read(std::span<char> buffer);
    void write(std::span<const char> bytes);
    /// Waits until no other process holds the lock of this file, then holds it until the file is closed.
    void lock();
    /// Closes and reports what the file system only tells at the end, such as a full disk.
    void close();

  private:
    File(std::filesystem::path path, int descriptor);
    static File openForReading(const std::filesystem::path& path, int extraFlags);

    std::filesystem::path path_;
    int descriptor_;
};

/// The whole content of a regular file of at most `limit` bytes. A larger one is refused with a sentence that
/// says what the file is, such as "a manifest".
std::string readWholeFile(const std::filesystem::path& path, std::uint64_t limit, std::string_view what);

void writeWholeFile(const std::filesystem::path& path, std::string_view content);

/// What the names of unfinished files end with.
inline constexpr std::string_view unfinishedSuffix = ".part";

/// Writes the content beside the file, under a name of this process, and answers that name.
std::filesystem::path writeUnfinished(const std::filesystem::path& path, std::string_view content);

/// Puts the content in the place of the file in one step: a reader sees the old content or the new one.
void replaceFile(const std::filesystem::path& path, std::string_view content);

} // namespace simulator
