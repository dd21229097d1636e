// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <queue>
#include <utility>

#include <glib.h>

#include <kinovane/task.hpp>

/// Posts jobs to a GMainContext, through one source with a queue. (g_main_context_invoke_full is not used:
/// when no thread runs the context, it calls the function on the calling thread.)
///
/// Handlers run on the thread that runs the context, one after the other; they must not throw. Destroy this
/// object on that thread, or after the loop has ended, and before the context. Handlers that wait then are
/// destroyed there. A handler of an operation that ends later is destroyed on the thread of the operation.
/// Neither is called.
///
/// To quit while productions run: request a stop (StopSource), let the loop run, and call g_main_loop_quit in
/// the handler of the last one. When the loop has ended without that, only a task that was kept can be waited
/// for: request a stop, and call Task::wait.
class GLibExecutor {
  public:
    /// The default context if `context` is null.
    explicit GLibExecutor(GMainContext* context = nullptr) {
        g_source_set_callback(jobs_->source, nullptr, jobs_.get(), nullptr);
        g_source_set_can_recurse(jobs_->source, 1); // A handler may show a dialogue, which runs the context.
        g_source_attach(jobs_->source, context);
    }
    GLibExecutor(const GLibExecutor&) = delete;
    GLibExecutor& operator=(const GLibExecutor&) = delete;
    ~GLibExecutor() {
        std::queue<std::function<void()>> unfinished; // Destroyed after the lock is released.
        const std::lock_guard lock(jobs_->mutex);
        unfinished.swap(jobs_->queue);
        g_source_destroy(jobs_->source);
        g_source_unref(std::exchange(jobs_->source, nullptr));
    }

    /// May be called, copied and destroyed on any thread, also after this object.
    kinovane::Executor executor() const {
        return [jobs = jobs_](std::function<void()> job) {
            const std::lock_guard lock(jobs->mutex);
            if (jobs->source == nullptr)
                return;
            jobs->queue.push(std::move(job));
            g_source_set_ready_time(jobs->source, 0);
        };
    }

  private:
    struct Jobs {
        static gboolean runNext(GSource* source, GSourceFunc /*callback*/, gpointer data) {
            auto& jobs = *static_cast<Jobs*>(data);
            std::unique_lock lock(jobs.mutex);
            const std::function<void()> job = std::move(jobs.queue.front());
            jobs.queue.pop();
            if (jobs.queue.empty())
                g_source_set_ready_time(source, -1);
            lock.unlock();
            job();
            return G_SOURCE_CONTINUE;
        }

        static inline GSourceFuncs functions{nullptr, nullptr, runNext, nullptr, nullptr, nullptr};
        std::mutex mutex;
        std::queue<std::function<void()>> queue;
        GSource* source = g_source_new(&functions, sizeof(GSource)); ///< Null when the executor is destroyed.
    };

    std::shared_ptr<Jobs> jobs_ = std::make_shared<Jobs>();
};
