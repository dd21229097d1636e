// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A running child whose standard output and standard error arrive through pipes.
class ChildProcess {
  public:
    /// Starts the program. `environment` is added to this process's own and wins over it.
    ///
    /// The child gets descriptors 0, 1 and 2 only, an empty signal mask and default signal dispositions,
    /// whatever the application has set up for itself. Throws FilmToolError (launchFailed), with the program
    /// and the call that failed, and then nothing is left.
    ChildProcess(const std::string& executable, const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Waits for the child, unless `wait` has, so that it never becomes a zombie.
    ~ChildProcess();

    int output() const noexcept { return output_.get(); }
    int errors() const noexcept { return errors_.get(); }

    /// Blocks until the child has ended. Gives its exit status, or the number of the signal that ended it.
    /// Throws std::system_error when the application has taken the status.
    std::int32_t wait();

  private:
    void start(const std::string& executable, const std::vector<std::string>& arguments,
               const std::map<std::string, std::string>& environment);

    Descriptor output_;
    Descriptor errors_;
    pid_t process_ = -1;
};

} // namespace kinovane
