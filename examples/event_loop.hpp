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

/// What a window system gives an application: jobs may be posted from any thread, and run one after the other
/// on this one.
class EventLoop {
  public:
    EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop() { jobs_->close(); }

    // The executor shares the jobs: an operation may still be running when the loop has ended.
    kinovane::Executor executor() {
        return [jobs = jobs_](std::function<void()> job) { jobs->post(std::move(job)); };
    }

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
                return; // Dropped: nothing will run it.
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
            std::queue<std::function<void()>>
                dropped; // Destroyed here, on the loop's thread, without the lock.
            const std::lock_guard lock(mutex_);
            closed_ = true;
            dropped.swap(jobs_);
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
