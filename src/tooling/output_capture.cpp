#include "tooling/output_capture.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "common/descriptor.hpp"

namespace kinovane {

namespace {

constexpr std::size_t firstChunk = std::size_t{4} << 10U;
constexpr std::size_t largestChunk = std::size_t{1} << 20U;

/// One pipe and what came out of it so far. The bytes are kept in chunks and joined once, at the end: a text
/// that grows would be copied again and again.
class Stream {
  public:
    explicit Stream(int pipe) : pipe_(pipe) {}

    int pipe() const noexcept { return pipe_; } ///< Negative once the end was reached.
    bool open() const noexcept { return pipe_ >= 0; }

    /// Reads what is there; waits when nothing is.
    void read() {
        if (chunks_.empty() || chunks_.back().used == chunks_.back().size)
            addChunk();
        Chunk& chunk = chunks_.back();
        const auto count = retryInterrupted(
            [&] { return ::read(pipe_, chunk.bytes.get() + chunk.used, chunk.size - chunk.used); });
        if (count < 0)
            throw std::system_error(errno, std::generic_category(), "cannot read a program's output");
        if (count == 0)
            pipe_ = -1;
        chunk.used += static_cast<std::size_t>(count);
        total_ += static_cast<std::size_t>(count);
    }

    std::string join() {
        std::string text;
        text.reserve(total_);
        for (Chunk& chunk : chunks_) {
            text.append(chunk.bytes.get(), chunk.used);
            chunk.bytes.reset();
        }
        return text;
    }

  private:
    struct Chunk {
        std::unique_ptr<char[]> bytes; // NOLINT(*-avoid-c-arrays): a buffer that is not filled first
        std::size_t size;
        std::size_t used;
    };

    void addChunk() {
        const std::size_t size = std::clamp(total_, firstChunk, largestChunk);
#ifdef F_SETPIPE_SZ
        // A program that writes much is stopped less often by a larger pipe. Where it is refused, nothing is
        // lost.
        if (size == largestChunk && !enlarged_) {
            ::fcntl(pipe_, F_SETPIPE_SZ, static_cast<int>(largestChunk));
            enlarged_ = true;
        }
#endif
        chunks_.push_back({std::unique_ptr<char[]>(new char[size]), size, 0}); // NOLINT(*-avoid-c-arrays)
    }

    int pipe_;
    std::vector<Chunk> chunks_;
    std::size_t total_ = 0;
    [[maybe_unused]] bool enlarged_ = false;
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
            throw std::system_error(errno, std::generic_category(), "cannot wait for a program's output");
        }
        for (std::size_t index = 0; index < streams.size(); ++index)
            if (waited[index].revents != 0)
                streams[index].read();
    }
    // The one that is left needs no watching.
    for (Stream& stream : streams)
        while (stream.open())
            stream.read();
    return {streams[0].join(), streams[1].join()};
}

} // namespace kinovane
