// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/output_capture.hpp"

#include <array>
#include <cerrno>
#include <span>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "common/files/retry_interrupted.hpp"
#include "common/text_buffer.hpp"
#include "tooling/process/system_pipe.hpp"

namespace kinovane {

namespace {

/// A pipe, and what has been read from it.
class Stream {
  public:
    explicit Stream(int pipe) : pipe_(pipe) {}

    int pipe() const noexcept { return pipe_; } ///< Negative at the end.
    bool open() const noexcept { return pipe_ >= 0; }

    /// Reads what the pipe holds. Blocks if it is empty.
    void read() {
        const std::span<char> free = text_.prepare();
        const auto count = retryInterrupted([&] { return ::read(pipe_, free.data(), free.size()); });
        if (count < 0)
            throw std::system_error(errno, std::generic_category(), "read");
        text_.commit(static_cast<std::size_t>(count));
        enlargeOnce();
        if (count == 0)
            pipe_ = -1;
    }

    std::string take() { return std::move(text_).join(); }

  private:
    // With a larger pipe, a program that writes much has to wait less often.
    void enlargeOnce() noexcept {
        constexpr std::size_t largePipe = std::size_t{1} << 20U;
        if (!enlarged_ && text_.size() >= largePipe) {
            enlargePipe(pipe_, static_cast<int>(largePipe));
            enlarged_ = true;
        }
    }

    int pipe_;
    TextBuffer text_;
    bool enlarged_ = false;
};

} // namespace

CapturedOutput captureOutput(int output, int errors) {
    std::array<Stream, 2> streams{Stream(output), Stream(errors)};
    while (streams[0].open() && streams[1].open()) {
        std::array<pollfd, 2> waited{pollfd{streams[0].pipe(), POLLIN, 0},
                                     pollfd{streams[1].pipe(), POLLIN, 0}};
        if (::poll(waited.data(), waited.size(), -1) < 0) {
            if (errno == EINTR || errno == EAGAIN)
                continue;
            throw std::system_error(errno, std::generic_category(), "poll");
        }
        for (std::size_t index = 0; index < streams.size(); ++index)
            if (waited[index].revents != 0)
                streams[index].read();
    }
    // At most one is still open, so reading may block.
    for (Stream& stream : streams)
        while (stream.open())
            stream.read();
    return {streams[0].take(), streams[1].take()};
}

} // namespace kinovane
