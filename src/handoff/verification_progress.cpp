// SPDX-License-Identifier: Apache-2.0

#include "handoff/verification_progress.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace kinovane {

namespace {

// Often enough for a smooth progress bar, and rarely enough to cost nothing.
constexpr auto minimumInterval = std::chrono::milliseconds(20);

std::uint64_t recordedSize(const FilmArtifact& artifact) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(artifact.bytes, 0));
}

std::uint64_t saturatingSum(std::uint64_t left, std::uint64_t right) {
    return left + std::min(right, std::numeric_limits<std::uint64_t>::max() - left);
}

} // namespace

ProgressReport::ProgressReport(const std::vector<const FilmArtifact*>& artifacts, const Callback& callback)
    : callback_(callback) {
    progress_.filesTotal = artifacts.size();
    for (const FilmArtifact* artifact : artifacts)
        progress_.bytesTotal = saturatingSum(progress_.bytesTotal, recordedSize(*artifact));
}

void ProgressReport::advance(const FilmArtifact& artifact, std::uint64_t bytes, bool fileDone) {
    const std::lock_guard lock(mutex_);
    progress_.bytesDone = saturatingSum(progress_.bytesDone, bytes);
    progress_.filesDone += fileDone ? 1 : 0;
    const auto now = Clock::now();
    if (now - lastCall_ < minimumInterval && progress_.filesDone != progress_.filesTotal)
        return;
    lastCall_ = now;
    progress_.path = artifact.path;
    call();
}

void ProgressReport::begin() {
    if (callback_)
        call();
}

void ProgressReport::call() {
    if (std::exchange(ended_, true))
        return;
    callback_(progress_);
    ended_ = false;
}

ProgressReport::File::File(ProgressReport& report, const FilmArtifact& artifact)
    : report_(report), artifact_(artifact), remaining_(recordedSize(artifact)) {}

void ProgressReport::File::read(std::size_t bytes) {
    const std::uint64_t counted = std::min<std::uint64_t>(bytes, remaining_);
    remaining_ -= counted;
    if (report_.callback_)
        report_.advance(artifact_, counted, false);
}

void ProgressReport::File::done() {
    if (report_.callback_)
        report_.advance(artifact_, remaining_, true);
}

} // namespace kinovane
