// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <kinovane/agent_runtime.hpp>

#include "agent_runtime/agent_tables.hpp"
#include "tooling/process/program_reply.hpp"
#include "tooling/process/start_program.hpp"

namespace kinovane {

QuexRunAgentClient::QuexRunAgentClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& QuexRunAgentClient::executable() const noexcept { return executable_; }

Task<QuexRunAgentStatus> QuexRunAgentClient::status(RunOptions options) const {
    return startProgram<QuexRunAgentStatus>(
        {.executable = executable_, .isFilmTool = false, .options = std::move(options)},
        [] { return std::vector<std::string>{"agent", "status", "--json"}; },
        [](const ProcessResult& result) {
            // The text of FilmToolError speaks of the film command, so the message names the program.
            return decodeReply<QuexRunAgentStatus>(result.stdout, "quexrun agent status: ");
        });
}

} // namespace kinovane
