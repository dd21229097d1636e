// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/child_process.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <kinovane/process.hpp>

#include "common/files/location.hpp"
#include "common/files/standard_descriptors.hpp"
#include "tooling/process/c_string_array.hpp"
#include "tooling/process/child_environment.hpp"
#include "tooling/process/output_pipes.hpp"
#include "tooling/process/spawn_options.hpp"
#include "tooling/process/standard_input.hpp"

namespace kinovane {

namespace {

/// The message names the program, because an application starts several.
[[noreturn]] void failLaunch(const std::string& executable, const std::string& reason) {
    throw FilmToolError(FilmToolError::launchFailed{executable + ": " + reason});
}

[[noreturn]] void failCall(const char* call, int error) {
    throw std::system_error(error, std::generic_category(), call);
}

// The operating system takes C strings: it would silently drop what follows a NUL byte.
void requireValidInput(const std::string& executable, const std::vector<std::string>& arguments,
                       const RunOptions& options) {
    if (holdsNUL(executable)) // The path is not part of this message, which would end at the NUL byte.
        throw FilmToolError(FilmToolError::launchFailed{"the program's path holds a NUL byte"});
    if (std::any_of(arguments.begin(), arguments.end(), holdsNUL))
        failLaunch(executable, "an argument holds a NUL byte");
    if (holdsNUL(options.workingDirectory.native()))
        failLaunch(executable, "the working directory holds a NUL byte");
    for (const auto& [key, value] : options.environment) {
        if (holdsNUL(key) || holdsNUL(value))
            failLaunch(executable, "an environment variable holds a NUL byte");
        if (key.empty() || key.find('=') != std::string::npos)
            failLaunch(executable, "\"" + key + "\" cannot be the name of an environment variable");
    }
}

// If the application ignores SIGCHLD, the exit status of a child cannot be read. The program is then not
// started, because nobody would know whether it succeeded.
void requireExitStatus(const std::string& executable) {
    struct sigaction action{};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 &&
        ((action.sa_flags & SA_NOCLDWAIT) != 0 || action.sa_handler == SIG_IGN))
        failLaunch(executable,
                   "not started, because its exit status would be lost: the application ignores the "
                   "end of its child processes (SIGCHLD)");
}

// Opened before the start, so that the message can tell a missing directory from a missing program.
Descriptor openWorkingDirectory(const std::filesystem::path& directory) {
    if (directory.empty())
        return {};
    Descriptor descriptor =
        openAboveStandard([&] { return ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (!descriptor)
        throw std::system_error(errno, std::generic_category(),
                                "the working directory " + directory.string());
    return descriptor;
}

} // namespace

ChildProcess::ChildProcess(const std::string& executable, const std::vector<std::string>& arguments,
                           const RunOptions& options, bool leadsGroup) {
    requireValidInput(executable, arguments, options);
    requireExitStatus(executable);
    try {
        start(executable, arguments, options, leadsGroup);
    } catch (const std::system_error& error) {
        failLaunch(executable, error.what());
    }
}

void ChildProcess::start(const std::string& executable, const std::vector<std::string>& arguments,
                         const RunOptions& options, bool leadsGroup) {
    CStringArray argv;
    argv.add(executable);
    for (const std::string& argument : arguments)
        argv.add(argument);
    CStringArray envp = childEnvironment(options);

    auto [output, errors] = openOutputPipes();
    const Descriptor input =
        options.standardInput == StandardInput::inherited ? duplicateStandardInput() : Descriptor();
    const Descriptor directory = openWorkingDirectory(options.workingDirectory);
    SpawnFileActions actions;
    if (directory)
        actions.changeDirectory(directory.get());
    actions.connect(input, output.writeEnd.get(), errors.writeEnd.get());
    SpawnAttributes attributes;
    attributes.set(leadsGroup);

    const int error = ::posix_spawn(&process_, executable.c_str(), actions.get(), attributes.get(),
                                    argv.data(), envp.data());
    if (error != 0)
        failCall("posix_spawn", error);
    output_ = std::move(output.readEnd);
    errors_ = std::move(errors.readEnd);
}

ChildProcess::~ChildProcess() {
    if (process_ < 0)
        return;
    // A child that writes to a full pipe would never end, because nobody reads its output any more.
    output_.close();
    errors_.close();
    int status = 0;
    retryInterrupted([&] { return ::waitpid(process_, &status, 0); });
}

std::int32_t ChildProcess::wait() {
    if (process_ < 0)
        failCall("waitpid", ECHILD);
    int status = 0;
    const pid_t ended = retryInterrupted([&] { return ::waitpid(process_, &status, 0); });
    process_ = -1;
    if (ended < 0)
        failCall("waitpid", errno);
    endedBySignal_ = WIFSIGNALED(status);
    return endedBySignal_ ? WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace kinovane
