// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/controlled_run.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "common/files/retry_interrupted.hpp"
#include "tooling/process/utf8_chunks.hpp"

namespace kinovane {

namespace {

using Clock = std::chrono::steady_clock;

/// `start` + `duration`, or nothing when that is later than the clock can tell.
std::optional<Clock::time_point> after(Clock::time_point start, std::chrono::milliseconds duration) {
    if (duration > std::chrono::duration_cast<std::chrono::milliseconds>(Clock::time_point::max() - start))
        return std::nullopt;
    return start + duration;
}

/// One pipe of the child, and what came out of it so far.
class ObservedStream {
  public:
    ObservedStream(OutputStream name, int pipe) : name_(name), pipe_(pipe) {
        ::fcntl(pipe, F_SETFL, ::fcntl(pipe, F_GETFL) | O_NONBLOCK);
    }

    int pipe() const noexcept { return pipe_; } ///< Negative once the end was reached.
    bool isOpen() const noexcept { return pipe_ >= 0; }

    /// Reads once. Nothing when there is nothing to read now; otherwise the next chunk, which may be empty.
    std::optional<std::string> read() {
        std::array<char, 65536> buffer; // NOLINT(*-member-init): it is read into
        const auto count = retryInterrupted([&] { return ::read(pipe_, buffer.data(), buffer.size()); });
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return std::nullopt;
        if (count < 0)
            throw std::system_error(errno, std::generic_category(), "read");
        if (count == 0) {
            pipe_ = -1;
            return chunks_.last();
        }
        const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
        bytes_ += bytes;
        return chunks_.next(bytes);
    }

    OutputStream name() const noexcept { return name_; }
    std::string take() { return std::move(bytes_); }

  private:
    OutputStream name_;
    int pipe_;
    std::string bytes_;
    UTF8Chunks chunks_;
};

/// The signals that end a process group: SIGTERM first, SIGKILL after the grace period.
class Termination {
  public:
    Termination(ExitWatch& exit, std::chrono::milliseconds gracePeriod)
        : exit_(exit), gracePeriod_(gracePeriod) {}

    bool begun() const noexcept { return begun_; }
    /// There is no more signal to send.
    bool done() const noexcept { return done_; }
    std::optional<Clock::time_point> end() const noexcept { return done_ ? std::nullopt : end_; }

    void begin() {
        begun_ = true;
        end_ = after(Clock::now(), gracePeriod_);
        done_ = !exit_.signalGroup(SIGTERM);
    }

    void kill() noexcept {
        done_ = true;
        exit_.signalGroup(SIGKILL);
    }

  private:
    ExitWatch& exit_;
    std::chrono::milliseconds gracePeriod_;
    bool begun_ = false;
    bool done_ = false;
    std::optional<Clock::time_point> end_;
};

/// What `poll` takes: the time until the earlier of two moments, rounded up; -1 when there is none.
int timeoutUntil(std::optional<Clock::time_point> first, std::optional<Clock::time_point> second) {
    if (!first || (second && *second < *first))
        first = second;
    if (!first)
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*first - Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, INT_MAX));
}

/// The loop of one run. Its thread is the only one that sends signals to the group, and the child's exit
/// status is taken after it, so a signal never reaches another process. If the application takes the status,
/// no signal is sent any more.
class Loop {
  public:
    Loop(const RunOptions& options, ChildProcess& child, WakePipe& wake, ExitWatch& exit)
        : options_(options), wake_(wake), exit_(exit),
          streams_{ObservedStream(OutputStream::standardOutput, child.output()),
                   ObservedStream(OutputStream::standardError, child.errors())},
          termination_(exit, options.gracePeriod) {
        if (options.timeLimit)
            limit_ = after(Clock::now(), *options.timeLimit);
    }

    ControlledOutcome run() {
        while (!isOver()) {
            wait();
            for (ObservedStream& stream : streams_)
                if (stream.isOpen())
                    read(stream);
            if (!isOver())
                decide();
        }
        if (termination_.begun()) {
            termination_.kill(); // What is left of the group when its leader has ended.
            drain();
        }
        outcome_.captured = {streams_[0].take(), streams_[1].take()};
        return std::move(outcome_);
    }

  private:
    /// The child has ended, and nothing holds its pipes that could still be heard.
    bool isOver() const {
        const bool closed = !streams_[0].isOpen() && !streams_[1].isOpen();
        return exit_.ended() && (closed || termination_.done());
    }

    void wait() {
        std::array<pollfd, 3> waited{pollfd{streams_[0].pipe(), POLLIN, 0},
                                     pollfd{streams_[1].pipe(), POLLIN, 0},
                                     pollfd{wake_.readEnd(), POLLIN, 0}};
        const int timeout = timeoutUntil(termination_.begun() ? std::nullopt : limit_, termination_.end());
        if (::poll(waited.data(), waited.size(), timeout) < 0 && errno != EINTR && errno != EAGAIN)
            throw std::system_error(errno, std::generic_category(), "poll");
        if (waited[2].revents != 0)
            wake_.clear();
    }

    /// Reads once and passes the chunk on. Returns whether anything was there.
    bool read(ObservedStream& stream) {
        const std::optional<std::string> chunk = stream.read();
        if (chunk && !chunk->empty() && options_.onOutput && !outcome_.callbackFailed) {
            try {
                options_.onOutput(stream.name(), *chunk);
            } catch (...) {
                outcome_.callbackFailed = std::current_exception();
            }
        }
        return chunk.has_value();
    }

    /// Begins or goes on with the end of the run, where there is a reason for one.
    void decide() {
        if (!termination_.begun()) {
            if (options_.stop.stopRequested())
                outcome_.stopped = std::errc::operation_canceled;
            else if (limit_ && Clock::now() >= *limit_)
                outcome_.stopped = std::errc::timed_out;
            if (outcome_.stopped || outcome_.callbackFailed)
                termination_.begin();
        }
        const std::optional<Clock::time_point> end = termination_.end();
        if (termination_.begun() && end && Clock::now() >= *end)
            termination_.kill();
    }

    /// Reads what is in the pipes. A process that left the group may still write, so this ends after what a
    /// pipe can hold.
    void drain() {
        constexpr int readsOfOnePipe = 2;
        for (ObservedStream& stream : streams_)
            for (int reads = 0; reads < readsOfOnePipe && stream.isOpen() && read(stream); ++reads) {
            }
    }

    const RunOptions& options_;
    WakePipe& wake_;
    ExitWatch& exit_;
    std::array<ObservedStream, 2> streams_;
    Termination termination_;
    std::optional<Clock::time_point> limit_;
    ControlledOutcome outcome_;
};

} // namespace

ControlledRun::ControlledRun(const RunOptions& options) : options_(options), exit_(wake_) {}

ControlledRun::~ControlledRun() {
    if (listens_)
        options_.stop.state()->remove(wake_);
}

ControlledOutcome ControlledRun::finish(ChildProcess& child) {
    exit_.watch(child.process());
    try {
        if (options_.stop.stopPossible()) {
            options_.stop.state()->add(wake_);
            listens_ = true;
        }
        ControlledOutcome outcome = Loop(options_, child, wake_, exit_).run();
        if (exit_.lost())
            child.abandon();
        return outcome;
    } catch (...) {
        exit_.signalGroup(SIGKILL);
        exit_.wait();
        if (exit_.lost())
            child.abandon();
        throw;
    }
}

} // namespace kinovane
