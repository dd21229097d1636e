// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/task_delivery.hpp"

#include <utility>

namespace kinovane::detail {

/// The target of the std::function that an executor receives. Its copy constructor is not noexcept, so that
/// std::function stores it on the heap in every implementation. Moving the function then does not copy the
/// job.
class TaskDelivery::Job {
  public:
    explicit Job(std::shared_ptr<TaskDelivery> delivery) : delivery_(std::move(delivery)), original_(true) {}
    Job(Job&& other) noexcept
        : delivery_(std::move(other.delivery_)), original_(std::exchange(other.original_, false)) {}
    Job(const Job& other) : delivery_(other.delivery_) {
        if (delivery_)
            delivery_->jobCopied();
    }
    Job& operator=(const Job&) = delete;
    Job& operator=(Job&&) = delete;
    ~Job() {
        if (delivery_)
            delivery_->jobDestroyed(original_);
    }

    void operator()() const {
        const std::shared_ptr<TaskDelivery> delivery = delivery_; // The action may destroy this job.
        delivery->run();
    }

  private:
    std::shared_ptr<TaskDelivery> delivery_;
    bool original_ = false;
};

TaskDelivery::TaskDelivery(std::unique_ptr<TaskAction> action) : action_(std::move(action)) {}

TaskDelivery::~TaskDelivery() = default;

std::function<void()> TaskDelivery::makeJob(std::shared_ptr<TaskDelivery> delivery) {
    TaskDelivery& made = *delivery;
    Job job(std::move(delivery));
    made.originalExists_ = true;
    return job;
}

void TaskDelivery::send(const Executor& executor, std::function<void()> job) noexcept {
    {
        const std::lock_guard lock(mutex_);
        caller_ = std::this_thread::get_id();
    }
    executor(std::exchange(job, nullptr));
    const std::lock_guard lock(mutex_);
    caller_ = std::thread::id();
}

void TaskDelivery::run() {
    std::unique_ptr<TaskAction> action;
    {
        const std::lock_guard lock(mutex_);
        action = std::move(action_);
    }
    if (action)
        action->run();
}

void TaskDelivery::withdraw() noexcept {
    std::unique_ptr<TaskAction> action;
    const std::lock_guard lock(mutex_);
    action = std::move(action_);
}

void TaskDelivery::jobCopied() {
    const std::lock_guard lock(mutex_);
    ++copies_;
    if (std::this_thread::get_id() == caller_)
        copiedByExecutor_ = true;
}

void TaskDelivery::jobDestroyed(bool original) noexcept {
    std::unique_ptr<TaskAction> dropped; // Destroyed after the mutex is unlocked.
    const std::lock_guard lock(mutex_);
    if (original)
        originalExists_ = false;
    else
        --copies_;
    if (isDropped())
        dropped = std::move(action_);
}

// If an executor copies its argument into a queue, the original stays with the thread that calls the
// executor. The main loop may destroy the copy before that call has returned. The job is then dropped,
// although the original still exists: otherwise the calling thread would destroy the action.
//
// If an executor moves its argument into the queue, it makes no copy, and the original is the job. Copies
// that other threads make and destroy during the call do not count.
bool TaskDelivery::isDropped() const {
    if (copies_ > 0)
        return false;
    if (!originalExists_)
        return true;
    return copiedByExecutor_ && caller_ != std::thread::id() && caller_ != std::this_thread::get_id();
}

} // namespace kinovane::detail
