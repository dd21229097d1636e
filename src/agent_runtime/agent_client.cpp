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

Task<QuexRunAgentStatus> QuexRunAgentClient::status() const {
    return startProgram<QuexRunAgentStatus>(
        executable_, [] { return std::vector<std::string>{"agent", "status", "--json"}; }, {},
        [](const ProcessResult& result) {
            // The words of FilmToolError are about the film tool, so the message names the program that
            // answered.
            return decodeReply<QuexRunAgentStatus>(result.stdout, "quexrun agent status: ");
        });
}

} // namespace kinovane
