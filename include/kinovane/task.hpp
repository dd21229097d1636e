// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include <kinovane/export.hpp>

/// Operations that are already running, and how their results come back.
namespace kinovane {

/// How an application posts work to its own main loop: called with a job, it arranges that the loop runs the
/// job once, soon. It is called once for each operation, from any thread, and must not throw: an exception
/// out of it ends the process (std::terminate).
///
/// It may move, copy and keep the job. The first call of any copy runs the handler and destroys it there;
/// later calls do nothing. A job that is never run is dropped: its handler is destroyed with the last copy
/// that the executor kept, on the thread that destroys that copy. If the executor keeps no copy, that is the
/// thread that calls the executor.
///
/// It has to be callable until the operation is done, also when the main loop has ended. It may then keep the
/// job or drop it. The library destroys its copy of the executor on the thread that finished the operation.
using Executor = std::function<void(std::function<void()>)>;

namespace detail {

/// Something that is run at most once, and destroyed by the thread that ran it.
class KINOVANE_EXPORT TaskAction {
  public:
    TaskAction();
    TaskAction(const TaskAction&) = delete;
    TaskAction& operator=(const TaskAction&) = delete;
    virtual ~TaskAction();
    virtual void run() = 0;
};

/// An action on its way to the thread that runs it.
class TaskDelivery;

/// The part of an operation's state that does not depend on the type of its result.
class KINOVANE_EXPORT TaskCore {
  public:
    TaskCore();
    TaskCore(const TaskCore&) = delete;
    TaskCore& operator=(const TaskCore&) = delete;
    virtual ~TaskCore();

    bool done() const noexcept;

    /// Blocks until done, and until the operation's thread has ended.
    void wait();

    /// Detaches the operation's thread. Called by the owner that gives up waiting for it.
    void detach() noexcept;

    /// Runs `action` through `executor` once the operation is done.
    void deliver(Executor executor, std::unique_ptr<TaskAction> action);

    /// The same for a delivery that may be withdrawn. Without an executor the thread that finishes the
    /// operation runs it; if the operation is already done, it is not run and false is returned.
    bool deliver(Executor executor, std::shared_ptr<TaskDelivery> delivery);

    /// Runs `operation`, and then `finish`, on a thread of its own. Returns the reason if no thread can be
    /// started.
    static std::error_code start(std::shared_ptr<TaskCore> core, std::unique_ptr<TaskAction> operation);

    /// Marks the operation as done, wakes waiting threads, releases `core`, and delivers what was to follow.
    static void finish(std::shared_ptr<TaskCore> core) noexcept;

    void fail(std::exception_ptr error) noexcept;

  protected:
    /// Called before the result is taken. Throws the operation's error, if there is one; the second time,
    /// std::logic_error.
    void claimResult();

  private:
    struct Sync;
    std::unique_ptr<Sync> sync_;
};

template <class T>
class TaskState final : public TaskCore {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    void succeed(Value value) { value_.emplace(std::move(value)); }

    T take() {
        claimResult();
        if constexpr (!std::is_void_v<T>) {
            // The value leaves the state, which the operation's thread may be the last to destroy.
            T value = std::move(*value_); // NOLINT(*-unchecked-optional-access): else there is an error
            value_.reset();
            return value;
        }
    }

  private:
    std::optional<Value> value_;
};

/// A coroutine that waits for an operation. This object lies in the coroutine's frame; once it is destroyed,
/// the coroutine is not resumed any more.
class KINOVANE_EXPORT TaskSuspension {
  public:
    TaskSuspension(std::shared_ptr<TaskCore> core, Executor executor) noexcept;
    TaskSuspension(TaskSuspension&& other) noexcept;
    TaskSuspension& operator=(TaskSuspension&&) = delete;
    TaskSuspension(const TaskSuspension&) = delete;
    TaskSuspension& operator=(const TaskSuspension&) = delete;
    ~TaskSuspension();

    /// Whether the coroutine continues without being suspended. Throws std::logic_error if a coroutine
    /// already waits or waited here.
    bool ready() const;

    /// Resumes `coroutine` once the operation is done. Returns false if it continues at once. The coroutine
    /// may have been resumed, and this object destroyed, before the call returns.
    bool suspend(std::coroutine_handle<> coroutine);

  private:
    std::shared_ptr<TaskCore> core_;
    Executor executor_;
    std::shared_ptr<TaskDelivery> delivery_;
};

/// Throws std::invalid_argument if `executor` is empty.
KINOVANE_EXPORT void requireExecutor(const Executor& executor);

[[noreturn]] KINOVANE_EXPORT void throwTaskTaken();

} // namespace detail

template <class T>
class TaskAwaiter;

/// An operation that is already running on a thread of its own. Its result, or its error, is taken once: with
/// `get`, `co_await`, `on` or `then`; a second attempt throws std::logic_error.
///
/// A task may be moved, and handed from thread to thread, but not used by two threads at once. It may be
/// dropped: the operation then finishes unobserved. Nothing of it remains once it is done.
///
/// With g++ 12, a co_await expression must contain neither a braced list, which does not compile, nor a
/// closure with captures, which is destroyed twice. They are made in a statement before it:
///
///     auto task = film.run({"status", run});
///     const ProcessResult result = co_await task.on(executor);
template <class T>
class [[nodiscard]] Task {
  public:
    explicit Task(std::shared_ptr<detail::TaskState<T>> state) noexcept : state_(std::move(state)) {}
    Task(Task&& other) noexcept = default;
    Task& operator=(Task&& other) noexcept {
        Task dropped(std::move(*this));
        state_ = std::move(other.state_);
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() {
        if (state_)
            state_->detach();
    }

    /// Blocks until the operation is done; gives its result or throws its error.
    T get() {
        auto state = release();
        state->wait();
        return state->take();
    }

    /// Whether the operation is done (or the result already taken), without blocking.
    bool done() const noexcept { return !state_ || state_->done(); }

    /// Suspends the coroutine until the operation is done. It resumes on the thread that finished the
    /// operation, or continues at once if the operation is already done. Gives the result or throws the
    /// operation's error.
    ///
    /// A coroutine that is suspended here must not be destroyed: the operation's thread may be resuming it at
    /// that moment. A coroutine that may have to be destroyed while it waits uses `on`.
    auto operator co_await() && { return TaskAwaiter<T>(release(), nullptr); }

    /// An awaitable as above whose coroutine always resumes through `executor`.
    ///
    /// The thread that runs the executor's jobs may destroy the suspended coroutine at any time; it is then
    /// not resumed. No other thread may. If the executor drops the job, the coroutine stays suspended, and
    /// its owner has to destroy it.
    ///
    /// Throws std::invalid_argument if `executor` is empty; the task is then unchanged.
    auto on(Executor executor) {
        detail::requireExecutor(executor);
        return TaskAwaiter<T>(release(), std::move(executor));
    }

    /// Calls `handler(Task<T>)` through `executor` once the operation is done; `get` of that task does not
    /// block. The handler runs, and is destroyed, where the executor runs its job. It may be a type that can
    /// only be moved. An exception out of it leaves the job.
    /// Throws std::invalid_argument if `executor` is empty; the task is then unchanged.
    template <class Handler>
    void then(Executor executor, Handler handler) {
        struct Handling final : detail::TaskAction {
            Handling(Handler&& installed, Task&& finished)
                : handler(std::move(installed)), task(std::move(finished)) {}
            void run() override { handler(std::move(task)); }
            Handler handler;
            Task task;
        };
        detail::requireExecutor(executor);
        auto state = release();
        state->detach();
        auto handling = std::make_unique<Handling>(std::move(handler), Task(state));
        state->deliver(std::move(executor), std::move(handling));
    }

  private:
    std::shared_ptr<detail::TaskState<T>> release() {
        if (!state_)
            detail::throwTaskTaken();
        return std::exchange(state_, nullptr);
    }

    std::shared_ptr<detail::TaskState<T>> state_;
};

/// What `co_await` uses; made by Task only. It can be awaited once; a second attempt throws std::logic_error.
template <class T>
class [[nodiscard]] TaskAwaiter {
  public:
    TaskAwaiter(std::shared_ptr<detail::TaskState<T>> state, Executor executor)
        : suspension_(state, std::move(executor)), state_(std::move(state)) {
        state_->detach();
    }
    TaskAwaiter(TaskAwaiter&&) noexcept = default;
    TaskAwaiter& operator=(TaskAwaiter&&) = delete;
    TaskAwaiter(const TaskAwaiter&) = delete;
    TaskAwaiter& operator=(const TaskAwaiter&) = delete;
    ~TaskAwaiter() = default;

    bool await_ready() const { return suspension_.ready(); }
    bool await_suspend(std::coroutine_handle<> coroutine) { return suspension_.suspend(coroutine); }
    T await_resume() { return state_->take(); }

  private:
    detail::TaskSuspension suspension_;
    std::shared_ptr<detail::TaskState<T>> state_;
};

} // namespace kinovane
