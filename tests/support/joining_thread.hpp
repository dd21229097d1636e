// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace kinovane::test {

/// A thread that is joined when it is destroyed, like std::jthread, which some standard libraries do not
/// have.
class JoiningThread {
  public:
    JoiningThread() = default;
    explicit JoiningThread(std::function<void()> action) : thread_(std::move(action)) {}
    JoiningThread(JoiningThread&&) noexcept = default;
    JoiningThread& operator=(JoiningThread&& other) noexcept {
        join();
        thread_ = std::move(other.thread_);
        return *this;
    }
    ~JoiningThread() { join(); }

    void join() {
        if (thread_.joinable())
            thread_.join();
    }

  private:
    std::thread thread_;
};

} // namespace kinovane::test
