// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "handoff/handoff_tables.hpp"
#include "tooling/process/location_argument.hpp"
#include "tooling/process/program_reply.hpp"
#include "tooling/process/start_program.hpp"

namespace kinovane {

VistrelClient::VistrelClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& VistrelClient::executable() const noexcept { return executable_; }

Task<VistrelImportReceipt> VistrelClient::validate(const std::filesystem::path& manifest,
                                                   RunOptions options) const {
    return runImport(manifest, true, std::move(options));
}

Task<VistrelImportReceipt> VistrelClient::import(const std::filesystem::path& manifest,
                                                 RunOptions options) const {
    return runImport(manifest, false, std::move(options));
}

Task<VistrelImportReceipt> VistrelClient::runImport(const std::filesystem::path& manifest, bool dryRun,
                                                    RunOptions options) const {
    return startProgram<VistrelImportReceipt>(
        {.executable = executable_, .isFilmTool = false, .options = std::move(options)},
        [&] {
            std::vector<std::string> arguments{"production", "import-film",
                                               locationArgument("handoff manifest", manifest)};
            if (dryRun)
                arguments.emplace_back("--dry-run");
            arguments.insert(arguments.end(), {"--output", "json"});
            return arguments;
        },
        [](const ProcessResult& result) { return decodeReply<VistrelImportReceipt>(result.stdout); });
}

} // namespace kinovane
