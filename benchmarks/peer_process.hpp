// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// Children started without the library. All throw when the child does not succeed.
namespace kinovane::benchmarks {

/// posix_spawnp and waitpid, with the standard output thrown away.
void runQuietly(const std::vector<std::string>& command);

/// posix_spawn and waitpid: no pipes, nothing read.
void spawnBare(const std::string& program);

/// fork and exec, with both outputs read through pipes.
void forkAndRead(const std::string& program);

/// posix_spawn, with the standard output read through a pipe into a new buffer of this size.
void spawnAndRead(const std::vector<std::string>& command, std::size_t size);

/// Memory that the host application holds, in pages of 4 KiB as a heap in long use has them.
class Ballast {
  public:
    explicit Ballast(std::size_t size);
    ~Ballast();
    Ballast(const Ballast&) = delete;
    Ballast& operator=(const Ballast&) = delete;

  private:
    void* memory_;
    std::size_t size_;
};

} // namespace kinovane::benchmarks
