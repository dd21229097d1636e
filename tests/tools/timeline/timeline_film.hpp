// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/timeline/read_timeline.hpp"

namespace kinovane::test {

/// The formats of timelines.
inline const std::vector<std::string> timelineFormats{"edl", "fcpxml", "otio"};

/// A film at 24 frames per second, of which timelines are made.
struct TimelineFilm {
    TimelineFilm() { plan().target.fps = 24; }

    FilmProductionPlan& plan() { return *workspace.snapshot.productionPlan; }

    std::string folder() const { return workspace.directory.path().string(); }

    std::filesystem::path file(const std::string& format) const { return out / ("film." + format); }

    /// Writes the documents and runs the command.
    Outcome make(const std::string& format, std::vector<std::string> options = {}) const {
        writeDocuments(workspace);
        return remake(format, std::move(options));
    }

    /// Runs the command on the documents as they are.
    Outcome remake(const std::string& format, std::vector<std::string> options = {}) const {
        std::vector<std::string> arguments{"timeline", folder(), "--format", format};
        if (std::ranges::find(options, "--output") == options.end())
            arguments.insert(arguments.end(), {"--output", file(format).string()});
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runCommandLineTool(std::move(arguments));
    }

    /// The timeline that was made.
    ReadTimeline read(const std::string& format, const FrameRate& rate = {24, 1}) const {
        return readTimeline(format, contentOf(file(format)), rate);
    }

    WorkspaceMaker workspace;
    TemporaryDirectory out;
};

} // namespace kinovane::test
