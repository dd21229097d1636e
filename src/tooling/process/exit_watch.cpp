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
    (void)isLost(child, 0);
    ended_ = true;
    wake_.wake();
}

pid_t ExitWatch::child() const noexcept {
    const std::lock_guard lock(mutex_);
    return child_;
}

bool ExitWatch::lost() noexcept { return isLost(child(), WNOHANG); }

bool ExitWatch::signalGroup(int signal) noexcept {
    if (lost())
        return false;
    ::kill(-child(), signal);
    return true;
}

bool ExitWatch::isLost(pid_t child, int options) noexcept {
    // The identifier of a lost child may meanwhile belong to another child of the application.
    if (lost_)
        return true;
    // An error other than EINTR means that there is no such child any more.
    siginfo_t info{};
    if (retryInterrupted([&] {
            return ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT | options);
        }) < 0)
        lost_ = true;
    return lost_;
}

} // namespace kinovane
