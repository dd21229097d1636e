// SPDX-License-Identifier: Apache-2.0

#include <condition_variable>
#include <mutex>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include <kinovane/task.hpp>

#include "tooling/process/task_delivery.hpp"

namespace kinovane::detail {

namespace {

/// What runs when an operation is done: through the executor, or without one on the thread that finishes the
/// operation.
struct Continuation {
    std::shared_ptr<TaskDelivery> delivery;
    Executor executor;
    std::function<void()> job;

    void start() noexcept {
        if (executor)
            delivery->send(executor, std::exchange(job, nullptr));
        else if (delivery)
            delivery->run();
    }
};

/// Resumes a coroutine.
class Resumption final : public TaskAction {
  public:
    explicit Resumption(std::coroutine_handle<> coroutine) : coroutine_(coroutine) {}
    void run() override { coroutine_.resume(); }

  private:
    std::coroutine_handle<> coroutine_;
};

} // namespace

TaskAction::TaskAction() = default;

TaskAction::~TaskAction() = default;

struct TaskCore::Sync {
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    Continuation continuation;

    // Used only by the owner of the task.
    std::thread worker;
    bool taken = false;
};

TaskCore::TaskCore() : sync_(std::make_shared<Sync>()) {}

TaskCore::~TaskCore() = default;

bool TaskCore::done() const noexcept {
    const std::lock_guard lock(sync_->mutex);
    return sync_->done;
}

void TaskCore::wait() {
    // While the thread belongs to this task, joining it is enough. Waiting for the condition variable as well
    // would wake this thread twice.
    if (sync_->worker.joinable()) {
        sync_->worker.join();
        return;
    }
    std::unique_lock lock(sync_->mutex);
    sync_->finished.wait(lock, [&] { return sync_->done; });
}

void TaskCore::detach() noexcept {
    if (sync_->worker.joinable())
        sync_->worker.detach();
}

void TaskCore::deliver(Executor executor, std::unique_ptr<TaskAction> action) {
    deliver(moveOut(executor), std::make_shared<TaskDelivery>(std::move(action)));
}

bool TaskCore::deliver(Executor executor, std::shared_ptr<TaskDelivery> delivery) {
    Continuation continuation{std::move(delivery), moveOut(executor), nullptr};
    const bool throughExecutor = static_cast<bool>(continuation.executor);
    if (throughExecutor)
        continuation.job = TaskDelivery::makeJob(continuation.delivery);
    {
        const std::lock_guard lock(sync_->mutex);
        if (!sync_->done) {
            sync_->continuation = std::exchange(continuation, {});
            return true;
        }
    }
    if (throughExecutor)
        continuation.start();
    return throughExecutor;
}

std::error_code TaskCore::start(std::shared_ptr<TaskCore> core, std::unique_ptr<TaskAction> operation) {
    std::thread& worker = core->sync_->worker;
    try {
        worker = std::thread([core = std::move(core), operation = std::move(operation)]() mutable noexcept {
            operation->run();
            operation.reset(); // Destroyed before the operation counts as done.
            finish(std::move(core));
        });
        return {};
    } catch (const std::system_error& error) {
        return error.code();
    } catch (const std::bad_alloc&) {
        return make_error_code(std::errc::not_enough_memory);
    }
}

// The result belongs to the continuation, or to the owner of the task. This thread releases its reference
// before another thread can see that the operation is done, so that it is never this thread that destroys a
// result which the other did not take.
void TaskCore::finish(std::shared_ptr<TaskCore> core) noexcept {
    Continuation continuation;
    {
        const std::shared_ptr<Sync> sync = core->sync_;
        const std::lock_guard lock(sync->mutex);
        sync->done = true;
        continuation = std::exchange(sync->continuation, {});
        core.reset();
        sync->finished.notify_all();
    }
    continuation.start();
}

void TaskCore::fail(std::exception_ptr error) noexcept { error_ = std::move(error); }

// The error is moved out, so that it is destroyed on the thread that takes it and not on the worker thread.
void TaskCore::claimResult() {
    if (std::exchange(sync_->taken, true))
        throwTaskTaken();
    if (error_)
        std::rethrow_exception(std::exchange(error_, nullptr));
}

TaskSuspension::TaskSuspension(std::shared_ptr<TaskCore> core, Executor executor) noexcept
    : core_(std::move(core)), executor_(moveOut(executor)) {}

TaskSuspension::TaskSuspension(TaskSuspension&& other) noexcept = default;

TaskSuspension::~TaskSuspension() {
    if (delivery_)
        delivery_->withdraw();
}

bool TaskSuspension::ready() const {
    if (!core_ || delivery_)
        throwTaskTaken();
    return !executor_ && core_->done();
}

// Once `deliver` has the delivery, another thread may resume the coroutine, which may destroy this object. So
// only local copies are used from then on.
bool TaskSuspension::suspend(std::coroutine_handle<> coroutine) {
    const std::shared_ptr<TaskCore> core = core_;
    auto delivery = std::make_shared<TaskDelivery>(std::make_unique<Resumption>(coroutine));
    delivery_ = delivery;
    return core->deliver(moveOut(executor_), std::move(delivery));
}

void requireExecutor(const Executor& executor) {
    if (!executor)
        throw std::invalid_argument("the executor is empty");
}

void throwTaskTaken() { throw std::logic_error("the result of this task was already taken"); }

} // namespace kinovane::detail
