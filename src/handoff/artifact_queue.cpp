// SPDX-License-Identifier: Apache-2.0

#include "handoff/artifact_queue.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kinovane {

ArtifactQueue::ArtifactQueue(const std::vector<const FilmArtifact*>& artifacts, bool severalWorkers)
    : remaining_(artifacts.size()) {
    std::iota(remaining_.rbegin(), remaining_.rend(), std::size_t{0});
    if (severalWorkers)
        std::sort(remaining_.begin(), remaining_.end(), [&](std::size_t left, std::size_t right) {
            return std::pair(artifacts[left]->bytes, right) < std::pair(artifacts[right]->bytes, left);
        });
}

void ArtifactQueue::addWorker() {
    const std::lock_guard lock(mutex_);
    ++workers_;
}

void ArtifactQueue::removeWorker() {
    const std::lock_guard lock(mutex_);
    --workers_;
}

std::optional<ArtifactQueue::Turn> ArtifactQueue::next() {
    const std::lock_guard lock(mutex_);
    if (remaining_.empty()) {
        --workers_;
        return std::nullopt;
    }
    const Turn turn{remaining_.back(), workers_ == 1};
    remaining_.pop_back();
    return turn;
}

bool ArtifactQueue::giveBack(std::size_t index) {
    const std::lock_guard lock(mutex_);
    remaining_.push_back(index); // Does not allocate: there was space for it before.
    if (workers_ == 1)
        return true;
    --workers_;
    return false;
}

} // namespace kinovane
