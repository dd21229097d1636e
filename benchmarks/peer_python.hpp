// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kinovane::benchmarks {

/// A Python process that runs commands with subprocess.run and measures the time, without that of its own
/// start.
class PythonPeer {
  public:
    PythonPeer();
    ~PythonPeer();
    PythonPeer(const PythonPeer&) = delete;
    PythonPeer& operator=(const PythonPeer&) = delete;

    /// Runs the command this many times in sequence; returns the seconds for all runs.
    double run(std::size_t times, const std::vector<std::string>& command);

  private:
    std::FILE* requests_ = nullptr;
    std::FILE* replies_ = nullptr;
    pid_t process_ = 0;
};

} // namespace kinovane::benchmarks
