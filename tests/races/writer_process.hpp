// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane::test {

/// A process that writes versions of a manifest in turn (races_writer).
class WriterProcess {
  public:
    /// Starts the process; it writes `rounds` times in all.
    WriterProcess(const std::filesystem::path& target, std::size_t rounds,
                  const std::vector<std::size_t>& versions);
    WriterProcess(const WriterProcess&) = delete;
    WriterProcess& operator=(const WriterProcess&) = delete;

    /// Kills the process, unless it has ended.
    ~WriterProcess();

    /// Blocks until it begins the next write.
    void awaitBegin();

    /// Blocks until it exits, and returns its exit status; -1 when it was killed.
    int wait();

    /// Kills it; whether that was during a write. It may have exited before.
    bool killDuringWrite();

  private:
    std::string readOutput(); ///< Until it ends.

    Descriptor output_;
    pid_t process_ = -1;
};

} // namespace kinovane::test
