#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace vistrel {

/// An open file. Every failure is a Refusal that names the file.
class File {
  public:
    /// Opens a regular file for reading. A pipe or a device in its place is refused without waiting for it.
    static File openRegular(const std::filesystem::path& path);
    /// As openRegular, but refuses a symbolic link as the last piece of the path.
    static File openResolved(const std::filesystem::path& path);
    /// Creates the file, or empties the one that is there.
    static File create(const std::filesystem::path& path);

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

/// The whole content of a regular file of at most `limit` bytes.
std::string readWholeFile(const std::filesystem::path& path, std::uint64_t limit);

void writeWholeFile(const std::filesystem::path& path, std::string_view content);

} // namespace vistrel
