// SPDX-License-Identifier: Apache-2.0

// Faults reach the calls that they name. Otherwise a call that the C library renamed would no longer be
// tested.

#include "faults/fault_plan.hpp"

#include <array>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <linux/openat2.h>
#include <poll.h>
#include <spawn.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "faults/fault_table.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

struct CallRow {
    const char* sentence;
    Call call;
    std::function<int()> attempt; ///< Makes the call; gives the error.
};

template <class Attempt>
std::function<int()> errnoAfter(Attempt attempt) {
    return [attempt] { return attempt() < 0 ? errno : 0; };
}

/// For functions of std::filesystem.
template <class Attempt>
std::function<int()> codeOf(Attempt attempt) {
    return [attempt] {
        std::error_code error;
        attempt(error);
        return error.value();
    };
}

int startThread() {
    try {
        std::thread([] {}).join();
        return 0;
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

std::vector<CallRow> fileRows() {
    static struct stat status{};
    static struct statfs fileSystem{};
    static std::array<char, 8> buffer{};
    return {
        {"open", Call::open, errnoAfter([] { return ::open("/", O_RDONLY); })},
        {"openat", Call::openat, errnoAfter([] { return ::openat(AT_FDCWD, "/", O_RDONLY); })},
        {"openat with O_CREAT", Call::create,
         errnoAfter([] { return ::openat(AT_FDCWD, "/", O_CREAT | O_WRONLY, 0600); })},
        {"openat2", Call::openat2, errnoAfter([] {
             open_how how{};
             return ::syscall(SYS_openat2, AT_FDCWD, "/", &how, sizeof how);
         })},
        {"read", Call::read, errnoAfter([] { return ::read(-1, buffer.data(), buffer.size()); })},
        {"pread", Call::read, errnoAfter([] { return ::pread(-1, buffer.data(), buffer.size(), 0); })},
        {"write", Call::write, errnoAfter([] { return ::write(-1, buffer.data(), buffer.size()); })},
        {"close", Call::close, errnoAfter([] { return ::close(-1); })},
        {"fstat", Call::fstat, errnoAfter([] { return ::fstat(0, &status); })},
        {"fstatat", Call::fstatat, errnoAfter([] { return ::fstatat(AT_FDCWD, "/", &status, 0); })},
        {"fstatfs", Call::fstatfs, errnoAfter([] { return ::fstatfs(-1, &fileSystem); })},
        {"stat", Call::stat, errnoAfter([] { return ::stat("/", &status); })},
        {"faccessat", Call::faccessat,
         errnoAfter([] { return ::faccessat(AT_FDCWD, "/", X_OK, AT_EACCESS); })},
        {"getentropy", Call::getentropy,
         errnoAfter([] { return ::getentropy(buffer.data(), buffer.size()); })},
        {"fchmod", Call::fchmod, errnoAfter([] { return ::fchmod(-1, 0600); })},
        {"fsync", Call::fsync, errnoAfter([] { return ::fsync(-1); })},
        {"renameat", Call::renameat, errnoAfter([] { return ::renameat(AT_FDCWD, "", AT_FDCWD, ""); })},
        {"unlinkat", Call::unlinkat, errnoAfter([] { return ::unlinkat(AT_FDCWD, "", 0); })},
        {"readlinkat", Call::readlinkat,
         errnoAfter([] { return ::readlinkat(AT_FDCWD, "/", buffer.data(), buffer.size()); })},
    };
}

std::vector<CallRow> libraryRows() {
    return {
        {"stat by the C++ library", Call::stat, codeOf([](auto& error) { (void)fs::status("/", error); })},
        {"lstat by the C++ library", Call::lstat,
         codeOf([](auto& error) { (void)fs::symlink_status("/", error); })},
        {"mkdir by the C++ library", Call::mkdir,
         codeOf([](auto& error) { fs::create_directory("/kinovane/none", error); })},
        {"readlink by the C++ library", Call::readlink,
         codeOf([](auto& error) { (void)fs::read_symlink("/proc/self", error); })},
        {"getcwd by the C++ library", Call::getcwd,
         codeOf([](auto& error) { (void)fs::current_path(error); })},
        {"realpath by the C++ library", Call::realpath,
         codeOf([](auto& error) { (void)fs::canonical("/", error); })},
        {"pthread_create by the C++ library", Call::pthreadCreate, startThread},
    };
}

std::vector<CallRow> processRows() {
    static std::array<int, 2> ends{};
    static posix_spawn_file_actions_t actions{};
    static posix_spawnattr_t attributes{};
    static sigset_t signals{};
    return {
        {"pipe2", Call::pipe2, errnoAfter([] { return ::pipe2(ends.data(), -1); })},
        {"fcntl", Call::fcntl, errnoAfter([] { return ::fcntl(-1, F_GETFD); })},
        {"poll", Call::poll, errnoAfter([] { return ::poll(nullptr, 0, 0); })},
        {"waitpid", Call::waitpid, errnoAfter([] { return ::waitpid(-1, nullptr, WNOHANG); })},
        {"posix_spawn", Call::posixSpawn,
         [] {
             std::array<char*, 1> none{};
             return ::posix_spawn(nullptr, "/", nullptr, nullptr, none.data(), none.data());
         }},
        {"file actions", Call::spawnSetup, [] { return ::posix_spawn_file_actions_init(&actions); }},
        {"dup2", Call::spawnSetup, [] { return ::posix_spawn_file_actions_adddup2(&actions, 0, 0); }},
        {"open in the child", Call::spawnSetup,
         [] { return ::posix_spawn_file_actions_addopen(&actions, 0, "/", 0, 0); }},
        {"closefrom", Call::spawnSetup,
         [] { return ::posix_spawn_file_actions_addclosefrom_np(&actions, 3); }},
        {"attributes", Call::spawnSetup, [] { return ::posix_spawnattr_init(&attributes); }},
        {"flags", Call::spawnSetup, [] { return ::posix_spawnattr_setflags(&attributes, 0); }},
        {"mask", Call::spawnSetup, [] { return ::posix_spawnattr_setsigmask(&attributes, &signals); }},
        {"dispositions", Call::spawnSetup,
         [] { return ::posix_spawnattr_setsigdefault(&attributes, &signals); }},
    };
}

TEST(FaultPlan, ReachesEveryCall) {
    std::set<Call> reached;
    for (const std::vector<CallRow>& rows : {fileRows(), libraryRows(), processRows()})
        for (const CallRow& row : rows) {
            SCOPED_TRACE(row.sentence);
            int error = 0;
            {
                // An error that none of these calls really returns.
                const FaultPlan plan({{row.call, 0, Fault::Kind::refused, EXFULL}});
                error = row.attempt();
                EXPECT_TRUE(plan.happened());
                EXPECT_EQ(plan.counts()[static_cast<std::size_t>(row.call)], 1U);
            }
            EXPECT_EQ(error, EXFULL);
            reached.insert(row.call);
        }
    EXPECT_EQ(reached.size(), callNames.size());
    EXPECT_EQ(faultTable().size(), callNames.size());
}

TEST(FaultPlan, AffectsOnlyTheCallsThatItNames) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    std::string outcome;
    std::array<char, 4> buffer{};
    {
        const FaultPlan plan({{Call::write, 1, Fault::Kind::refused, ENOSPC, 2},
                              {Call::write, 4, Fault::Kind::shortened, 0, forever},
                              {Call::close, 0, Fault::Kind::reportedLate, EIO}});
        for (int time = 0; time < 6; ++time)
            outcome += std::to_string(::write(ends[1], "four", 4)) + " ";
        outcome += std::to_string(::close(ends[1]));
        EXPECT_EQ(errno, EIO);
    }
    EXPECT_EQ(outcome, "4 -1 -1 4 1 1 -1");
    EXPECT_EQ(::fcntl(ends[1], F_GETFD), -1) << "not closed";
    EXPECT_EQ(::read(ends[0], buffer.data(), buffer.size()), 4);
    EXPECT_EQ(::close(ends[0]), 0);
}

} // namespace

} // namespace kinovane::test
