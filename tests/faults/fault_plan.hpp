// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::test {

/// The system and library calls that can be made to fail.
enum class Call : std::size_t {
    open,
    openat,
    openat2,
    create, ///< openat with O_CREAT.
    read,
    write,
    close,
    fstat,
    fstatat,
    fstatfs,
    stat,
    lstat,
    faccessat,
    fchmod,
    fsync,
    renameat,
    unlinkat,
    readlink,
    readlinkat,
    mkdir,
    getcwd,
    realpath,
    getentropy,
    pipe2,
    fcntl,
    poll,
    waitpid,
    spawnSetup, ///< The functions that prepare attributes and file actions for posix_spawn.
    posixSpawn,
    pthreadCreate,
};

inline constexpr std::array<std::string_view, 30> callNames{
    "open",       "openat", "openat2", "create",      "read",        "write",
    "close",      "fstat",  "fstatat", "fstatfs",     "stat",        "lstat",
    "access",     "fchmod", "fsync",   "renameat",    "unlinkat",    "readlink",
    "readlinkat", "mkdir",  "getcwd",  "realpath",    "getentropy",  "pipe2",
    "fcntl",      "poll",   "waitpid", "spawn setup", "posix_spawn", "pthread_create",
};
static_assert(static_cast<std::size_t>(Call::pthreadCreate) + 1 == callNames.size());

/// How often each call was made.
using CallCounts = std::array<std::size_t, callNames.size()>;

/// One call that fails.
struct Fault {
    enum class Kind {
        refused,      ///< The call is not made and returns the error.
        reportedLate, ///< The call is made but returns the error: a descriptor is closed nevertheless.
        shortened,    ///< Only one byte is read or written.
        changed,      ///< fstat reports another modification time each time.
    };

    Call call{};
    std::size_t index = 0; ///< From 0, among the calls of this kind on all threads.
    Kind kind = Kind::refused;
    int error = 0;
    std::size_t times = 1; ///< How many consecutive calls fail.

    /// Whether the operation has to succeed nevertheless.
    bool harmless() const;
    std::string description() const;
};

inline constexpr std::size_t forever = std::numeric_limits<std::size_t>::max();

/// During its lifetime, counts the calls of this process and makes those of its faults fail. Only one may
/// exist at a time.
class FaultPlan {
  public:
    explicit FaultPlan(std::vector<Fault> faults = {});
    FaultPlan(const FaultPlan&) = delete;
    FaultPlan& operator=(const FaultPlan&) = delete;
    ~FaultPlan();

    CallCounts counts() const;

    /// Whether any of the faults happened.
    bool happened() const { return happened_; }

    /// Counts a call and returns its fault, if any. Does not change errno.
    static std::optional<Fault> atCall(Call call) noexcept;

  private:
    std::optional<Fault> noteCall(Call call) noexcept;

    const std::vector<Fault> faults_;
    std::array<std::atomic<std::size_t>, callNames.size()> counts_{};
    std::atomic<bool> happened_ = false;
};

} // namespace kinovane::test
