// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/temporary_directory.hpp"
#include "support/variable.hpp"

namespace kinovane::test {

/// A program that records its arguments and environment and prints a given output. It is configured through
/// the environment of this process, so only one Recorder may exist at a time.
class Recorder {
  public:
    /// The program prints `output`.
    explicit Recorder(const std::string& output = {});

    /// The program's path.
    static std::string path();

    /// Whether the program has been run.
    bool ran() const;

    /// The arguments of the last run, without the program name.
    std::vector<std::string> arguments() const;

    /// The environment of the last run, as sorted "name=value" texts.
    std::vector<std::string> environment() const;

  private:
    TemporaryDirectory directory_;
    Variable argumentsFile_;
    Variable environmentFile_;
    Variable output_;
};

/// The environment of this process, as sorted "name=value" texts.
std::vector<std::string> ownEnvironment();

/// Writes a file with execute permission whose format the operating system cannot execute.
std::filesystem::path brokenProgram(const TemporaryDirectory& directory);

/// A text of 100,000 lines that still fits one argument.
std::string longText();

} // namespace kinovane::test
