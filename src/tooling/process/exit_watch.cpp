// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/exit_watch.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/files/retry_interrupted.hpp"
#include "tooling/process/output_pipes.hpp"

namespace kinovane {

WakePipe::WakePipe() {
    Pipe pipe = openPipeAboveStandard();
    for (const int end : {pipe.readEnd.get(), pipe.writeEnd.get()})
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    readEnd_ = std::move(pipe.readEnd);
    writeEnd_ = std::move(pipe.writeEnd);
}

void WakePipe::wake() noexcept {
    const int error = errno;
    const char byte = 0;
    // When the pipe is full, the read end is readable already.
    (void)retryInterrupted([&] { return ::write(writeEnd_.get(), &byte, 1); });
    errno = error;
}

void WakePipe::clear() noexcept {
    std::array<char, 64> bytes{};
    while (retryInterrupted([&] { return ::read(readEnd_.get(), bytes.data(), bytes.size()); }) > 0) {
    }
}

ExitWatch::ExitWatch(WakePipe& wake) : wake_(wake), thread_([this] { run(); }) {}

ExitWatch::~ExitWatch() {
    name(-1); // Without effect when a child was named.
    wait();
}

void ExitWatch::wait() {
    if (thread_.joinable())
        thread_.join();
}

void ExitWatch::watch(pid_t child) { name(child); }

void ExitWatch::name(pid_t child) noexcept {
    {
        const std::lock_guard lock(mutex_);
        if (child_ == 0)
            child_ = child;
    }
    named_.notify_one();
}

void ExitWatch::run() noexcept {
    pid_t child = 0;
    {
        std::unique_lock lock(mutex_);
        named_.wait(lock, [&] { return child_ != 0; });
        child = child_;
    }
    if (child < 0)
        return;
    // An error other than EINTR means that the application has taken the exit status: there is nothing left
    // to wait for, nor to signal.
    siginfo_t info{};
    retryInterrupted([&] { return ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT); });
    ended_ = true;
    wake_.wake();
}

} // namespace kinovane
