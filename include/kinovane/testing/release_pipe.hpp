// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kinovane/testing/temporary_directory.hpp>

namespace kinovane::testing {

/// The named pipe that a simulator waits for when it is "slow" or "stubborn": its path is the value of
/// FILM_RELEASE, VISTREL_RELEASE or QUEXRUN_RELEASE. A test knows without a clock that the program is
/// running, and decides when it continues:
///
///     ReleasePipe pipe;
///     RunOptions options;
///     options.environment = {{"FILM_MISBEHAVE", "slow"}, {"FILM_RELEASE", pipe.path()}};
///     auto run = film.advance(runManifest, {}, {}, {}, options);
///     pipe.waitUntilReached(); // The simulator is running, and waits.
///     pipe.release();          // It continues, and ends as usual.
///
/// A pipe serves one run at a time.
class ReleasePipe {
  public:
    /// Throws std::filesystem::filesystem_error if the pipe cannot be created.
    ReleasePipe() {
        if (::mkfifo(path_.c_str(), S_IRUSR | S_IWUSR) != 0)
            throwLastError("cannot create a pipe");
    }
    ReleasePipe(const ReleasePipe&) = delete;
    ReleasePipe& operator=(const ReleasePipe&) = delete;
    ~ReleasePipe() { release(); }

    /// The absolute path, as a value for the environment.
    std::string path() const { return path_.string(); }

    /// Returns when a simulator waits for the pipe. Blocks for ever if none does: the operation must have
    /// been started, and its program found. Throws std::filesystem::filesystem_error if the pipe cannot be
    /// opened.
    void waitUntilReached() {
        release();
        do
            descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        while (descriptor_ < 0 && errno == EINTR);
        if (descriptor_ < 0)
            throwLastError("cannot open a pipe");
    }

    /// Lets the simulator continue that was waited for. Has no effect if there is none.
    void release() noexcept {
        if (descriptor_ >= 0)
            ::close(descriptor_);
        descriptor_ = -1;
    }

  private:
    [[noreturn]] void throwLastError(const char* what) const {
        const std::error_code reason(errno, std::generic_category());
        throw std::filesystem::filesystem_error(what, path_, reason);
    }

    TemporaryDirectory directory_;
    std::filesystem::path path_ = directory_ / "release";
    int descriptor_ = -1;
};

} // namespace kinovane::testing
