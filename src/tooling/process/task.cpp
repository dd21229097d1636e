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

/// What follows an operation. Without an executor the thread that finishes the operation runs it.
struct Following {
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
    Following following;

    // Written before `done` is set and read after it was seen, so the mutex orders the accesses.
    std::exception_ptr error;

    // Accessed only by the owner of the task.
    std::thread worker;
    bool taken = false;
};

TaskCore::TaskCore() : sync_(std::make_unique<Sync>()) {}

TaskCore::~TaskCore() = default;

bool TaskCore::done() const noexcept {
    const std::lock_guard lock(sync_->mutex);
    return sync_->done;
}

void TaskCore::wait() {
    // The thread's end is all there is to wait for, where it is still this task's: being woken twice takes
    // longer than either.
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
    deliver(std::move(executor), std::make_shared<TaskDelivery>(std::move(action)));
}

bool TaskCore::deliver(Executor executor, std::shared_ptr<TaskDelivery> delivery) {
    Following following{std::move(delivery), std::move(executor), nullptr};
    const bool throughExecutor = static_cast<bool>(following.executor);
    if (throughExecutor)
        following.job = TaskDelivery::makeJob(following.delivery);
    {
        const std::lock_guard lock(sync_->mutex);
        if (!sync_->done) {
            sync_->following = std::move(following);
            return true;
        }
    }
    if (throughExecutor)
        following.start();
    return throughExecutor;
}

std::error_code TaskCore::start(std::shared_ptr<TaskCore> core, std::unique_ptr<TaskAction> operation) {
    std::thread& worker = core->sync_->worker;
    try {
        worker = std::thread([core = std::move(core), operation = std::move(operation)]() mutable noexcept {
            operation->run();
            operation.reset(); // What the operation held is destroyed before anybody hears that it is done.
            finish(std::move(core));
        });
        return {};
    } catch (const std::system_error& error) {
        return error.code();
    } catch (const std::bad_alloc&) {
        return make_error_code(std::errc::not_enough_memory);
    }
}

// The result belongs to those who follow: this thread gives up its share before they start, so that it never
// is the last to destroy a result that they left untouched.
void TaskCore::finish(std::shared_ptr<TaskCore> core) noexcept {
    Following following;
    {
        const std::lock_guard lock(core->sync_->mutex);
        core->sync_->done = true;
        following = std::exchange(core->sync_->following, {});
        core->sync_->finished.notify_all();
    }
    core.reset();
    following.start();
}

void TaskCore::fail(std::exception_ptr error) noexcept { sync_->error = std::move(error); }

// The error leaves with the thread that takes it, so that it is also destroyed there, and not by the worker.
void TaskCore::claimResult() {
    if (std::exchange(sync_->taken, true))
        throwTaskTaken();
    if (sync_->error)
        std::rethrow_exception(std::exchange(sync_->error, nullptr));
}

TaskSuspension::TaskSuspension(std::shared_ptr<TaskCore> core, Executor executor) noexcept
    : core_(std::move(core)), executor_(std::move(executor)) {}

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

// Once the delivery is handed over, another thread may resume the coroutine and destroy this object with it,
// so from then on only local copies are used.
bool TaskSuspension::suspend(std::coroutine_handle<> coroutine) {
    const std::shared_ptr<TaskCore> core = core_;
    auto delivery = std::make_shared<TaskDelivery>(std::make_unique<Resumption>(coroutine));
    delivery_ = delivery;
    return core->deliver(std::exchange(executor_, nullptr), std::move(delivery));
}

void requireExecutor(const Executor& executor) {
    if (!executor)
        throw std::invalid_argument("the executor is empty");
}

void throwTaskTaken() { throw std::logic_error("the result of this task was already taken"); }

} // namespace kinovane::detail
