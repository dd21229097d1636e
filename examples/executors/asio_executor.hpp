// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <kinovane/task.hpp>

/// Posts jobs to an io_context of Boost.Asio. Counts as work: `run` does not return before `stop` is called
/// or this object is destroyed. Destroy this object before the context.
///
/// Handlers run on the threads that call `run`; with one such thread, one after the other. What a handler
/// throws leaves `run`. Handlers that wait when the context is stopped remain in it. They run if it is run
/// again; otherwise the thread that destroys the context destroys them, without calling them. A handler of an
/// operation that ends after this object was destroyed is not called, but destroyed on the thread of the
/// operation.
///
/// To quit while productions run: request a stop (StopSource), let the context run, and call `stop` of the
/// context in the handler of the last one. When the context was stopped without that, only a task that was
/// kept can be waited for: request a stop, and call Task::wait.
class AsioExecutor {
  public:
    explicit AsioExecutor(boost::asio::io_context& context) : target_(std::make_shared<Target>(context)) {}
    AsioExecutor(const AsioExecutor&) = delete;
    AsioExecutor& operator=(const AsioExecutor&) = delete;
    ~AsioExecutor() {
        const std::lock_guard lock(target_->mutex);
        target_->work.reset();
    }

    /// May be called, copied and destroyed on any thread, also after this object.
    kinovane::Executor executor() const {
        return [target = target_](std::function<void()> job) {
            const std::lock_guard lock(target->mutex); // The context is not destroyed during the call.
            if (target->work)
                boost::asio::post(target->work->get_executor(), std::move(job));
        };
    }

  private:
    struct Target {
        explicit Target(boost::asio::io_context& context) : work(boost::asio::make_work_guard(context)) {}
        std::mutex mutex;
        std::optional<boost::asio::executor_work_guard<boost::asio::io_context::executor_type>> work;
    };

    std::shared_ptr<Target> target_;
};
