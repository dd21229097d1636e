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

/// The path of the program that does what its arguments say.
std::string testProgramPath();

/// Starts it.
Task<ProcessResult> startTestProgram(std::vector<std::string> arguments,
                                     std::map<std::string, std::string> environment = {});

/// What it wrote to standard output, or the description of the error.
std::string outputOfTestProgram(std::vector<std::string> arguments,
                                std::map<std::string, std::string> environment = {});

/// The standard output that arrives through `task`, or the description of the error.
std::string outcomeOf(Task<ProcessResult> task);

/// A FIFO at which programs and tests wait for one another.
class Fifo {
  public:
    explicit Fifo(const std::filesystem::path& location);
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;

    /// Lets whoever waits go on, so that a test that fails leaves no program behind.
    ~Fifo();

    std::string path() const { return location_.string(); }

    /// Lets all go on that wait here, and all that come later.
    void open();

    /// Blocks until so many programs have announced themselves here.
    void awaitAnnouncements(std::size_t count = 1);

  private:
    std::filesystem::path location_;
    Descriptor descriptor_;
};

} // namespace kinovane::test
