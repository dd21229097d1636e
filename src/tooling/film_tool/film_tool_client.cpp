// SPDX-License-Identifier: Apache-2.0

#include <string_view>

#include <kinovane/tooling.hpp>

#include "common/files/location.hpp"
#include "tooling/film_tool/reply_tables.hpp"
#include "tooling/process/location_argument.hpp"
#include "tooling/process/program_reply.hpp"
#include "tooling/process/start_program.hpp"
#include "workspace/film_project_tables.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;
using OptionalText = std::optional<std::string>;

/// Starts the tool; the task returns its result unchanged.
template <class PrepareArguments>
Task<ProcessResult> startForResult(const std::string& executable, PrepareArguments prepareArguments,
                                   RunOptions&& options, Environment&& environment = {}) {
    return startProgram<ProcessResult>(
        {.executable = executable, .options = std::move(options), .environment = std::move(environment)},
        std::move(prepareArguments), [](ProcessResult result) { return result; });
}

/// Starts the tool; the task returns its decoded reply.
template <class Reply, class PrepareArguments>
Task<Reply> startForReply(const std::string& executable, PrepareArguments prepareArguments,
                          RunOptions&& options) {
    return startProgram<Reply>({.executable = executable, .options = std::move(options)},
                               std::move(prepareArguments),
                               [](const ProcessResult& result) { return decodeReply<Reply>(result.stdout); });
}

std::string runManifestArgument(const fs::path& location) {
    return locationArgument("run manifest", location);
}

/// Returns the run manifest that the reply to `plan` names. A relative path is relative to `directory`, in
/// which the tool was started.
fs::path plannedRunManifest(const std::string& reply, const WorkingDirectory& directory) {
    const fs::path location = decodeReply<FilmPlanResponse>(reply).status.runManifest;
    if (location.empty())
        throw FilmToolError(FilmToolError::invalidJSON{"status.runManifest is empty"});
    try {
        return directory.absolute(location);
    } catch (const fs::filesystem_error& error) {
        throw FilmToolError(FilmToolError::invalidJSON{
            "status.runManifest cannot be made absolute: getcwd: " + error.code().message()});
    }
}

/// Adds an option with its value, if there is one.
void addOption(Arguments& arguments, std::string_view option, const OptionalText& value) {
    if (value) {
        arguments.emplace_back(option);
        arguments.push_back(*value);
    }
}

/// The variables for the coding agent's provider and model. An empty text is set, too; an absent one is not.
Environment piEnvironment(const OptionalText& provider, const OptionalText& model) {
    Environment environment;
    if (provider)
        environment["QUEX_FILM_TOOLS_PI_PROVIDER"] = *provider;
    if (model)
        environment["QUEX_FILM_TOOLS_PI_MODEL"] = *model;
    return environment;
}

Arguments piArguments(std::string_view command, const fs::path& runManifest, const OptionalText& piCommand) {
    Arguments arguments{std::string(command), runManifestArgument(runManifest)};
    addOption(arguments, "--pi-command", piCommand);
    return arguments;
}

} // namespace

FilmToolClient::FilmToolClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& FilmToolClient::executable() const noexcept { return executable_; }

fs::path FilmToolClient::resolveExecutable(const std::string& name) { return ExecutableLookup(name).find(); }

Task<ProcessResult> FilmToolClient::run(std::vector<std::string> arguments,
                                        std::map<std::string, std::string> environment,
                                        RunOptions options) const {
    return startForResult(
        executable_, [&] { return std::move(arguments); }, std::move(options), std::move(environment));
}

Task<fs::path> FilmToolClient::plan(const std::string& idea, const std::string& title,
                                    std::int64_t durationSeconds, const fs::path& outputDirectory,
                                    const OptionalText& piCommand, RunOptions options) const {
    return startProgram<fs::path>(
        {.executable = executable_, .options = std::move(options)},
        [&] {
            Arguments arguments{"plan",
                                "--idea",
                                idea,
                                "--title",
                                title,
                                "--duration",
                                std::to_string(durationSeconds),
                                "--output-dir",
                                locationArgument("output directory", outputDirectory)};
            addOption(arguments, "--pi-command", piCommand);
            return arguments;
        },
        [directory = WorkingDirectory()](const ProcessResult& result) {
            return plannedRunManifest(result.stdout, directory);
        });
}

Task<FilmStatusResponse> FilmToolClient::status(const fs::path& runManifest, RunOptions options) const {
    return startForReply<FilmStatusResponse>(
        executable_, [&] { return Arguments{"status", runManifestArgument(runManifest)}; },
        std::move(options));
}

Task<void> FilmToolClient::approve(const fs::path& runManifest, const std::string& gate,
                                   const std::string& note, const std::string& approvedBy,
                                   RunOptions options) const {
    return startProgram<void>(
        {.executable = executable_, .options = std::move(options)},
        [&] {
            return Arguments{
                "approve", runManifestArgument(runManifest), "--gate", gate, "--note", note, "--approved-by",
                approvedBy};
        },
        [](const ProcessResult& /*result*/) {});
}

Task<ProcessResult> FilmToolClient::advance(const fs::path& runManifest, const OptionalText& piCommand,
                                            const OptionalText& piProvider, const OptionalText& piModel,
                                            RunOptions options) const {
    return startForResult(
        executable_, [&] { return piArguments("run", runManifest, piCommand); }, std::move(options),
        piEnvironment(piProvider, piModel));
}

Task<ProcessResult> FilmToolClient::recover(const fs::path& runManifest, RunOptions options) const {
    return startForResult(
        executable_, [&] { return Arguments{"recover", runManifestArgument(runManifest)}; },
        std::move(options));
}

Task<ProcessResult> FilmToolClient::reroll(const fs::path& runManifest, const std::string& shotID,
                                           const std::string& note, RunOptions options) const {
    return startForResult(
        executable_,
        [&] {
            return Arguments{"reroll", runManifestArgument(runManifest), "--shot", shotID, "--note", note};
        },
        std::move(options));
}

Task<ProcessResult> FilmToolClient::review(const fs::path& runManifest, const OptionalText& piCommand,
                                           const OptionalText& piProvider, const OptionalText& piModel,
                                           RunOptions options) const {
    return startForResult(
        executable_, [&] { return piArguments("review", runManifest, piCommand); }, std::move(options),
        piEnvironment(piProvider, piModel));
}

Task<FilmVistrelExportReceipt> FilmToolClient::exportVistrel(const fs::path& runManifest,
                                                             const std::optional<fs::path>& output,
                                                             RunOptions options) const {
    return startForReply<FilmVistrelExportReceipt>(
        executable_,
        [&] {
            Arguments arguments{"export-vistrel", runManifestArgument(runManifest)};
            if (output)
                addOption(arguments, "--output", locationArgument("output file", *output));
            return arguments;
        },
        std::move(options));
}

Task<PiAgentLaunchSpec> FilmToolClient::agentLaunchSpec(const fs::path& runManifest,
                                                        const std::string& piCommand,
                                                        RunOptions options) const {
    return startForReply<PiAgentLaunchSpec>(
        executable_,
        [&] {
            return [manifest = fs::path(runManifestArgument(runManifest)), piCommand](const fs::path& tool) {
                return agentLaunchArguments(manifest, piCommand, tool.string());
            };
        },
        std::move(options));
}

std::vector<std::string> FilmToolClient::agentArguments(const fs::path& runManifest,
                                                        const OptionalText& piCommand) const {
    Arguments arguments{"agent", "--run-manifest", pathText(runManifest)};
    addOption(arguments, "--pi-command", piCommand);
    return arguments;
}

std::vector<std::string> FilmToolClient::agentLaunchArguments(const fs::path& runManifest,
                                                              const std::string& piCommand,
                                                              const std::string& pluginCommand) {
    return {"agent",   "--run-manifest",   pathText(runManifest), "--pi-command",
            piCommand, "--plugin-command", pluginCommand,         "--print-command"};
}

} // namespace kinovane
