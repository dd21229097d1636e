// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

#include "support/sample_film.hpp"

namespace kinovane::test {

/// How a run of the command-line tool ended, and all it said.
struct Outcome {
    int status = 0;
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// Runs the command-line tool with both of its outputs going into pipes.
Outcome runCommandLineTool(std::vector<std::string> arguments,
                           std::map<std::string, std::string> environment = {});

/// Starts the command-line tool on these descriptors; one of -1 is closed in the child.
pid_t startCommandLineTool(std::vector<std::string> arguments, int out, int err);

/// Waits for the program to end and gives its exit status, or -1 when a signal ended it.
int exitStatusOf(pid_t child);

/// Puts the maker's workspace on the disk: its plan, and its project with the artifacts.
void writeDocuments(const WorkspaceMaker& workspace);

/// `text` with every `what` replaced.
std::string replaced(std::string text, const std::string& what, const std::string& by);

/// A file of the folder "golden", with the workspace's place filled in.
std::string golden(const std::string& name, const std::filesystem::path& workspace);

} // namespace kinovane::test
