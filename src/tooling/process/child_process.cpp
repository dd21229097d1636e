// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/child_process.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kinovane/process.hpp>

#include "common/files/location.hpp"
#include "tooling/process/child_environment.hpp"
#include "tooling/process/standard_input.hpp"

namespace kinovane {

namespace {

/// Every refusal names the program, because an application starts several.
[[noreturn]] void refuse(const std::string& executable, const std::string& reason) {
    throw FilmToolError(FilmToolError::launchFailed{executable + ": " + reason});
}

[[noreturn]] void failCall(const char* call, int error) {
    throw std::system_error(error, std::generic_category(), call);
}

/// A pipe could not be opened.
[[noreturn]] void failLaunch(int error) { failCall("pipe", error); }

/// For the functions that return their error instead of setting errno.
void require(const char* call, int error) {
    if (error != 0)
        failCall(call, error);
}

// The operating system takes texts that end at the first NUL byte: what follows would be cut off without a
// word.
void requireNoNulBytes(const std::string& executable, const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment) {
    if (holdsNUL(executable)) // The path is not part of this message, which would end at the NUL byte.
        throw FilmToolError(FilmToolError::launchFailed{"the program's path holds a NUL byte"});
    if (std::any_of(arguments.begin(), arguments.end(), holdsNUL))
        refuse(executable, "an argument holds a NUL byte");
    for (const auto& [key, value] : environment) {
        if (holdsNUL(key) || holdsNUL(value))
            refuse(executable, "an environment variable holds a NUL byte");
        if (key.empty() || key.find('=') != std::string::npos)
            refuse(executable, "\"" + key + "\" cannot be the name of an environment variable");
    }
}

// A program whose outcome could never be known had better not run at all.
void refuseIgnoredChildren(const std::string& executable) {
    struct sigaction action{};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 &&
        ((action.sa_flags & SA_NOCLDWAIT) != 0 || action.sa_handler == SIG_IGN))
        refuse(executable, "not started, because its exit status would be lost: the application ignores the "
                           "end of its child processes (SIGCHLD)");
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// Close-on-exec from birth: a child that another thread starts at this moment must not inherit an end, or
/// the end of the output would come only when that child ends too.
Pipe openPipe() {
    std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
    // There is no pipe2 here; POSIX_SPAWN_CLOEXEC_DEFAULT keeps the ends from this library's own children.
    if (::pipe(ends.data()) != 0)
        failLaunch(errno);
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        failLaunch(errno);
#endif
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// A run's pipes, none of them under a standard number that the application has closed. The numbers are
/// reserved first: what another thread writes there, even for an instant, would be output of the program, or
/// end the process with SIGPIPE.
struct OutputPipes {
    Pipe output;
    Pipe errors;
};

OutputPipes openOutputPipes() {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        failLaunch(reserved.error());
    return {openPipe(), openPipe()};
}

class FileActions {
  public:
    FileActions() { require("posix_spawn_file_actions_init", ::posix_spawn_file_actions_init(&actions_)); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    /// Exactly these three, all of them above the standard descriptors. Without an input the child reads
    /// nothing.
    void connect(const Descriptor& input, int output, int errors) {
        if (input)
            duplicate(input.get(), STDIN_FILENO);
        else
            require("posix_spawn_file_actions_addopen",
                    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        duplicate(output, STDOUT_FILENO);
        duplicate(errors, STDERR_FILENO);
#ifndef __APPLE__
        require("posix_spawn_file_actions_addclosefrom_np",
                ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
#endif
    }

    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    void duplicate(int from, int to) {
        require("posix_spawn_file_actions_adddup2", ::posix_spawn_file_actions_adddup2(&actions_, from, to));
    }

    posix_spawn_file_actions_t actions_{};
};

class Attributes {
  public:
    Attributes() { require("posix_spawnattr_init", ::posix_spawnattr_init(&attributes_)); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }

    /// The application may block or ignore signals for its own reasons; a program expects to start without
    /// that.
    void resetSignals() {
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        require("posix_spawnattr_setsigmask", ::posix_spawnattr_setsigmask(&attributes_, &none));
        require("posix_spawnattr_setsigdefault", ::posix_spawnattr_setsigdefault(&attributes_, &all));
#ifdef __APPLE__
        constexpr int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
        constexpr int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#endif
        require("posix_spawnattr_setflags",
                ::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags)));
    }

    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
    posix_spawnattr_t attributes_{};
};

} // namespace

ChildProcess::ChildProcess(const std::string& executable, const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& environment) {
    requireNoNulBytes(executable, arguments, environment);
    refuseIgnoredChildren(executable);
    try {
        start(executable, arguments, environment);
    } catch (const std::system_error& error) {
        refuse(executable, error.what()); // The call and the reason.
    }
}

void ChildProcess::start(const std::string& executable, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment) {
    TextVector argumentTexts;
    argumentTexts.add(executable);
    for (const std::string& argument : arguments)
        argumentTexts.add(argument);
    TextVector environmentTexts = mergedEnvironment(environment);

    auto [output, errors] = openOutputPipes();
    const Descriptor input = duplicateStandardInput();
    FileActions actions;
    actions.connect(input, output.writeEnd.get(), errors.writeEnd.get());
    Attributes attributes;
    attributes.resetSignals();

    require("posix_spawn", ::posix_spawn(&process_, executable.c_str(), actions.get(), attributes.get(),
                                         argumentTexts.data(), environmentTexts.data()));
    output_ = std::move(output.readEnd);
    errors_ = std::move(errors.readEnd);
}

ChildProcess::~ChildProcess() {
    if (process_ < 0)
        return;
    // Output that nobody reads any more must not keep the child from ending.
    output_.close();
    errors_.close();
    int status = 0;
    retryInterrupted([&] { return ::waitpid(process_, &status, 0); });
}

std::int32_t ChildProcess::wait() {
    int status = 0;
    const pid_t ended = retryInterrupted([&] { return ::waitpid(process_, &status, 0); });
    process_ = -1;
    if (ended < 0)
        failCall("waitpid", errno);
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace kinovane
