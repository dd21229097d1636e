// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>
#include <utility>

namespace kinovane::test {

/// Repeats an action on its own thread, without a pause, until it is destroyed.
class RepeatingThread {
  public:
    /// `action` is called with the number of turns before it.
    explicit RepeatingThread(std::function<void(std::size_t turn)> action)
        : thread_([this, action = std::move(action)] {
              while (!stopped_) {
                  action(turns_);
                  ++turns_;
                  turns_.notify_all();
              }
          }) {}
    RepeatingThread(const RepeatingThread&) = delete;
    RepeatingThread& operator=(const RepeatingThread&) = delete;
    ~RepeatingThread() {
        stopped_ = true;
        thread_.join();
    }

    /// The number of finished turns.
    std::size_t turns() const { return turns_; }

    /// Blocks until another turn has finished.
    void awaitTurn() const { turns_.wait(turns_); }

  private:
    std::atomic<std::size_t> turns_ = 0;
    std::atomic<bool> stopped_ = false;
    std::thread thread_; // Last, because it uses the others.
};

} // namespace kinovane::test
