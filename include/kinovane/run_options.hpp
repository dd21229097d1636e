// SPDX-License-Identifier: Apache-2.0

#pragma once

// See process.hpp for the order of <cstdio>.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include <kinovane/export.hpp>
#include <kinovane/process.hpp>
#include <kinovane/stop.hpp>

/// How an external program is run. Every operation that runs one takes RunOptions as its last parameter. The
/// default options change nothing: the program inherits environment, working directory and standard input,
/// has no time limit, and is never signalled.
///
/// The default argument is written RunOptions() and not {}: in a co_await expression, g++ 12 destroys the
/// temporary object of a braced list twice.
namespace kinovane {

/// A stream that a program writes.
enum class OutputStream { standardOutput, standardError };

/// What a program reads as its standard input.
enum class StandardInput {
    inherited, ///< The application's own.
    empty,     ///< Nothing: the end of the file at once.
};

/// The options of one run. An independent value; copying it copies `onOutput`.
struct KINOVANE_EXPORT RunOptions {
    /// Variables that are added to the child's environment, or replace inherited ones. They also replace
    /// variables that the operation itself sets.
    std::map<std::string, std::string> environment = {};

    /// The child's working directory; the application's own when empty. A relative one is below the working
    /// directory of the moment of the call. It has no influence on how the program is found, and none on
    /// relative locations among the operation's arguments.
    std::filesystem::path workingDirectory = {};

    /// What the child reads. A run with a token, a time limit or `onOutput` is outside the terminal's
    /// foreground, where reading from the terminal suspends it; `empty` prevents that.
    StandardInput standardInput = StandardInput::inherited;

    /// Asks the program to end. See `gracePeriod`.
    StopToken stop = {};

    /// How long the run may take, from its start on. Zero lets it be stopped at once. None by default. A
    /// negative limit is refused: the task fails with std::invalid_argument.
    std::optional<std::chrono::milliseconds> timeLimit = {};

    /// After a requested stop, or at the end of the time limit, the program and what it started get SIGTERM,
    /// and after this time SIGKILL. What is left of the group once the program has ended and its output is
    /// closed gets SIGKILL at once. A negative period is refused like a negative limit.
    std::chrono::milliseconds gracePeriod = std::chrono::seconds(5);

    /// Called with the output as it arrives, on the operation's worker thread, one call at a time. A chunk
    /// is UTF-8 and ends where a character ends; the chunks of one stream together are the text in
    /// ProcessResult. The program may wait while the function runs, once the pipe is full. An exception from
    /// it stops the run as a requested stop does, and arrives through the task.
    std::function<void(OutputStream stream, std::string_view chunk)> onOutput = {};

    /// Appends /opt/homebrew/bin, /usr/local/bin, /usr/bin and /bin to the child's PATH, each unless it is
    /// there. Programs are looked up in these directories as well as in those of PATH; but a program that is
    /// found there, and that the desktop's short PATH does not reach, would not find its own interpreter and
    /// tools. A PATH in `environment` is extended likewise. One that is absent or empty becomes this list.
    bool extendPath = false;
};

/// Why a run was ended by the library: `code()` is std::errc::operation_canceled after a requested stop and
/// std::errc::timed_out at the end of the time limit. It is thrown once the program has ended and was waited
/// for.
///
/// The program is the leader of a process group of its own when a stop token or a time limit is given, or an
/// `onOutput`; signals are sent to the whole group. A program that leaves the group, as daemons do, is not
/// signalled and not waited for.
class KINOVANE_EXPORT RunStopped final : public std::system_error {
  public:
    /// For the library, and for tests of an application.
    RunStopped(std::errc reason, ProcessResult result);
    RunStopped(const RunStopped&) noexcept = default;
    RunStopped& operator=(const RunStopped&) noexcept = default;
    ~RunStopped() override;

    /// What was captured until then, and how the program ended: the number of the signal, or the exit status
    /// of a program that handles SIGTERM.
    const ProcessResult& result() const noexcept { return *result_; }

  private:
    std::shared_ptr<const ProcessResult> result_;
};

} // namespace kinovane
