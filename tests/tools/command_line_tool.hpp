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

/// The exit status and the output of a run of the command-line tool.
struct Outcome {
    int status = 0;
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// Runs the command-line tool with standard output and standard error connected to pipes.
Outcome runCommandLineTool(std::vector<std::string> arguments,
                           std::map<std::string, std::string> environment = {});

/// Starts the command-line tool with these descriptors as standard output and standard error; -1 leaves one
/// closed.
pid_t startCommandLineTool(std::vector<std::string> arguments, int out, int err);

/// Waits for the process and returns its exit status, or -1 when a signal ended it.
int exitStatusOf(pid_t child);

/// Writes the documents of the workspace: its plan, and its project with the artifacts.
void writeDocuments(const WorkspaceMaker& workspace);

/// `text` with every occurrence of `what` replaced.
std::string replaced(std::string text, const std::string& what, const std::string& by);

/// A file of the folder "golden", with "{WORKSPACE}" replaced by the path of the workspace.
std::string golden(const std::string& name, const std::filesystem::path& workspace);

} // namespace kinovane::test
