// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "documents.hpp"

namespace film {

/// How to start pi on a film: the command, the film's folder to start it in, and what to tell it by
/// environment variables.
json::object launchReply(const std::string& pi, const std::string& plugin,
                         const std::filesystem::path& runManifest);

} // namespace film
