// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/process_runner.hpp"

#include <system_error>

#include "common/utf8.hpp"
#include "tooling/process/child_process.hpp"
#include "tooling/process/controlled_run.hpp"
#include "tooling/process/output_capture.hpp"
#include "tooling/process/program_error.hpp"

namespace kinovane {

namespace {

/// Calls `step`, which reads `lost` from a program that is already running. If it fails, the message says
/// that the program was started, so that nobody repeats a command that may have succeeded.
template <class Step>
auto readFromStarted(const std::string& executable, const std::string& lost, Step step) {
    try {
        return step();
    } catch (const std::system_error& error) {
        const bool taken = error.code() == std::errc::no_child_process;
        throw FilmToolError(FilmToolError::launchFailed{
            executable + " was started and may have done its work, but " + lost +
            " was lost: " + error.what() +
            (taken ? " (the application ignores the end of its child processes, SIGCHLD, or waits for "
                     "children that it did not start)"
                   : "")});
    }
}

/// Whether a run has to be watched while it lasts.
bool isControlled(const RunOptions& options) {
    return options.stop.stopPossible() || options.timeLimit || options.onOutput;
}

/// How a program ended.
struct Ending {
    std::int32_t exitCode = 0; ///< As in ProcessResult.
    bool bySignal = false;
};

Ending endingOf(const std::string& executable, ChildProcess& child) {
    const std::int32_t exitCode =
        readFromStarted(executable, "its exit status", [&] { return child.wait(); });
    return {exitCode, child.endedBySignal()};
}

ControlledOutcome runControlled(const ProcessResult& result, const RunOptions& options, Ending& ending) {
    try {
        ControlledRun run(options);
        ChildProcess child(result.executable, result.arguments, options, true);
        ControlledOutcome outcome =
            readFromStarted(result.executable, "its output", [&] { return run.finish(child); });
        ending = endingOf(result.executable, child);
        return outcome;
    } catch (const std::system_error& error) {
        throw FilmToolError(FilmToolError::launchFailed{result.executable + ": " + error.what()});
    }
}

} // namespace

RunStopped::RunStopped(std::errc reason, ProcessResult result)
    : std::system_error(std::make_error_code(reason)),
      result_(std::make_shared<const ProcessResult>(std::move(result))) {}

RunStopped::~RunStopped() = default;

ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const RunOptions& options) {
    ProcessResult result;
    result.executable = executableURL.string();
    result.arguments = std::move(arguments);
    if (options.stop.stopRequested())
        throw RunStopped(std::errc::operation_canceled, std::move(result));
    ControlledOutcome outcome;
    Ending ending;
    if (isControlled(options)) {
        outcome = runControlled(result, options, ending);
    } else {
        ChildProcess child(result.executable, result.arguments, options);
        CapturedOutput captured = readFromStarted(
            result.executable, "its output", [&] { return captureOutput(child.output(), child.errors()); });
        ending = endingOf(result.executable, child);
        outcome.captured = std::move(captured);
    }
    result.exitCode = ending.exitCode;
    result.stdout = repairUTF8(std::move(outcome.captured.output));
    result.stderr = repairUTF8(std::move(outcome.captured.errors));
    if (outcome.callbackFailed)
        std::rethrow_exception(outcome.callbackFailed);
    if (outcome.stopped)
        throw RunStopped(*outcome.stopped, std::move(result));
    if (ending.bySignal) {
        const int signal = ending.exitCode;
        throw ProgramError(FilmToolError(FilmToolError::commandFailed{std::move(result)}), {{}, signal});
    }
    if (!result.succeeded())
        throw FilmToolError(FilmToolError::commandFailed{std::move(result)});
    return result;
}

} // namespace kinovane
