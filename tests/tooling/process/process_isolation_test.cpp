// SPDX-License-Identifier: Apache-2.0

// What an application has set up for itself and a program must not notice.

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

TEST(ProcessIsolation, DescriptorsOfTheApplication) {
    struct Row {
        const char* sentence;
        void (*spoil)();
    };
    const std::vector<Row> rows{
        {"as it is", [] {}},
        {"many open, to be inherited",
         [] {
             for (int count = 0; count < 200; ++count)
                 require(::open("/dev/null", O_RDONLY) >= 0);
         }},
        {"one with a large number", [] { require(::dup2(STDIN_FILENO, 1000) == 1000); }},
        {"one above a limit that was lowered afterwards",
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
        {"the first and the last closed",
         [] {
             ::close(0);
             ::close(2);
         }},
        {"all three closed",
         [] {
             for (const int descriptor : {0, 1, 2})
                 ::close(descriptor);
         }},
        {"all three to be closed in children",
         [] {
             for (const int descriptor : {0, 1, 2})
                 require(::fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      row.spoil();
                      // The descriptors first, then that all three can be used.
                      const ProcessResult result = startTestProgram({"err", "errors", "descriptors"}).get();
                      return result.stdout + result.stderr;
                  }),
                  "0\n1\n2\nerrors");
    }
}

TEST(ProcessIsolation, SignalsOfTheApplication) {
    struct Row {
        const char* sentence;
        void (*spoil)();
    };
    const std::vector<Row> rows{
        {"as it is", [] {}},
        {"broken pipes ignored", [] { setAction(SIGPIPE, SIG_IGN); }},
        {"interruptions ignored",
         [] {
             for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR2, SIGTSTP, SIGRTMIN, SIGRTMAX})
                 setAction(signal, SIG_IGN);
         }},
        {"a handler for the end of children", [] { setAction(SIGCHLD, doNothing); }},
        {"a handler that interrupts whatever waits",
         [] {
             setAction(SIGCHLD, doNothing, SA_NODEFER);
             setAction(SIGUSR1, doNothing);
         }},
        {"all blocked",
         [] {
             sigset_t all;
             ::sigfillset(&all);
             require(::sigprocmask(SIG_BLOCK, &all, nullptr) == 0);
         }},
        {"one blocked and ignored",
         [] {
             sigset_t one;
             ::sigemptyset(&one);
             ::sigaddset(&one, SIGUSR1);
             require(::sigprocmask(SIG_BLOCK, &one, nullptr) == 0);
             setAction(SIGUSR1, SIG_IGN);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      row.spoil();
                      return outputOfTestProgram({"signals"});
                  }),
                  "blocked:\nignored:\n");
    }
}

TEST(ProcessIsolation, SignalsOfTheApplicationStay) {
    EXPECT_EQ(inForkedProcess([] {
                  setAction(SIGPIPE, SIG_IGN);
                  setAction(SIGCHLD, doNothing);
                  (void)outputOfTestProgram({});
                  struct sigaction broken{};
                  struct sigaction child{};
                  require(::sigaction(SIGPIPE, nullptr, &broken) == 0);
                  require(::sigaction(SIGCHLD, nullptr, &child) == 0);
                  return std::string(broken.sa_handler == SIG_IGN && child.sa_handler == doNothing
                                         ? "as they were"
                                         : "changed");
              }),
              "as they were");
}

// A blocked or ignored signal would not end the program.
TEST(ProcessIsolation, SignalsEndAProgramAsTheyShould) {
    EXPECT_EQ(inForkedProcess([] {
                  setAction(SIGTERM, SIG_IGN);
                  sigset_t one;
                  ::sigemptyset(&one);
                  ::sigaddset(&one, SIGTERM);
                  require(::sigprocmask(SIG_BLOCK, &one, nullptr) == 0);
                  return outputOfTestProgram({"signal", "15"});
              }),
              "Film command exited 15.");
}

} // namespace

} // namespace kinovane::test
