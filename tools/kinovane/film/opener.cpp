// SPDX-License-Identifier: Apache-2.0

#include "film/opener.hpp"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

extern char** environ; // NOLINT(*-redundant-declaration): macOS does not declare it

namespace kinovane::tool {

namespace {

constexpr std::chrono::milliseconds pollInterval{20};

void check(int error) {
    if (error != 0)
        throw std::system_error(error, std::generic_category());
}

CommandError failure(const std::string& reason, const std::filesystem::path& file) {
    return {ExitStatus::program, std::string(systemOpener) + " " + reason +
                                     ". Open the file by hand: " + shownPath(file.string())};
}

/// Redirects the standard streams, and gives SIGPIPE its default effect, which this program changes.
class SpawnSettings {
  public:
    SpawnSettings() {
        check(::posix_spawn_file_actions_init(&actions_));
        check(::posix_spawnattr_init(&attributes_));
        check(::posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0));
        for (const int stream : {1, 2})
            check(::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_WRONLY, 0));
        sigset_t signals;
        ::sigemptyset(&signals);
        ::sigaddset(&signals, SIGPIPE);
        check(::posix_spawnattr_setsigdefault(&attributes_, &signals));
        check(::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }

    /// Returns the number of the error, or 0.
    int spawn(pid_t& child, const std::string& path) const {
        std::string program = systemOpener;
        std::string argument = path;
        char* arguments[]{program.data(), argument.data(), nullptr}; // NOLINT(*-avoid-c-arrays)
        return ::posix_spawnp(&child, systemOpener, &actions_, &attributes_, arguments, environ);
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Waits for the child, and ends it when a stop is requested. A viewer that the opener runs itself keeps it
/// running for as long as the user looks at the file.
int waitFor(pid_t child, const StopToken& stop) {
    bool stopped = false;
    for (;;) {
        int status = 0;
        const pid_t ended = ::waitpid(child, &status, WNOHANG);
        if (ended == child) {
            if (stopped)
                throw std::system_error(std::make_error_code(std::errc::operation_canceled));
            return status;
        }
        if (ended < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category());
        if (!stopped && stop.stopRequested()) {
            ::kill(child, SIGTERM);
            stopped = true;
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

} // namespace

void openWithSystem(const std::filesystem::path& file, const StopToken& stop) {
    pid_t child = 0;
    const int error = SpawnSettings().spawn(child, file.string());
    if (error == ENOENT)
        throw failure("was not found", file);
    if (error != 0)
        throw failure("could not be started: " + std::generic_category().message(error), file);
    const int status = waitFor(child, stop);
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0)
        throw failure("exited " + std::to_string(WEXITSTATUS(status)), file);
    if (WIFSIGNALED(status))
        throw failure("was ended by signal " + std::to_string(WTERMSIG(status)), file);
}

} // namespace kinovane::tool
