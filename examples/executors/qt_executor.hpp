// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMetaObject>
#include <QObject>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <kinovane/task.hpp>

/// Posts jobs to the event loop of the thread that creates this object, and is destroyed on that thread: as a
/// member of a window, or in `main` after the QCoreApplication.
///
/// Handlers run on that thread only, one after the other; they must not throw. Those that wait when this
/// object is destroyed are destroyed there, also when the event loop has ended. A handler of an operation
/// that ends later is destroyed on the thread of the operation. Neither is called.
///
/// To quit while productions run: request a stop (StopSource), let the event loop run, and call
/// QCoreApplication::quit in the handler of the last one. When the event loop has ended without that, only a
/// task that was kept can be waited for: request a stop, and call Task::wait.
class QtExecutor {
  public:
    QtExecutor() = default;
    QtExecutor(const QtExecutor&) = delete;
    QtExecutor& operator=(const QtExecutor&) = delete;
    ~QtExecutor() {
        std::unique_ptr<QObject> closed; // Destroyed, with the jobs, after the lock is released.
        const std::lock_guard lock(receiver_->mutex);
        closed.swap(receiver_->context);
    }

    /// May be called, copied and destroyed on any thread, also after this object.
    kinovane::Executor executor() const {
        return [receiver = receiver_](std::function<void()> job) {
            const std::lock_guard lock(receiver->mutex); // The context is not destroyed during the call.
            if (receiver->context)
                QMetaObject::invokeMethod(receiver->context.get(), std::move(job), Qt::QueuedConnection);
        };
    }

  private:
    struct Receiver {
        std::mutex mutex;
        std::unique_ptr<QObject> context = std::make_unique<QObject>();
    };

    std::shared_ptr<Receiver> receiver_ = std::make_shared<Receiver>();
};
