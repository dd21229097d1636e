#pragma once

#include <atomic>
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
/// job once, soon. It may be called from any thread and must not throw; an exception out of it ends the
/// process. The library releases its copy of the executor on the thread that finished the operation, but
/// never runs or destroys a handler there.
using Executor = std::function<void(std::function<void()>)>;

namespace detail {

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

    /// Lets the operation's thread end by itself. Called by whoever gives up waiting for it.
    void letGo() noexcept;

    /// Keeps `continuation` for the thread that finishes the operation, and returns true; or, when the
    /// operation is already done, leaves it alone and returns false.
    bool whenDone(std::function<void()>& continuation);

    /// Sends `job` through `executor` once the operation is done, at once if it already is.
    void deliver(Executor executor, std::function<void()> job);

    /// Runs `operation` and then `finish` on a thread of its own. Gives the reason when no thread can be
    /// started.
    static std::error_code start(const std::shared_ptr<TaskCore>& core, std::function<void()> operation);

    /// Marks the operation as done, wakes whoever waits and runs the continuation on this thread.
    void finish() noexcept;

    void fail(std::exception_ptr error) noexcept;

  protected:
    /// Throws the operation's error, if there is one.
    void rethrowError();

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
        rethrowError();
        if constexpr (!std::is_void_v<T>)
            return std::move(*value_); // NOLINT(*-unchecked-optional-access): else there is an error
    }

  private:
    std::optional<Value> value_;
};

/// A suspended coroutine that may be destroyed before its turn comes: whoever wakes it does so at most once,
/// and not at all when the coroutine has gone.
class Sleeper {
  public:
    explicit Sleeper(std::coroutine_handle<> coroutine) : address_(coroutine.address()) {}
    void forget() noexcept { address_.store(nullptr); }
    void wake() {
        if (void* address = address_.exchange(nullptr))
            std::coroutine_handle<>::from_address(address).resume();
    }

  private:
    std::atomic<void*> address_;
};

[[noreturn]] KINOVANE_EXPORT void throwTaskTaken();

} // namespace detail

template <class T>
class TaskAwaiter;

/// An operation that is already running on a thread of its own. Its result, or its error, is taken once: with
/// `get`, `co_await`, `on` or `then`; a second attempt throws std::logic_error.
///
/// A task may be moved, and handed from thread to thread, but not used by two threads at once. It may be
/// dropped: the operation then finishes unobserved. Nothing of it remains once it is done.
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
            state_->letGo();
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
    /// operation, or goes on at once when the operation is already done. Gives the result or throws the
    /// operation's error.
    auto operator co_await() && { return TaskAwaiter<T>(release(), nullptr); }

    /// An awaitable as above whose coroutine always resumes through `executor`.
    auto on(Executor executor) { return TaskAwaiter<T>(release(), std::move(executor)); }

    /// Calls `handler(Task<T>)` through `executor` once the operation is done; `get` of that task does not
    /// block. The handler runs, and is destroyed, where the executor runs its jobs.
    template <class Handler>
    void then(Executor executor, Handler handler) {
        struct Delivery {
            Handler handler;
            Task task;
        };
        auto state = release();
        state->letGo();
        auto delivery = std::make_shared<Delivery>(Delivery{std::move(handler), Task(state)});
        state->deliver(std::move(executor),
                       [delivery = std::move(delivery)] { delivery->handler(std::move(delivery->task)); });
    }

  private:
    std::shared_ptr<detail::TaskState<T>> release() {
        if (!state_)
            detail::throwTaskTaken();
        return std::exchange(state_, nullptr);
    }

    std::shared_ptr<detail::TaskState<T>> state_;
};

/// What `co_await` uses; made by Task only.
template <class T>
class [[nodiscard]] TaskAwaiter {
  public:
    TaskAwaiter(std::shared_ptr<detail::TaskState<T>> state, Executor executor)
        : state_(std::move(state)), executor_(std::move(executor)) {
        state_->letGo();
    }
    TaskAwaiter(TaskAwaiter&&) noexcept = default;
    TaskAwaiter& operator=(TaskAwaiter&&) = delete;
    TaskAwaiter(const TaskAwaiter&) = delete;
    TaskAwaiter& operator=(const TaskAwaiter&) = delete;
    ~TaskAwaiter() {
        if (sleeper_)
            sleeper_->forget();
    }

    bool await_ready() const noexcept { return !executor_ && state_->done(); }

    // Once the continuation is handed over, another thread may resume the coroutine and destroy this object
    // with it, so from then on only local copies are touched.
    bool await_suspend(std::coroutine_handle<> coroutine) {
        auto state = state_;
        sleeper_ = std::make_shared<detail::Sleeper>(coroutine);
        std::function<void()> wake = [sleeper = sleeper_] { sleeper->wake(); };
        if (!executor_)
            return state->whenDone(wake);
        state->deliver(std::move(executor_), std::move(wake));
        return true;
    }

    T await_resume() { return state_->take(); }

  private:
    std::shared_ptr<detail::TaskState<T>> state_;
    Executor executor_;
    std::shared_ptr<detail::Sleeper> sleeper_;
};

} // namespace kinovane
