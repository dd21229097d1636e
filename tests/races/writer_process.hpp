// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane::test {

/// A process that writes versions of a manifest, one after the other.
class WriterProcess {
  public:
    /// It writes so many times in all.
    WriterProcess(const std::filesystem::path& target, std::size_t rounds,
                  const std::vector<std::size_t>& versions);
    WriterProcess(const WriterProcess&) = delete;
    WriterProcess& operator=(const WriterProcess&) = delete;

    /// Kills it, unless it has ended.
    ~WriterProcess();

    /// Blocks until it begins to write.
    void awaitBeginning();

    /// Blocks until it has ended by itself, and gives its exit status; negative when it was killed.
    int wait();

    /// Kills it at once, and tells whether that was in the middle of a writing; it may have ended before.
    bool killedWhileWriting();

  private:
    std::string heard(); ///< What it says until it ends.

    Descriptor output_;
    pid_t process_ = -1;
};

} // namespace kinovane::test
