// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <stop_token>
#include <thread>
#include <utility>

namespace kinovane::test {

/// Repeats an action on its own thread, without a pause, until it is destroyed.
class RepeatingThread {
  public:
    /// `action` is called with the number of turns before it.
    explicit RepeatingThread(std::function<void(std::size_t turn)> action)
        : thread_([this, action = std::move(action)](const std::stop_token& stop) {
              while (!stop.stop_requested()) {
                  action(turns_);
                  ++turns_;
                  turns_.notify_all();
              }
          }) {}

    /// The number of finished turns.
    std::size_t turns() const { return turns_; }

    /// Blocks until another turn has finished.
    void awaitTurn() const { turns_.wait(turns_); }

  private:
    std::atomic<std::size_t> turns_ = 0;
    std::jthread thread_;
};

} // namespace kinovane::test
