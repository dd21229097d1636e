// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

/// A film that the simulator of the film tool has planned.
class PlannedFilm {
  public:
    PlannedFilm() { EXPECT_EQ(plan().status, 0); }

    Outcome plan() const {
        return runCommandLineTool({"plan", "A lamp is borrowed", "--title", "Lamp & “Light”", "--duration",
                                   "9", "--folder", folder, "--film-tool", tool});
    }

    Outcome run(std::vector<std::string> arguments, const std::string& misbehaviour = "") const {
        const std::string& command = arguments.at(0);
        if (command != "status")
            arguments.insert(arguments.end(), {"--film-tool", tool});
        return runCommandLineTool(std::move(arguments), {{"FILM_MISBEHAVE", misbehaviour}});
    }

    /// Runs a command whose last argument is the film.
    Outcome operator()(std::vector<std::string> arguments, const std::string& misbehaviour = "") const {
        arguments.insert(arguments.begin() + 1, folder);
        return run(std::move(arguments), misbehaviour);
    }

    std::string quotedFolder() const { return "'" + folder + "'"; }

    const TemporaryDirectory directory;
    const std::string folder = (directory / "my film").string();
    const std::string tool = programPath("film");

  private:
    const Variable clock_{"FILM_CLOCK", "2026-03-01T14:05:09Z"};
};

/// What a command prints as the next step when a gate waits.
inline std::string waitingText(const PlannedFilm& film, const std::string& gate, const std::string& summary) {
    return "\nThe film waits for the approval of “" + gate + "”: " + summary + ".\nNext: kinovane approve " +
           gate + " " + film.quotedFolder() + "\n";
}

} // namespace kinovane::test
