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

/// The calls to the system that can be made to fail, most of them under the system's own names.
enum class Call : std::size_t {
    open,
    openat,
    openat2,
    create, ///< openat, where it makes a file.
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
    pipe2,
    fcntl,
    poll,
    waitpid,
    spawnSetup, ///< What prepares the attributes and file actions of a start.
    posixSpawn,
    pthreadCreate,
};

inline constexpr std::array<std::string_view, 29> callNames{
    "open",     "openat",   "openat2",     "create",      "read",           "write",    "close", "fstat",
    "fstatat",  "fstatfs",  "stat",        "lstat",       "access",         "fchmod",   "fsync", "renameat",
    "unlinkat", "readlink", "readlinkat",  "mkdir",       "getcwd",         "realpath", "pipe2", "fcntl",
    "poll",     "waitpid",  "spawn setup", "posix_spawn", "pthread_create",
};
static_assert(static_cast<std::size_t>(Call::pthreadCreate) + 1 == callNames.size());

/// How often each call was made.
using Census = std::array<std::size_t, callNames.size()>;

/// One call that goes wrong.
struct Fault {
    enum class Manner {
        refused,      ///< The call is not made.
        reportedLate, ///< The call is made, and reported as failed: a descriptor is closed all the same.
        shortened,    ///< One byte is read or written.
    };

    Call call{};
    std::size_t index = 0; ///< From 0, among the calls of this kind on all threads.
    Manner manner = Manner::refused;
    int error = 0;
    std::size_t times = 1; ///< So many calls in a row.

    /// Whether a program has to get along with it as if nothing had happened.
    bool harmless() const;
    std::string description() const;
};

inline constexpr std::size_t forever = std::numeric_limits<std::size_t>::max();

/// While it lives, counts the calls of this process and lets those of its faults go wrong. One at a time.
class FaultPlan {
  public:
    explicit FaultPlan(std::vector<Fault> faults = {});
    FaultPlan(const FaultPlan&) = delete;
    FaultPlan& operator=(const FaultPlan&) = delete;
    ~FaultPlan();

    Census census() const;

    /// Whether any of the faults came to pass.
    bool struck() const { return struck_; }

    /// Counts a call and tells what is to go wrong with it. Leaves errno alone.
    static std::optional<Fault> atCall(Call call) noexcept;

  private:
    std::optional<Fault> noteCall(Call call) noexcept;

    const std::vector<Fault> faults_;
    std::array<std::atomic<std::size_t>, callNames.size()> counts_{};
    std::atomic<bool> struck_ = false;
};

} // namespace kinovane::test
