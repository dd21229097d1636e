// SPDX-License-Identifier: Apache-2.0

#include "session/interruption.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace kinovane::tool {

namespace {

constexpr std::array<int, 3> signals{SIGINT, SIGTERM, SIGHUP};
constexpr int endOfListening = 0;

// What the signal handler uses: nothing else is safe there.
std::atomic<int> received = 0; // NOLINT(*-avoid-non-const-global-variables)
std::atomic<int> wakeEnd = -1; // NOLINT(*-avoid-non-const-global-variables)
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onSignal(int signal) {
    int none = 0;
    if (!received.compare_exchange_strong(none, signal))
        ::_exit(128 + signal);
    const int error = errno;
    const char byte = 1;
    (void)!::write(wakeEnd, &byte, 1);
    errno = error;
}

void setHandler(void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler; // NOLINT(*-union-access)
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (const int signal : signals) {
        struct sigaction old{};
        // A signal that is ignored, as under nohup, stays so.
        if (::sigaction(signal, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) // NOLINT(*-union-access)
            ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

Interruption::Interruption() {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : pipe)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    readEnd_ = pipe[0];
    wakeEnd = pipe[1];
    listener_ = std::thread([this] {
        char byte = endOfListening;
        while (::read(readEnd_, &byte, 1) < 0 && errno == EINTR) {
        }
        if (byte != endOfListening)
            source_.requestStop();
    });
    setHandler(onSignal);
}

Interruption::~Interruption() {
    setHandler(SIG_DFL);
    const char byte = endOfListening;
    (void)!::write(wakeEnd, &byte, 1);
    listener_.join();
    ::close(wakeEnd.exchange(-1));
    ::close(readEnd_);
}

int Interruption::signal() noexcept { return received; }

} // namespace kinovane::tool
