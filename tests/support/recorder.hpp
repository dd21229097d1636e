// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/temporary_directory.hpp"
#include "support/variable.hpp"

namespace kinovane::test {

/// The program that records how it was started and then behaves as it is told. It is told through this
/// process's environment, so there is one at a time.
class Recorder {
  public:
    /// It prints `output`.
    explicit Recorder(const std::string& output = {});

    /// The program's path.
    static std::string path();

    /// Whether it ran at all.
    bool ran() const;

    /// What it was started with the last time, without the program itself.
    std::vector<std::string> arguments() const;

    /// The whole environment it had the last time, as sorted "name=value" texts.
    std::vector<std::string> environment() const;

  private:
    TemporaryDirectory directory_;
    Variable argumentsFile_;
    Variable environmentFile_;
    Variable output_;
};

/// This process's environment, as the recorder's.
std::vector<std::string> ownEnvironment();

/// A file that may be executed but that the operating system does not know how to run.
std::filesystem::path brokenProgram(const TemporaryDirectory& directory);

/// A text of many lines, longer than most and still short enough for one argument.
std::string longText();

} // namespace kinovane::test
