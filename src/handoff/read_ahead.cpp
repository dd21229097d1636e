// SPDX-License-Identifier: Apache-2.0

#include "handoff/read_ahead.hpp"

namespace kinovane {

ReadAhead::ReadAhead(RegularFile& file, std::span<std::byte> buffer) : file_(file) {
    const std::size_t size = buffer.size() / chunkCount;
    for (std::size_t index = 0; index < chunkCount; ++index)
        chunks_[index].space = buffer.subspan(index * size, size);
    reader_ = std::thread([this] { read(); });
}

ReadAhead::~ReadAhead() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }
    reader_.join();
}

std::span<const std::byte> ReadAhead::next() {
    std::unique_lock lock(mutex_);
    if (inUse_) {
        ++released_;
        inUse_ = false;
        if (waiting_ && halfEmpty())
            changed_.notify_all();
    }
    changed_.wait(lock, [this] { return filled_ > released_ || ended_; });
    if (filled_ > released_) {
        inUse_ = true;
        const Chunk& chunk = chunks_[released_ % chunkCount];
        return chunk.space.first(chunk.length);
    }
    if (failure_)
        std::rethrow_exception(failure_);
    return {};
}

void ReadAhead::read() noexcept {
    std::unique_lock lock(mutex_);
    while (!ended_) {
        if (filled_ - released_ == chunkCount) {
            waiting_ = true;
            changed_.wait(lock, [this] { return stopped_ || halfEmpty(); });
            waiting_ = false;
        }
        if (stopped_)
            return;
        Chunk& chunk = chunks_[filled_ % chunkCount];
        lock.unlock();
        std::exception_ptr failure;
        try {
            chunk.length = file_.read(chunk.space);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        failure_ = failure;
        ended_ = failure || chunk.length == 0;
        if (!ended_)
            ++filled_;
        changed_.notify_all();
    }
}

} // namespace kinovane
