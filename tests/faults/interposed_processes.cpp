// SPDX-License-Identifier: Apache-2.0

// The C library's functions for processes, pipes and threads, as those for files. Not among them: sigaction,
// which sanitizers use for themselves and which fails for a wrong signal number only.

#include <atomic>
#include <cstdarg>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "faults/interposed.hpp"

using kinovane::test::Call;
using kinovane::test::callOrError;
using kinovane::test::callOrFail;
using kinovane::test::nextOf;

extern "C" {

// Like the C library's own, it takes as many values as any call can have, whether they were given or not.
[[gnu::no_sanitize_address]] long syscall(long number, ...) noexcept {
    // Not initialised like a local variable: libc++ calls this function while it guards such an
    // initialisation.
    static constinit std::atomic<decltype(::syscall)*> found = nullptr;
    if (found == nullptr)
        found = nextOf<decltype(::syscall)>("syscall");
    decltype(::syscall)* const next = found;
    std::va_list rest;
    va_start(rest, number);
    long values[6]; // NOLINT(*-avoid-c-arrays)
    for (long& value : values)
        value = va_arg(rest, long);
    va_end(rest);
    const auto forward = [&] {
        return next(number, values[0], values[1], values[2], values[3], values[4], values[5]);
    };
    // The C++ library waits for its locks with this function; only files are of interest.
    return number == SYS_openat2 ? callOrFail(Call::openat2, forward) : forward();
}

int pipe2(int* ends, int flags) noexcept {
    static const auto next = nextOf<decltype(::pipe2)>("pipe2");
    return callOrFail(Call::pipe2, [&] { return next(ends, flags); });
}

int fcntl(int descriptor, int command, ...) {
    static const auto next = nextOf<decltype(::fcntl)>("fcntl");
    std::va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return callOrFail(Call::fcntl, [&] { return next(descriptor, command, argument); });
}

int poll(pollfd* waited, nfds_t count, int timeout) {
    static const auto next = nextOf<decltype(::poll)>("poll");
    return callOrFail(Call::poll, [&] { return next(waited, count, timeout); });
}

pid_t waitpid(pid_t process, int* status, int options) {
    static const auto next = nextOf<decltype(::waitpid)>("waitpid");
    return callOrFail(Call::waitpid, [&] { return next(process, status, options); });
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment) {
    static const auto next = nextOf<decltype(::posix_spawn)>("posix_spawn");
    return callOrError(Call::posixSpawn,
                       [&] { return next(process, path, actions, attributes, arguments, environment); });
}

int posix_spawn_file_actions_init(posix_spawn_file_actions_t* actions) noexcept {
    static const auto next =
        nextOf<decltype(::posix_spawn_file_actions_init)>("posix_spawn_file_actions_init");
    return callOrError(Call::spawnSetup, [&] { return next(actions); });
}

int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from, int to) noexcept {
    static const auto next =
        nextOf<decltype(::posix_spawn_file_actions_adddup2)>("posix_spawn_file_actions_adddup2");
    return callOrError(Call::spawnSetup, [&] { return next(actions, from, to); });
}

int posix_spawn_file_actions_addopen(posix_spawn_file_actions_t* actions, int descriptor, const char* path,
                                     int flags, mode_t mode) noexcept {
    static const auto next =
        nextOf<decltype(::posix_spawn_file_actions_addopen)>("posix_spawn_file_actions_addopen");
    return callOrError(Call::spawnSetup, [&] { return next(actions, descriptor, path, flags, mode); });
}

int posix_spawn_file_actions_addclosefrom_np(posix_spawn_file_actions_t* actions, int first) noexcept {
    static const auto next = nextOf<decltype(::posix_spawn_file_actions_addclosefrom_np)>(
        "posix_spawn_file_actions_addclosefrom_np");
    return callOrError(Call::spawnSetup, [&] { return next(actions, first); });
}

int posix_spawnattr_init(posix_spawnattr_t* attributes) noexcept {
    static const auto next = nextOf<decltype(::posix_spawnattr_init)>("posix_spawnattr_init");
    return callOrError(Call::spawnSetup, [&] { return next(attributes); });
}

int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags) noexcept {
    static const auto next = nextOf<decltype(::posix_spawnattr_setflags)>("posix_spawnattr_setflags");
    return callOrError(Call::spawnSetup, [&] { return next(attributes, flags); });
}

int posix_spawnattr_setsigmask(posix_spawnattr_t* attributes, const sigset_t* mask) noexcept {
    static const auto next = nextOf<decltype(::posix_spawnattr_setsigmask)>("posix_spawnattr_setsigmask");
    return callOrError(Call::spawnSetup, [&] { return next(attributes, mask); });
}

int posix_spawnattr_setsigdefault(posix_spawnattr_t* attributes, const sigset_t* signals) noexcept {
    static const auto next =
        nextOf<decltype(::posix_spawnattr_setsigdefault)>("posix_spawnattr_setsigdefault");
    return callOrError(Call::spawnSetup, [&] { return next(attributes, signals); });
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) noexcept {
    static const auto next = nextOf<decltype(::pthread_create)>("pthread_create");
    return callOrError(Call::pthreadCreate, [&] { return next(thread, attributes, start, argument); });
}

} // extern "C"
