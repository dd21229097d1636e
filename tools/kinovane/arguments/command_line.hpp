// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <variant>

#include "commands/artifacts.hpp"
#include "commands/copy.hpp"
#include "commands/doctor.hpp"
#include "commands/film_commands.hpp"
#include "commands/inspect.hpp"
#include "commands/open.hpp"
#include "commands/publish.hpp"
#include "commands/shots.hpp"
#include "commands/status.hpp"
#include "commands/storyboard.hpp"
#include "commands/timeline.hpp"
#include "commands/verify.hpp"
#include "session/common_options.hpp"

namespace kinovane::tool {

/// The help, the version, a completion script or a manual page, to be printed.
struct Notice {
    std::string text;
};

using Command = std::variant<Notice, StatusRequest, InspectRequest, VerifyRequest, CopyRequest,
                             PublishRequest, ShotsRequest, ArtifactsRequest, OpenRequest, PlanRequest,
                             ApproveRequest, AdvanceRequest, RerollRequest, ReviewRequest, RecoverRequest,
                             ExportRequest, DoctorRequest, StoryboardRequest, TimelineRequest>;

/// Parses the arguments. Throws UsageError. `options` is set as far as the arguments were understood, also
/// when UsageError is thrown, so that the error can be reported in the form that the user wants. `columns` is
/// the width of help.
Command parseCommandLine(int argumentCount, const char* const* arguments, CommonOptions& options,
                         std::size_t columns);

} // namespace kinovane::tool
