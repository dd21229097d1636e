// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "session/session.hpp"

namespace kinovane::tool {

/// The names or paths of the external programs.
struct DoctorRequest {
    std::string film = "film";
    std::string vistrel = "vistrel";
    std::string quexrun = "quexrun";
    std::string pi = "pi";
};

/// Prints which external programs are found, and the status of the agent runtime. A failing program is part
/// of the output, not an exception: the status is `program` then.
ExitStatus doctor(const DoctorRequest& request, const Session& session);

} // namespace kinovane::tool
