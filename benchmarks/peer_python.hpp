// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kinovane::benchmarks {

/// One Python process that runs commands with subprocess.run and times them itself, so that its own start
/// does not count.
class PythonPeer {
  public:
    PythonPeer();
    ~PythonPeer();
    PythonPeer(const PythonPeer&) = delete;
    PythonPeer& operator=(const PythonPeer&) = delete;

    /// Runs the command this many times, one after the other; gives the seconds for all of them.
    double run(std::size_t times, const std::vector<std::string>& command);

  private:
    std::FILE* questions_ = nullptr;
    std::FILE* answers_ = nullptr;
    pid_t process_ = 0;
};

} // namespace kinovane::benchmarks
