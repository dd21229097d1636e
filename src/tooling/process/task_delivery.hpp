// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include <kinovane/task.hpp>

namespace kinovane::detail {

/// Brings an action to the thread that runs it. The action leaves this object with the call that runs it, and
/// is destroyed there, so copies of the job that are destroyed later or elsewhere hold nothing.
class TaskDelivery {
  public:
    explicit TaskDelivery(std::unique_ptr<TaskAction> action);
    TaskDelivery(const TaskDelivery&) = delete;
    TaskDelivery& operator=(const TaskDelivery&) = delete;
    ~TaskDelivery();

    /// A job for an executor, which runs the action; once for each delivery.
    static std::function<void()> makeJob(std::shared_ptr<TaskDelivery> delivery);

    /// Calls `executor` with the job. An exception out of the executor ends the process.
    void send(const Executor& executor, std::function<void()> job) noexcept;

    /// Runs the action and destroys it; does nothing if it ran before, was withdrawn or was dropped.
    void run();

    /// Destroys the action without running it.
    void withdraw() noexcept;

  private:
    class Job;

    void jobCopied();
    void jobDestroyed(bool original) noexcept;
    bool isDropped() const;

    std::mutex mutex_;
    std::unique_ptr<TaskAction> action_;

    // Jobs are counted as the one that was made, which moves do not change, and all copies of it.
    bool originalExists_ = false;
    std::size_t copies_ = 0;

    std::thread::id caller_; ///< The thread that is calling the executor, if one is.
    bool copiedByExecutor_ = false;
};

} // namespace kinovane::detail
