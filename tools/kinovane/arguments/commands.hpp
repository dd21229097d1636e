// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "arguments/command_line.hpp"

namespace CLI {
class App;
}

namespace kinovane::tool {

/// The values of the arguments of every command. Only those of the command that is named are set.
struct Requests {
    StatusRequest status;
    InspectRequest inspect;
    VerifyRequest verify;
    CopyRequest copy;
    PublishRequest publish;
    ShotsRequest shots;
    StoryboardRequest storyboard;
    ArtifactsRequest artifacts;
    OpenRequest open;
    PlanRequest plan;
    ApproveRequest approve;
    AdvanceRequest advance;
    RerollRequest reroll;
    ReviewRequest review;
    RecoverRequest recover;
    ExportRequest exportFilm;
    DoctorRequest doctor;
    TimelineRequest timeline;
    std::string helpTopic; ///< A command, or empty.
    std::string shell;

    /// The request of this command.
    Command select(const std::string& name) const;
};

/// The one description of all commands and options: arguments are parsed with it, and help, completion
/// scripts and manual pages are made from it. `requests` and `options` must outlive it.
std::unique_ptr<CLI::App> commandLineDescription(Requests& requests, CommonOptions& options);

/// The commands of a description, in its order.
std::vector<const CLI::App*> commandsOf(const CLI::App& app);

/// The command of this name, or null.
const CLI::App* commandNamed(const CLI::App& app, const std::string& name);

} // namespace kinovane::tool
