// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/process_runner.hpp"

#include <system_error>

#include "common/utf8.hpp"
#include "tooling/process/child_process.hpp"
#include "tooling/process/output_capture.hpp"

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

} // namespace

ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const std::map<std::string, std::string>& environment) {
    ProcessResult result;
    result.executable = executableURL.string();
    result.arguments = std::move(arguments);
    ChildProcess child(result.executable, result.arguments, environment);
    CapturedOutput captured = readFromStarted(result.executable, "its output",
                                              [&] { return captureOutput(child.output(), child.errors()); });
    result.exitCode = readFromStarted(result.executable, "its exit status", [&] { return child.wait(); });
    result.stdout = repairUTF8(std::move(captured.output));
    result.stderr = repairUTF8(std::move(captured.errors));
    if (!result.succeeded())
        throw FilmToolError(FilmToolError::commandFailed{std::move(result)});
    return result;
}

} // namespace kinovane
