// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include <kinovane/task.hpp>

namespace kinovane::detail {

/// Passes an action to the thread that runs it. The call that runs the action also destroys it, so that
/// copies of the job may be destroyed later and on any thread.
class TaskDelivery {
  public:
    explicit TaskDelivery(std::unique_ptr<TaskAction> action);
    TaskDelivery(const TaskDelivery&) = delete;
    TaskDelivery& operator=(const TaskDelivery&) = delete;
    ~TaskDelivery();

    /// Makes the job for an executor. The job runs the action. Called once for each delivery.
    static std::function<void()> makeJob(std::shared_ptr<TaskDelivery> delivery);

    /// Calls `executor` with the job. If the executor throws, the process ends.
    void send(const Executor& executor, std::function<void()> job) noexcept;

    /// Runs the action and destroys it. Does nothing if the action was run, withdrawn or dropped before.
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

    // Moving the original job keeps it the original; every copy of a job is counted.
    bool originalExists_ = false;
    std::size_t copies_ = 0;

    std::thread::id caller_; ///< The thread that is calling the executor, if any.
    bool copiedByExecutor_ = false;
};

} // namespace kinovane::detail
