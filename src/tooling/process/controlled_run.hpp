// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <optional>
#include <system_error>

#include <kinovane/run_options.hpp>

#include "tooling/process/child_process.hpp"
#include "tooling/process/exit_watch.hpp"
#include "tooling/process/output_capture.hpp"

namespace kinovane {

/// How a controlled run ended. The child has ended then, and its exit status is still to be taken, unless the
/// application has taken it.
struct ControlledOutcome {
    CapturedOutput captured;
    std::optional<std::errc> stopped;  ///< Why the library ended the run: operation_canceled or timed_out.
    std::exception_ptr callbackFailed; ///< What `onOutput` threw, which ended the run.
};

/// A run that can be stopped, limited or observed. It is made before the child is started, so that everything
/// it needs is there once the child runs.
class ControlledRun {
  public:
    /// Throws std::system_error when there is no pipe or thread. `options` has to stay as it is until
    /// `finish` has returned.
    explicit ControlledRun(const RunOptions& options);
    ControlledRun(const ControlledRun&) = delete;
    ControlledRun& operator=(const ControlledRun&) = delete;
    ~ControlledRun();

    /// Reads the child's output until it has ended, or until it was stopped. The child has to be the leader
    /// of a process group. Throws std::system_error and std::bad_alloc; the group has got SIGKILL then. A
    /// child that the application has waited for is abandoned; it and its group get no signal.
    ControlledOutcome finish(ChildProcess& child);

  private:
    const RunOptions& options_;
    WakePipe wake_;
    ExitWatch exit_;
    bool listens_ = false;
};

} // namespace kinovane
