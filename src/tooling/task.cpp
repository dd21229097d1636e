#include <kinovane/task.hpp>

#include <condition_variable>
#include <mutex>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace kinovane {

namespace detail {

struct TaskCore::Sync {
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    std::function<void()> continuation;

    // Written before `done` is set and read after it was seen, so the mutex orders the accesses.
    std::exception_ptr error;

    // Only ever touched by whoever holds the task.
    std::thread worker;
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

void TaskCore::letGo() noexcept {
    if (sync_->worker.joinable())
        sync_->worker.detach();
}

bool TaskCore::whenDone(std::function<void()>& continuation) {
    const std::lock_guard lock(sync_->mutex);
    if (sync_->done)
        return false;
    sync_->continuation = std::move(continuation);
    return true;
}

void TaskCore::deliver(Executor executor, std::function<void()> job) {
    // The job leaves this function, and later the worker, only as a whole: what it holds is destroyed by the
    // executor.
    auto parcel =
        std::make_shared<std::pair<Executor, std::function<void()>>>(std::move(executor), std::move(job));
    std::function<void()> send = [parcel] { parcel->first(std::move(parcel->second)); };
    if (!whenDone(send))
        send();
}

std::error_code TaskCore::start(const std::shared_ptr<TaskCore>& core, std::function<void()> operation) {
    try {
        core->sync_->worker = std::thread([core, operation = std::move(operation)]() mutable noexcept {
            operation();
            operation = nullptr; // What the operation held goes before anybody hears that it is done.
            core->finish();
        });
        return {};
    } catch (const std::system_error& error) {
        return error.code();
    } catch (const std::bad_alloc&) {
        return make_error_code(std::errc::not_enough_memory);
    }
}

void TaskCore::finish() noexcept {
    std::function<void()> continuation;
    {
        const std::lock_guard lock(sync_->mutex);
        sync_->done = true;
        continuation = std::move(sync_->continuation);
        sync_->finished.notify_all();
    }
    if (continuation)
        continuation();
}

void TaskCore::fail(std::exception_ptr error) noexcept { sync_->error = std::move(error); }

// The error leaves with whoever takes it, so that it is also destroyed there, and not by the worker.
void TaskCore::rethrowError() {
    if (sync_->error)
        std::rethrow_exception(std::exchange(sync_->error, nullptr));
}

void throwTaskTaken() { throw std::logic_error("the result of this task was already taken"); }

} // namespace detail

} // namespace kinovane
