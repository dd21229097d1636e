#include "tooling/process_runner.hpp"

#include "common/utf8.hpp"
#include "tooling/child_process.hpp"
#include "tooling/output_capture.hpp"

namespace kinovane {

ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const std::map<std::string, std::string>& environment) {
    ProcessResult result;
    result.executable = executableURL.string();
    result.arguments = std::move(arguments);
    ChildProcess child(result.executable, result.arguments, environment);
    CapturedOutput captured = captureOutput(child.output(), child.errors());
    result.exitCode = child.wait();
    result.stdout = repairUTF8(std::move(captured.output));
    result.stderr = repairUTF8(std::move(captured.errors));
    if (!result.succeeded())
        throw FilmToolError(FilmToolError::commandFailed{std::move(result)});
    return result;
}

} // namespace kinovane
