// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <stop_token>
#include <thread>
#include <utility>

namespace kinovane::test {

/// Does one thing again and again on a thread of its own, as fast as it can, until it is destroyed.
class Attacker {
  public:
    /// `attack` is told how many turns are over.
    explicit Attacker(std::function<void(std::size_t turn)> attack)
        : thread_([this, attack = std::move(attack)](const std::stop_token& stop) {
              while (!stop.stop_requested()) {
                  attack(turns_);
                  ++turns_;
                  turns_.notify_all();
              }
          }) {}

    /// How many turns are over.
    std::size_t turns() const { return turns_; }

    /// Blocks until another turn is over.
    void awaitTurn() const { turns_.wait(turns_); }

  private:
    std::atomic<std::size_t> turns_ = 0;
    std::jthread thread_;
};

} // namespace kinovane::test
