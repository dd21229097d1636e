// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace kinovane::tool {

/// The names or paths of the external programs.
struct DoctorRequest {
    std::string film = "film";
    std::string vistrel = "vistrel";
    std::string quexrun = "quexrun";
    std::string pi = "pi";
    bool json = false;
};

/// Prints which external programs are found, and the status of the agent runtime. Returns whether all
/// programs are found and the agent runtime replies. A failing program is part of the output, not an
/// exception.
bool doctor(const DoctorRequest& request);

} // namespace kinovane::tool
