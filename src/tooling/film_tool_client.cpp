#include <string_view>

#include <kinovane/tooling.hpp>

#include "common/file_location.hpp"
#include "tooling/process_runner.hpp"
#include "tooling/reply_tables.hpp"
#include "tooling/start_task.hpp"
#include "workspace/project_tables.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;
using OptionalText = std::optional<std::string>;

/// Runs the tool on a thread of its own; `finish` makes the answer of its result.
template <class Answer, class Finish>
Task<Answer> start(const std::string& executable, Arguments arguments, Environment environment,
                   Finish finish) {
    return startTask<Answer>([executable, arguments = std::move(arguments),
                              environment = std::move(environment), finish]() mutable {
        return finish(runSynchronously(FilmToolClient::resolveExecutable(executable), std::move(arguments),
                                       environment));
    });
}

template <class Reply>
Task<Reply> ask(const std::string& executable, Arguments arguments) {
    return start<Reply>(executable, std::move(arguments), {},
                        [](const ProcessResult& result) { return decode<Reply>(result.stdout); });
}

/// Adds an option that is only there when it has a value.
void addOption(Arguments& arguments, std::string_view option, const OptionalText& value) {
    if (value) {
        arguments.emplace_back(option);
        arguments.push_back(*value);
    }
}

/// Provider and model of the coding agent. Presence is what counts: an empty text is set, too.
Environment piEnvironment(const OptionalText& provider, const OptionalText& model) {
    Environment environment;
    if (provider)
        environment["QUEX_FILM_TOOLS_PI_PROVIDER"] = *provider;
    if (model)
        environment["QUEX_FILM_TOOLS_PI_MODEL"] = *model;
    return environment;
}

Arguments piArguments(std::string_view command, const fs::path& runManifest, const OptionalText& piCommand) {
    Arguments arguments{std::string(command), pathText(runManifest)};
    addOption(arguments, "--pi-command", piCommand);
    return arguments;
}

} // namespace

FilmToolClient::FilmToolClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& FilmToolClient::executable() const noexcept { return executable_; }

Task<ProcessResult> FilmToolClient::run(std::vector<std::string> arguments,
                                        std::map<std::string, std::string> environment) const {
    return start<ProcessResult>(executable_, std::move(arguments), std::move(environment),
                                [](ProcessResult result) { return result; });
}

Task<fs::path> FilmToolClient::plan(const std::string& idea, const std::string& title,
                                    std::int64_t durationSeconds, const fs::path& outputDirectory,
                                    const OptionalText& piCommand) const {
    Arguments arguments{"plan",
                        "--idea",
                        idea,
                        "--title",
                        title,
                        "--duration",
                        std::to_string(durationSeconds),
                        "--output-dir",
                        pathText(outputDirectory)};
    addOption(arguments, "--pi-command", piCommand);
    return start<fs::path>(executable_, std::move(arguments), {}, [](const ProcessResult& result) {
        return fs::path(pathText(decode<FilmPlanResponse>(result.stdout).status.runManifest));
    });
}

Task<FilmStatusResponse> FilmToolClient::status(const fs::path& runManifest) const {
    return ask<FilmStatusResponse>(executable_, {"status", pathText(runManifest)});
}

Task<void> FilmToolClient::approve(const fs::path& runManifest, const std::string& gate,
                                   const std::string& note, const std::string& approvedBy) const {
    return start<void>(
        executable_,
        {"approve", pathText(runManifest), "--gate", gate, "--note", note, "--approved-by", approvedBy}, {},
        [](const ProcessResult& /*result*/) {});
}

Task<ProcessResult> FilmToolClient::advance(const fs::path& runManifest, const OptionalText& piCommand,
                                            const OptionalText& piProvider,
                                            const OptionalText& piModel) const {
    return run(piArguments("run", runManifest, piCommand), piEnvironment(piProvider, piModel));
}

Task<ProcessResult> FilmToolClient::recover(const fs::path& runManifest) const {
    return run({"recover", pathText(runManifest)});
}

Task<ProcessResult> FilmToolClient::reroll(const fs::path& runManifest, const std::string& shotID,
                                           const std::string& note) const {
    return run({"reroll", pathText(runManifest), "--shot", shotID, "--note", note});
}

Task<ProcessResult> FilmToolClient::review(const fs::path& runManifest, const OptionalText& piCommand,
                                           const OptionalText& piProvider,
                                           const OptionalText& piModel) const {
    return run(piArguments("review", runManifest, piCommand), piEnvironment(piProvider, piModel));
}

Task<FilmVistrelExportReceipt> FilmToolClient::exportVistrel(const fs::path& runManifest,
                                                             const std::optional<fs::path>& output) const {
    Arguments arguments{"export-vistrel", pathText(runManifest)};
    addOption(arguments, "--output", output ? OptionalText(pathText(*output)) : std::nullopt);
    return ask<FilmVistrelExportReceipt>(executable_, std::move(arguments));
}

Task<PiAgentLaunchSpec> FilmToolClient::agentLaunchSpec(const fs::path& runManifest,
                                                        const std::string& piCommand) const {
    return startTask<PiAgentLaunchSpec>(
        [executable = executable_, runManifest = fs::path(pathText(runManifest)), piCommand] {
            const fs::path tool = resolveExecutable(executable);
            return decode<PiAgentLaunchSpec>(
                runSynchronously(tool, agentLaunchArguments(runManifest, piCommand, tool.string())).stdout);
        });
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
