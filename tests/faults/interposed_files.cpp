// SPDX-License-Identifier: Apache-2.0

// Definitions of the C library's file functions, which KinovaneCore and the C++ library call instead of the
// original ones.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "faults/interposed.hpp"

using kinovane::test::Call;
using kinovane::test::callOrFail;
using kinovane::test::Fault;
using kinovane::test::FaultPlan;
using kinovane::test::nextOf;
using kinovane::test::nextWithOffsets;

namespace {

/// Reads or writes only one byte for a fault of the kind `shortened`.
template <class Transfer>
ssize_t transfer(Call call, std::size_t size, Transfer forward) {
    const std::optional<Fault> fault = FaultPlan::atCall(call);
    if (!fault)
        return forward(size);
    if (fault->kind == Fault::Kind::shortened)
        return forward(std::min<std::size_t>(size, 1));
    errno = fault->error;
    return -1;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    static const auto next = nextWithOffsets<decltype(::open)>("open");
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return callOrFail(Call::open, [&] { return next(path, flags, mode); });
}

int openat(int directory, const char* path, int flags, ...) {
    static const auto next = nextWithOffsets<decltype(::openat)>("openat");
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const Call call = (flags & O_CREAT) != 0 ? Call::create : Call::openat;
    return callOrFail(call, [&] { return next(directory, path, flags, mode); });
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
    static const auto next = nextOf<decltype(::read)>("read");
    return transfer(Call::read, size, [&](std::size_t part) { return next(descriptor, buffer, part); });
}

ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t offset) {
    static const auto next = nextWithOffsets<decltype(::pread)>("pread");
    return transfer(Call::read, size,
                    [&](std::size_t part) { return next(descriptor, buffer, part, offset); });
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    static const auto next = nextOf<decltype(::write)>("write");
    return transfer(Call::write, size, [&](std::size_t part) { return next(descriptor, bytes, part); });
}

int close(int descriptor) {
    static const auto next = nextOf<decltype(::close)>("close");
    return callOrFail(Call::close, [&] { return next(descriptor); });
}

int fstat(int descriptor, struct stat* status) noexcept {
    static const auto next = nextWithOffsets<decltype(::fstat)>("fstat");
    const std::optional<Fault> fault = FaultPlan::atCall(Call::fstat);
    if (fault && fault->kind != Fault::Kind::changed) {
        errno = fault->error;
        return -1;
    }
    const int result = next(descriptor, status);
    static std::atomic<int> changes = 0;
    if (fault && result == 0)
        status->st_mtim.tv_sec += ++changes;
    return result;
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept {
    static const auto next = nextWithOffsets<decltype(::fstatat)>("fstatat");
    return callOrFail(Call::fstatat, [&] { return next(directory, path, status, flags); });
}

int fstatfs(int descriptor, struct statfs* status) noexcept {
    static const auto next = nextWithOffsets<decltype(::fstatfs)>("fstatfs");
    return callOrFail(Call::fstatfs, [&] { return next(descriptor, status); });
}

int stat(const char* path, struct stat* status) noexcept {
    static const auto next = nextWithOffsets<int(const char*, struct stat*)>("stat");
    return callOrFail(Call::stat, [&] { return next(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    static const auto next = nextWithOffsets<decltype(::lstat)>("lstat");
    return callOrFail(Call::lstat, [&] { return next(path, status); });
}

int faccessat(int directory, const char* path, int rights, int flags) noexcept {
    static const auto next = nextOf<decltype(::faccessat)>("faccessat");
    return callOrFail(Call::faccessat, [&] { return next(directory, path, rights, flags); });
}

int fchmod(int descriptor, mode_t mode) noexcept {
    static const auto next = nextOf<decltype(::fchmod)>("fchmod");
    return callOrFail(Call::fchmod, [&] { return next(descriptor, mode); });
}

int fsync(int descriptor) {
    static const auto next = nextOf<decltype(::fsync)>("fsync");
    return callOrFail(Call::fsync, [&] { return next(descriptor); });
}

int renameat(int oldDirectory, const char* oldPath, int newDirectory, const char* newPath) noexcept {
    static const auto next = nextOf<decltype(::renameat)>("renameat");
    return callOrFail(Call::renameat, [&] { return next(oldDirectory, oldPath, newDirectory, newPath); });
}

int unlinkat(int directory, const char* path, int flags) noexcept {
    static const auto next = nextOf<decltype(::unlinkat)>("unlinkat");
    return callOrFail(Call::unlinkat, [&] { return next(directory, path, flags); });
}

ssize_t readlink(const char* path, char* target, std::size_t size) noexcept {
    static const auto next = nextOf<decltype(::readlink)>("readlink");
    return callOrFail(Call::readlink, [&] { return next(path, target, size); });
}

ssize_t readlinkat(int directory, const char* path, char* target, std::size_t size) noexcept {
    static const auto next = nextOf<decltype(::readlinkat)>("readlinkat");
    return callOrFail(Call::readlinkat, [&] { return next(directory, path, target, size); });
}

int mkdir(const char* path, mode_t mode) noexcept {
    static const auto next = nextOf<decltype(::mkdir)>("mkdir");
    return callOrFail(Call::mkdir, [&] { return next(path, mode); });
}

int getentropy(void* buffer, std::size_t size) {
    static const auto next = nextOf<decltype(::getentropy)>("getentropy");
    return callOrFail(Call::getentropy, [&] { return next(buffer, size); });
}

char* getcwd(char* buffer, std::size_t size) noexcept {
    static const auto next = nextOf<decltype(::getcwd)>("getcwd");
    return callOrFail(Call::getcwd, [&] { return next(buffer, size); }, nullptr);
}

char* realpath(const char* path, char* resolved) noexcept {
    static const auto next = nextOf<decltype(::realpath)>("realpath");
    return callOrFail(Call::realpath, [&] { return next(path, resolved); }, nullptr);
}

} // extern "C"
