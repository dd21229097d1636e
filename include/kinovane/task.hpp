// SPDX-License-Identifier: Apache-2.0

#pragma once

// First, because it refuses an older C++, and <coroutine> would do so less clearly.
// clang-format off
#include <kinovane/export.hpp>
// clang-format on

#include <coroutine>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

/// Asynchronous operations and their results.
namespace kinovane {

/// A function of the application that posts a job to its main loop. The loop then runs the job once.
///
/// The library calls the executor once for each operation, on any thread. The executor must not throw: an
/// exception ends the process (std::terminate).
///
/// The executor may move, copy and store the job. The first call of any copy of the job runs the handler and
/// destroys it on that thread; later calls do nothing. If no copy is ever called, the handler is destroyed
/// with the last copy that the executor stored, on the thread that destroys that copy. If the executor stores
/// no copy, the thread that calls the executor destroys the handler.
///
/// The executor must stay callable until the operation is done, even after the main loop has ended. It may
/// then store or drop the job. The library destroys its copy of the executor on the thread that finished the
/// operation.
using Executor = std::function<void(std::function<void()>)>;

namespace detail {

/// A function object that is called at most once and destroyed by the thread that called it.
class KINOVANE_EXPORT TaskAction {
  public:
    TaskAction();
    TaskAction(const TaskAction&) = delete;
    TaskAction& operator=(const TaskAction&) = delete;
    virtual ~TaskAction();
    virtual void run() = 0;
};

/// Moves a function object out of a variable. A std::function that was moved from may still hold a copy of
/// its target, which would be destroyed with the variable; so it is emptied.
template <class Function>
Function moveOut(Function& function) {
    if constexpr (std::is_assignable_v<Function&, std::nullptr_t>)
        return std::exchange(function, nullptr);
    else
        return std::move(function);
}

/// Passes an action to the thread that runs it.
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

    /// Detaches the operation's thread. Called when the owner will not wait for it.
    void detach() noexcept;

    /// Runs `action` through `executor` once the operation is done.
    void deliver(Executor executor, std::unique_ptr<TaskAction> action);

    /// Does the same for a delivery that may be withdrawn. If `executor` is empty, the thread that finishes
    /// the operation runs it; if the operation is then already done, it is not run and the result is false.
    bool deliver(Executor executor, std::shared_ptr<TaskDelivery> delivery);

    /// Runs `operation`, and then `finish`, on a thread of its own. Returns the reason if no thread can be
    /// started.
    static std::error_code start(std::shared_ptr<TaskCore> core, std::unique_ptr<TaskAction> operation);

    /// Marks the operation as done, wakes waiting threads, releases `core`, and runs the delivery, if any.
    static void finish(std::shared_ptr<TaskCore> core) noexcept;

    void fail(std::exception_ptr error) noexcept;

  protected:
    /// Called before the result is taken. Throws the operation's error, if there is one. A second call throws
    /// std::logic_error.
    void claimResult();

  private:
    struct Sync;
    std::shared_ptr<Sync> sync_; ///< Shared with `finish`, which may outlive this object.

    // Written before the operation is done and read after that was seen, so the mutex of `sync_` orders the
    // accesses.
    std::exception_ptr error_;
};

template <class T>
class TaskState final : public TaskCore {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    void succeed(Value value) { value_.emplace(std::move(value)); }

    T take() {
        claimResult();
        if constexpr (!std::is_void_v<T>) {
            // Moved out, because the operation's thread may be the last to release this state.
            T value = std::move(*value_); // NOLINT(*-unchecked-optional-access): else there is an error
            value_.reset();
            return value;
        }
    }

  private:
    std::optional<Value> value_;
};

/// A coroutine that is suspended until an operation is done. This object is part of the coroutine's frame.
/// Its destructor makes sure that the coroutine is not resumed any more.
class KINOVANE_EXPORT TaskSuspension {
  public:
    TaskSuspension(std::shared_ptr<TaskCore> core, Executor executor) noexcept;
    TaskSuspension(TaskSuspension&& other) noexcept;
    TaskSuspension& operator=(TaskSuspension&&) = delete;
    TaskSuspension(const TaskSuspension&) = delete;
    TaskSuspension& operator=(const TaskSuspension&) = delete;
    ~TaskSuspension();

    /// Whether the coroutine continues without being suspended. Throws std::logic_error if a coroutine is or
    /// was suspended here.
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

/// An operation that is already running on a thread of its own, like a std::future that can also be awaited.
///
/// The result, or the operation's error, can be taken once: with `get`, `co_await`, `on` or `then`. A second
/// attempt throws std::logic_error.
///
/// A task may be moved, also to another thread, but two threads must not use it at the same time. Destroying
/// it detaches the operation, which then runs to its end. Nothing of the operation remains after that.
///
/// With g++ 12, a co_await expression must not contain a braced list or a lambda with captures: the list
/// does not compile or makes an object that is destroyed twice, as the lambda is. Write a statement before:
///
///     auto task = film.run({"status", run});
///     const ProcessResult result = co_await task.on(executor);
template <class T>
class [[nodiscard]] Task {
  public:
    /// For the library.
    explicit Task(std::shared_ptr<detail::TaskState<T>> state) noexcept : state_(std::move(state)) {}

    /// A task that is done and gives this value (none if T is void). With it and `failed` an application
    /// tests its own code without the external programs.
    template <class... Value>
        requires(sizeof...(Value) == (std::is_void_v<T> ? 0 : 1))
    static Task ready(Value&&... value) {
        auto state = std::make_shared<detail::TaskState<T>>();
        state->succeed({std::forward<Value>(value)...});
        detail::TaskCore::finish(state);
        return Task(std::move(state));
    }

    /// A task that is done and throws this error, which must not be null.
    static Task failed(std::exception_ptr error) {
        auto state = std::make_shared<detail::TaskState<T>>();
        state->fail(std::move(error));
        detail::TaskCore::finish(state);
        return Task(std::move(state));
    }

    Task(Task&& other) noexcept = default;
    /// Detaches the operation that this task had, if any.
    Task& operator=(Task&& other) noexcept {
        const Task replaced(std::move(*this)); // Detaches the operation that this task had.
        state_ = std::move(other.state_);
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() {
        if (state_)
            state_->detach();
    }

    /// Blocks until the operation is done. Returns its result or throws its error.
    T get() {
        auto state = release();
        state->wait();
        return state->take();
    }

    /// Blocks until the operation is done or its result was taken. Takes nothing.
    void wait() {
        if (state_)
            state_->wait();
    }

    /// Whether the operation is done or its result was taken. Does not block.
    bool done() const noexcept { return !state_ || state_->done(); }

    /// Suspends the coroutine until the operation is done, then returns its result or throws its error. The
    /// coroutine resumes on the thread that finished the operation; if the operation is already done, it
    /// continues at once.
    ///
    /// A coroutine that is suspended here must not be destroyed, because the operation's thread may be
    /// resuming it. Use `on` for a coroutine that may be destroyed while it is suspended.
    auto operator co_await() && { return TaskAwaiter<T>(release(), nullptr); }

    /// Returns an awaitable that does the same, but whose coroutine always resumes through `executor`.
    ///
    /// The thread that runs the executor's jobs may destroy the suspended coroutine at any time; the
    /// coroutine is then not resumed. No other thread may destroy it. If the executor drops the job, the
    /// coroutine stays suspended until its owner destroys it.
    ///
    /// Throws std::invalid_argument if `executor` is empty; the task is then unchanged.
    auto on(Executor executor) {
        detail::requireExecutor(executor);
        return TaskAwaiter<T>(release(), detail::moveOut(executor));
    }

    /// Calls `handler(Task<T>)` through `executor` once the operation is done. `get` of that task does not
    /// block.
    ///
    /// The handler is called and destroyed on the thread that runs the executor's job. It need not be
    /// copyable. An exception that it throws leaves the job.
    ///
    /// Throws std::invalid_argument if `executor` is empty; the task is then unchanged.
    template <class Handler>
    void then(Executor executor, Handler handler) {
        struct HandlerAction final : detail::TaskAction {
            HandlerAction(Handler&& installed, Task&& finished)
                : handler(detail::moveOut(installed)), task(std::move(finished)) {}
            void run() override { handler(std::move(task)); }
            Handler handler;
            Task task;
        };
        detail::requireExecutor(executor);
        auto state = release();
        state->detach();
        auto action = std::make_unique<HandlerAction>(std::move(handler), Task(state));
        state->deliver(detail::moveOut(executor), std::move(action));
    }

  private:
    std::shared_ptr<detail::TaskState<T>> release() {
        if (!state_)
            detail::throwTaskTaken();
        return std::exchange(state_, nullptr);
    }

    std::shared_ptr<detail::TaskState<T>> state_;
};

/// The awaitable that `co_await` and `on` make. It can be awaited once; a second attempt throws
/// std::logic_error.
template <class T>
class [[nodiscard]] TaskAwaiter {
  public:
    /// For the library.
    TaskAwaiter(std::shared_ptr<detail::TaskState<T>> state, Executor executor)
        : suspension_(state, detail::moveOut(executor)), state_(std::move(state)) {
        state_->detach();
    }
    TaskAwaiter(TaskAwaiter&&) noexcept = default;
    TaskAwaiter& operator=(TaskAwaiter&&) = delete;
    TaskAwaiter(const TaskAwaiter&) = delete;
    TaskAwaiter& operator=(const TaskAwaiter&) = delete;
    ~TaskAwaiter() = default;

    /// Called by `co_await`, like the two functions below.
    bool await_ready() const { return suspension_.ready(); }
    /// See await_ready.
    bool await_suspend(std::coroutine_handle<> coroutine) { return suspension_.suspend(coroutine); }
    /// See await_ready.
    T await_resume() { return state_->take(); }

  private:
    detail::TaskSuspension suspension_;
    std::shared_ptr<detail::TaskState<T>> state_;
};

} // namespace kinovane
