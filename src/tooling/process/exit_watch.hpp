// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <sys/types.h>

#include <kinovane/stop.hpp>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A pipe that makes `poll` return: the one thing that a thread which waits for output can also wait for.
class WakePipe final : public detail::StopState::Listener {
  public:
    /// Throws std::system_error.
    WakePipe();

    int readEnd() const noexcept { return readEnd_.get(); }

    /// Makes the read end readable. Does not block; safe to call from any thread.
    void wake() noexcept;
    void onStop() noexcept override { wake(); }

    /// Makes the read end unreadable again.
    void clear() noexcept;

  private:
    Descriptor readEnd_;
    Descriptor writeEnd_;
};

/// Waits on a thread of its own for the end of a child process, without taking its exit status: until that is
/// taken, the system does not give the child's process identifier, nor that of its group, to another process.
/// The child is lost if the application takes the status, with `waitpid(-1)` or by ignoring SIGCHLD.
class ExitWatch {
  public:
    /// Starts the thread. `wake` is woken once the child has ended. Throws std::system_error.
    explicit ExitWatch(WakePipe& wake);
    ExitWatch(const ExitWatch&) = delete;
    ExitWatch& operator=(const ExitWatch&) = delete;

    /// Waits for the child to end, if `watch` was called.
    ~ExitWatch();

    /// Names the child. To be called once.
    void watch(pid_t child);

    /// Whether the child that was named has ended or is lost.
    bool ended() const noexcept { return ended_; }

    /// Looks whether the child that was named is lost. It stays lost, also when the identifier is used again.
    bool lost() noexcept;

    /// Blocks until the child that was named has ended or is lost.
    void wait();

    /// Sends a signal to the group of the child that was named, and returns false instead if the child is
    /// lost. The system has no call that looks and signals at once: that the application takes the status
    /// between the two is not noticed.
    bool signalGroup(int signal) noexcept;

  private:
    void run() noexcept;
    void name(pid_t child) noexcept;
    pid_t child() const noexcept;
    bool isLost(pid_t child, int options) noexcept;

    WakePipe& wake_;
    mutable std::mutex mutex_;
    std::condition_variable named_;
    pid_t child_ = 0; ///< 0 until it is known, -1 when there will be none.
    std::atomic<bool> ended_ = false;
    std::atomic<bool> lost_ = false;
    std::thread thread_;
};

} // namespace kinovane
