// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/tooling.hpp>

#include "common/files/descriptor.hpp"

namespace kinovane::test {

/// The path of tests/programs/test_program.cpp, which does what its arguments say.
std::string testProgramPath();

/// Starts the test program.
Task<ProcessResult> startTestProgram(std::vector<std::string> arguments,
                                     std::map<std::string, std::string> environment = {});

/// Runs the test program. Returns its standard output, or the description of the error.
std::string outputOfTestProgram(std::vector<std::string> arguments,
                                std::map<std::string, std::string> environment = {});

/// Waits for the task. Returns its standard output, or the description of the error.
std::string outcomeOf(Task<ProcessResult> task);

/// A FIFO with which programs and tests wait for one another.
class Fifo {
  public:
    explicit Fifo(const std::filesystem::path& location);
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;

    /// Opens the FIFO, so that a test that fails leaves no program behind.
    ~Fifo();

    std::string path() const { return location_.string(); }

    /// Releases all programs that wait for this FIFO, now or later.
    void open();

    /// Blocks until `count` programs have written their byte (the verb "announce").
    void awaitAnnouncements(std::size_t count = 1);

  private:
    std::filesystem::path location_;
    Descriptor descriptor_;
};

} // namespace kinovane::test
