#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "common/file_location.hpp"
#include "handoff/handoff_tables.hpp"
#include "tooling/process_runner.hpp"
#include "tooling/start_task.hpp"

namespace kinovane {

VistrelClient::VistrelClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& VistrelClient::executable() const noexcept { return executable_; }

Task<VistrelImportReceipt> VistrelClient::validate(const std::filesystem::path& manifest) const {
    return runImport(manifest, true);
}

Task<VistrelImportReceipt> VistrelClient::import(const std::filesystem::path& manifest) const {
    return runImport(manifest, false);
}

Task<VistrelImportReceipt> VistrelClient::runImport(const std::filesystem::path& manifest,
                                                    bool dryRun) const {
    std::vector<std::string> arguments{"production", "import-film", pathText(manifest)};
    if (dryRun)
        arguments.emplace_back("--dry-run");
    arguments.insert(arguments.end(), {"--output", "json"});
    return startTask<VistrelImportReceipt>(
        [executable = executable_, arguments = std::move(arguments)]() mutable {
            const ProcessResult result =
                runSynchronously(FilmToolClient::resolveExecutable(executable), std::move(arguments));
            return decode<VistrelImportReceipt>(result.stdout);
        });
}

} // namespace kinovane
