// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <condition_variable>
#include <coroutine>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <semaphore>
#include <utility>

#include <kinovane/task.hpp>

namespace kinovane::test {

/// A coroutine that starts at once. This object owns its frame.
class [[nodiscard]] Coroutine {
  public:
    struct promise_type;

    Coroutine(Coroutine&& other) noexcept
        : frame_(std::exchange(other.frame_, nullptr)), ended_(std::move(other.ended_)) {}
    Coroutine(const Coroutine&) = delete;
    Coroutine& operator=(const Coroutine&) = delete;
    ~Coroutine() {
        if (frame_)
            frame_.destroy();
    }

    /// Blocks until the coroutine has ended. Call it once.
    void wait() { ended_->acquire(); }

  private:
    using Ended = std::shared_ptr<std::binary_semaphore>;

    Coroutine(std::coroutine_handle<> frame, Ended ended) : frame_(frame), ended_(std::move(ended)) {}

    std::coroutine_handle<> frame_;
    Ended ended_;
};

struct Coroutine::promise_type {
    // Signals the end when the coroutine is suspended at its end: the waiting thread may then destroy the
    // frame.
    struct SignalEnd {
        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<promise_type> frame) const noexcept {
            const Ended copy = frame.promise().ended; // The frame may be destroyed.
            copy->release();
        }
        void await_resume() const noexcept {}
    };

    Coroutine get_return_object() {
        return {std::coroutine_handle<promise_type>::from_promise(*this), ended};
    }
    std::suspend_never initial_suspend() const noexcept { return {}; }
    SignalEnd final_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
    [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }

    Ended ended = std::make_shared<std::binary_semaphore>(0);
};

/// A main loop. The thread that calls `runNext` runs the next job and destroys it.
class Loop {
  public:
    Executor executor() {
        return [this](std::function<void()> job) { post(std::move(job)); };
    }

    void post(std::function<void()> job) {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
        posted_.notify_one();
    }

    /// Blocks until there is a job.
    std::function<void()> next() {
        std::unique_lock lock(mutex_);
        posted_.wait(lock, [&] { return !jobs_.empty(); });
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        return job;
    }

    void runNext() { next()(); }

    std::size_t waiting() {
        const std::lock_guard lock(mutex_);
        return jobs_.size();
    }

  private:
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> jobs_;
};

} // namespace kinovane::test
