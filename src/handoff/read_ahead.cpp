// SPDX-License-Identifier: Apache-2.0

#include "handoff/read_ahead.hpp"

namespace kinovane {

ReadAhead::ReadAhead(RegularFile& file, std::span<std::byte> buffer) : file_(file) {
    const std::size_t size = buffer.size() / pieceCount;
    for (std::size_t index = 0; index < pieceCount; ++index)
        pieces_[index].space = buffer.subspan(index * size, size);
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
    if (holding_) {
        ++emptied_;
        holding_ = false;
        if (resting_ && halfEmpty())
            changed_.notify_all();
    }
    changed_.wait(lock, [this] { return filled_ > emptied_ || ended_; });
    if (filled_ > emptied_) {
        holding_ = true;
        const Piece& piece = pieces_[emptied_ % pieceCount];
        return piece.space.first(piece.length);
    }
    if (failure_)
        std::rethrow_exception(failure_);
    return {};
}

void ReadAhead::read() noexcept {
    std::unique_lock lock(mutex_);
    while (!ended_) {
        if (filled_ - emptied_ == pieceCount) {
            resting_ = true;
            changed_.wait(lock, [this] { return stopped_ || halfEmpty(); });
            resting_ = false;
        }
        if (stopped_)
            return;
        Piece& piece = pieces_[filled_ % pieceCount];
        lock.unlock();
        std::exception_ptr failure;
        try {
            piece.length = file_.read(piece.space);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        failure_ = failure;
        ended_ = failure || piece.length == 0;
        if (!ended_)
            ++filled_;
        changed_.notify_all();
    }
}

} // namespace kinovane
