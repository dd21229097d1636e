// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include <sys/types.h>

namespace kinovane::tool {

/// A new file that gets its name only when it is complete. Until then it has a random name in the same
/// folder, which begins with `prefix`; the destructor removes it. The functions throw
/// std::filesystem::filesystem_error.
class StagedFile {
  public:
    static constexpr std::string_view prefix = ".kinovane-copy-";

    /// Creates the file. `target` is the name that it is to get.
    explicit StagedFile(std::filesystem::path target, mode_t mode = 0666);
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile();

    const std::filesystem::path& path() const noexcept { return path_; }
    int descriptor() const noexcept { return descriptor_; }

    void write(std::string_view bytes);

    /// Waits until the content is on the disk.
    void sync();

    /// Gives the file its name, in place of the file that has it.
    void replace();

    /// Gives the file its name. Returns false when there is something of that name already.
    bool place();

  private:
    [[noreturn]] void fail() const;

    std::filesystem::path target_;
    std::filesystem::path path_; ///< Empty once the file has its name.
    int descriptor_ = -1;
};

/// Removes files from the folder that an earlier run left there when it was killed. Those that another run
/// still writes are kept.
void removeUnfinishedFiles(const std::filesystem::path& folder);

/// Stores the bytes in a file, which is created or replaced as a whole, and keeps its permissions. A link is
/// followed. Something that is no regular file, such as a named pipe, is written to.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace kinovane::tool
