#include <kinovane/tooling.hpp>

#include "tooling/process_runner.hpp"
#include "tooling/start_task.hpp"

namespace kinovane {

FilmToolClient::FilmToolClient(std::string executable) : executable_(std::move(executable)) {}

const std::string& FilmToolClient::executable() const noexcept { return executable_; }

Task<ProcessResult> FilmToolClient::run(std::vector<std::string> arguments,
                                        std::map<std::string, std::string> environment) const {
    return startTask<ProcessResult>([executable = executable_, arguments = std::move(arguments),
                                     environment = std::move(environment)]() mutable {
        return runSynchronously(resolveExecutable(executable), std::move(arguments), environment);
    });
}

} // namespace kinovane
