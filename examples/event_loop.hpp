// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <queue>
#include <utility>

#include <kinovane/task.hpp>

/// A main loop such as a window system provides: jobs are posted from any thread and run one after the other
/// on the thread that calls `run`.
class EventLoop {
  public:
    EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop() { jobs_->close(); }

    // The executor shares ownership of the queue: it is called by operations that end after the loop.
    kinovane::Executor executor() {
        return [jobs = jobs_](std::function<void()> job) { jobs->post(std::move(job)); };
    }

    /// Runs jobs until one of them calls `quit`; returns the status given there.
    int run() {
        while (!status_)
            jobs_->next()();
        return *status_;
    }

    void quit(int status) { status_ = status; }

  private:
    class Jobs {
      public:
        void post(std::function<void()> job) {
            const std::lock_guard lock(mutex_);
            if (closed_)
                return; // The job is destroyed, because no thread will run it.
            jobs_.push(std::move(job));
            posted_.notify_one();
        }

        std::function<void()> next() {
            std::unique_lock lock(mutex_);
            posted_.wait(lock, [this] { return !jobs_.empty(); });
            std::function<void()> job = std::move(jobs_.front());
            jobs_.pop();
            return job;
        }

        void close() {
            // Declared before the lock, and so destroyed after it: destroying a job runs code of the
            // application.
            std::queue<std::function<void()>> unfinished;
            const std::lock_guard lock(mutex_);
            closed_ = true;
            unfinished.swap(jobs_);
        }

      private:
        std::mutex mutex_;
        std::condition_variable posted_;
        std::queue<std::function<void()>> jobs_;
        bool closed_ = false;
    };

    std::shared_ptr<Jobs> jobs_ = std::make_shared<Jobs>();
    std::optional<int> status_;
};
