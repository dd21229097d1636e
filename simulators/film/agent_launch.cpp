// SPDX-License-Identifier: Apache-2.0

#include "agent_launch.hpp"

namespace film {

json::object launchReply(const std::string& pi, const std::string& plugin,
                         const std::filesystem::path& runManifest) {
    const std::string& manifest = runManifest.native();
    return {{"command", textList({pi, "--extension", plugin, "--run-manifest", manifest})},
            {"cwd", runManifest.parent_path().native()},
            {"environment",
             json::object{{"QUEX_FILM_TOOLS_PLUGIN", plugin}, {"QUEX_FILM_TOOLS_RUN_MANIFEST", manifest}}}};
}

} // namespace film
