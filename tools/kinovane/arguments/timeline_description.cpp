// SPDX-License-Identifier: Apache-2.0

#include "arguments/timeline_description.hpp"

#include <string>

#include <CLI/CLI.hpp>

#include "arguments/argument_checks.hpp"

namespace kinovane::tool {

void describeTimeline(CLI::App& command, TimelineRequest& request) {
    command
        .add_option("--format", request.format,
                    "The format: otio (OpenTimelineIO), edl (CMX3600) or fcpxml (1.9)")
        ->type_name("FORMAT")
        ->required()
        ->check([](const std::string& text) { return choiceError(text, {"edl", "fcpxml", "otio"}); });
    command.add_option("--output", request.output, "Where to store it (- for standard output)")
        ->type_name("FILE")
        ->required();
    command
        .add_option(
            "--references", request.references,
            "How to refer to the film's files: absolute, or relative to the timeline (default: absolute)")
        ->type_name("HOW")
        ->check([](const std::string& text) { return choiceError(text, {"absolute", "relative"}); });
    command
        .add_option(
            "--frame-rate", request.frameRate,
            "Frames per second, such as 25, 23.976 or 24000/1001 (default: as the film's plan has it)")
        ->type_name("RATE")
        ->check(frameRateError);
    command.add_flag("--force", request.force, "Replace a file of another kind");
}

} // namespace kinovane::tool
