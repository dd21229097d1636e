// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

#include <kinovane/stop.hpp>

namespace kinovane {

namespace detail {

struct StopState::Members {
    std::atomic<bool> requested = false;
    std::mutex mutex; ///< Held while listeners are called, so that `remove` waits for a call that is running.
    std::vector<Listener*> listeners;
};

StopState::StopState() : members_(std::make_unique<Members>()) {}

StopState::~StopState() = default;

bool StopState::request() noexcept {
    const std::lock_guard lock(members_->mutex);
    if (members_->requested.exchange(true))
        return false;
    for (Listener* listener : members_->listeners)
        listener->onStop();
    members_->listeners.clear();
    return true;
}

bool StopState::requested() const noexcept { return members_->requested; }

void StopState::add(Listener& listener) {
    const std::lock_guard lock(members_->mutex);
    if (members_->requested)
        listener.onStop();
    else
        members_->listeners.push_back(&listener);
}

void StopState::remove(Listener& listener) noexcept {
    const std::lock_guard lock(members_->mutex);
    std::erase(members_->listeners, &listener);
}

} // namespace detail

StopSource::StopSource() : state_(std::make_shared<detail::StopState>()) {}

} // namespace kinovane
