// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// Starting child processes without the library. Each function throws when the child fails.
namespace kinovane::benchmarks {

/// posix_spawnp and waitpid, with standard output discarded.
void runQuietly(const std::vector<std::string>& command);

/// posix_spawn and waitpid, without pipes.
void spawnBare(const std::string& program);

/// fork and exec, with both outputs read through pipes.
void forkAndRead(const std::string& program);

/// posix_spawn, with the standard output read through a pipe into a new buffer of this size.
void spawnAndRead(const std::vector<std::string>& command, std::size_t size);

/// Resident memory of the calling process, in pages of 4 KiB like a fragmented heap.
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
