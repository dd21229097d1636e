// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace kinovane::tool {

/// Names or paths of the outside programs.
struct DoctorRequest {
    std::string film = "film";
    std::string vistrel = "vistrel";
    std::string quexrun = "quexrun";
    std::string pi = "pi";
    bool json = false;
};

/// Prints which outside programs are there and what the agent runtime says; whether all of them are there and
/// answer. A program that fails is part of what is printed, and no exception.
bool doctor(const DoctorRequest& request);

} // namespace kinovane::tool
