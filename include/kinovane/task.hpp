// SPDX-License-Identifier: Apache-2.0

#pragma once

// First, because it refuses an older C++, and <coroutine> would do so less clearly.
// clang-format off
#include <kinovane/export.hpp>
// clang-format on

#include <coroutine>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

#include <kinovane/executor.hpp>
#include <kinovane/task_state.hpp>

/// Asynchronous operations and their results.
namespace kinovane {

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
