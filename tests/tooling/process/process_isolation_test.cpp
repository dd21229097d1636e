// SPDX-License-Identifier: Apache-2.0

// Descriptors and signal settings of the application, which a program must not inherit.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace {

void require(bool succeeded) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category());
}

void setAction(int signal, void (*handler)(int), int flags = 0) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = flags;
    require(::sigaction(signal, &action, nullptr) == 0);
}

void doNothing(int /*signal*/) {}

TEST(ProcessIsolation, HidesDescriptorsOfTheApplication) {
    struct Row {
        const char* sentence;
        void (*change)();
    };
    const std::vector<Row> rows{
        {"unchanged", [] {}},
        {"many inheritable descriptors",
         [] {
             for (int count = 0; count < 200; ++count)
                 require(::open("/dev/null", O_RDONLY) >= 0);
         }},
        {"a descriptor with a large number", [] { require(::dup2(STDIN_FILENO, 1000) == 1000); }},
        {"a descriptor above a limit that was lowered afterwards",
         [] {
             require(::dup2(STDIN_FILENO, 1000) == 1000);
             rlimit limit{};
             require(::getrlimit(RLIMIT_NOFILE, &limit) == 0);
             limit.rlim_cur = 256;
             require(::setrlimit(RLIMIT_NOFILE, &limit) == 0);
         }},
        {"standard input closed", [] { ::close(0); }},
        {"standard output closed", [] { ::close(1); }},
        {"standard error closed", [] { ::close(2); }},
        {"standard input and standard error closed",
         [] {
             ::close(0);
             ::close(2);
         }},
        {"all three closed",
         [] {
             for (const int descriptor : {0, 1, 2})
                 ::close(descriptor);
         }},
        {"all three close-on-exec",
         [] {
             for (const int descriptor : {0, 1, 2})
                 require(::fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      row.change();
                      // Lists the descriptors, and writes to both output streams.
                      const ProcessResult result = startTestProgram({"err", "errors", "descriptors"}).get();
                      return result.stdout + result.stderr;
                  }),
                  "0\n1\n2\nerrors");
    }
}

TEST(ProcessIsolation, ResetsSignals) {
    struct Row {
        const char* sentence;
        void (*change)();
    };
    const std::vector<Row> rows{
        {"unchanged", [] {}},
        {"SIGPIPE ignored", [] { setAction(SIGPIPE, SIG_IGN); }},
        {"several signals ignored",
         [] {
             for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR2, SIGTSTP, SIGRTMIN, SIGRTMAX})
                 setAction(signal, SIG_IGN);
         }},
        {"a handler for SIGCHLD", [] { setAction(SIGCHLD, doNothing); }},
        {"handlers that interrupt system calls",
         [] {
             setAction(SIGCHLD, doNothing, SA_NODEFER);
             setAction(SIGUSR1, doNothing);
         }},
        {"all blocked",
         [] {
             sigset_t all;
             sigfillset(&all);
             require(::sigprocmask(SIG_BLOCK, &all, nullptr) == 0);
         }},
        {"one blocked and ignored",
         [] {
             sigset_t one;
             sigemptyset(&one);
             sigaddset(&one, SIGUSR1);
             require(::sigprocmask(SIG_BLOCK, &one, nullptr) == 0);
             setAction(SIGUSR1, SIG_IGN);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      row.change();
                      return outputOfTestProgram({"signals"});
                  }),
                  "blocked:\nignored:\n");
    }
}

TEST(ProcessIsolation, LeavesTheApplicationsSignalsUnchanged) {
    EXPECT_EQ(inForkedProcess([] {
                  setAction(SIGPIPE, SIG_IGN);
                  setAction(SIGCHLD, doNothing);
                  (void)outputOfTestProgram({});
                  struct sigaction broken{};
                  struct sigaction child{};
                  require(::sigaction(SIGPIPE, nullptr, &broken) == 0);
                  require(::sigaction(SIGCHLD, nullptr, &child) == 0);
                  return std::string(broken.sa_handler == SIG_IGN && child.sa_handler == doNothing
                                         ? "unchanged"
                                         : "changed");
              }),
              "unchanged");
}

// A blocked or ignored signal would not end the program.
TEST(ProcessIsolation, LetsSignalsEndAProgram) {
    EXPECT_EQ(inForkedProcess([] {
                  setAction(SIGTERM, SIG_IGN);
                  sigset_t one;
                  sigemptyset(&one);
                  sigaddset(&one, SIGTERM);
                  require(::sigprocmask(SIG_BLOCK, &one, nullptr) == 0);
                  return outputOfTestProgram({"signal", "15"});
              }),
              "Film command exited 15.");
}

} // namespace

} // namespace kinovane::test
