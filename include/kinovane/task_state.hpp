// SPDX-License-Identifier: Apache-2.0

#pragma once

// First, because it refuses an older C++, and <coroutine> would do so less clearly.
// clang-format off
#include <kinovane/export.hpp>
// clang-format on

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include <kinovane/executor.hpp>

/// What kinovane/task.hpp is made of. Not for applications.
namespace kinovane {

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

} // namespace kinovane
