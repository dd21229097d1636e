// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

#include <kinovane/run_options.hpp>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A running child process whose standard output and standard error arrive through pipes.
class ChildProcess {
  public:
    /// Starts the program with environment, working directory and standard input as `options` has them. With
    /// `leadsGroup` it is the leader of a new process group.
    ///
    /// The child inherits only descriptors 0, 1 and 2, and starts with an empty signal mask and default
    /// signal dispositions. Throws FilmToolError (launchFailed) with the program and the call that failed; no
    /// descriptor and no process is then left.
    ChildProcess(const std::string& executable, const std::vector<std::string>& arguments,
                 const RunOptions& options, bool leadsGroup = false);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Waits for the child, unless `wait` was called, so that it does not remain as a zombie.
    ~ChildProcess();

    /// The descriptors to read from. Valid as long as this object.
    int output() const noexcept { return output_.get(); }
    int errors() const noexcept { return errors_.get(); }

    /// The child's process identifier, and that of its group if it leads one. Valid until `wait` is called.
    pid_t process() const noexcept { return process_; }

    /// Blocks until the child has ended. Returns its exit status, or the number of the signal that ended it.
    /// Throws std::system_error if the application has already waited for this child. Call it once.
    std::int32_t wait();

    /// Whether what `wait` returned is the number of a signal.
    bool endedBySignal() const noexcept { return endedBySignal_; }

    /// To be called when the application is known to have waited for this child: its identifier is not used
    /// any more, because it may belong to another child of the application. `wait` then throws.
    void abandon() noexcept { process_ = -1; }

  private:
    void start(const std::string& executable, const std::vector<std::string>& arguments,
               const RunOptions& options, bool leadsGroup);

    Descriptor output_;
    Descriptor errors_;
    bool endedBySignal_ = false;
    pid_t process_ = -1;
};

} // namespace kinovane
