#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <queue>
#include <utility>

#include <kinovane/task.hpp>

/// What a window system gives an application: jobs may be posted from any thread, and run one after the other
/// on this one.
class EventLoop {
  public:
    kinovane::Executor executor() {
        return [this](std::function<void()> job) {
            const std::lock_guard lock(mutex_);
            jobs_.push(std::move(job));
            posted_.notify_one();
        };
    }

    int run() {
        while (!status_) {
            std::function<void()> job;
            {
                std::unique_lock lock(mutex_);
                posted_.wait(lock, [this] { return !jobs_.empty(); });
                job = std::move(jobs_.front());
                jobs_.pop();
            }
            job();
        }
        return *status_;
    }

    void quit(int status) { status_ = status; }

  private:
    std::mutex mutex_;
    std::condition_variable posted_;
    std::queue<std::function<void()>> jobs_;
    std::optional<int> status_;
};
