// SPDX-License-Identifier: Apache-2.0

// The standard input of a program, also while other threads open and close files.

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <map>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace {

void require(bool succeeded) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category());
}

TEST(StandardInput, IsInheritedUnlessCloseOnExec) {
    const TemporaryDirectory directory;
    const std::string story = "A lamp for the late ferry\n";
    const std::string file = directory.write("story", story).string();
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
        int flags; ///< Flags for opening the file as descriptor 0; negative if it is closed.
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an open file", {"copy"}, O_RDONLY, story},
        {"the kind of an open file", {"input-kind"}, O_RDONLY, "file"},
        {"a file that is close-on-exec", {"input-kind"}, O_RDONLY | O_CLOEXEC, "null"},
        {"a close-on-exec file cannot be read", {"copy", "out", "end"}, O_RDONLY | O_CLOEXEC, "end"},
        {"a closed descriptor", {"input-kind"}, -1, "null"},
        {"a closed descriptor reads as empty", {"copy", "out", "end"}, -1, "end"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      require(::close(0) == 0);
                      if (row.flags >= 0)
                          require(::open(file.c_str(), row.flags) == 0);
                      return outputOfTestProgram(row.arguments);
                  }),
                  row.expected);
    }
}

TEST(StandardInput, MayBeAPipe) {
    EXPECT_EQ(inForkedProcess([] {
                  std::array<int, 2> ends{};
                  require(::pipe(ends.data()) == 0 && ::dup2(ends[0], 0) == 0);
                  require(::write(ends[1], "words", 5) == 5 && ::close(ends[1]) == 0);
                  return outputOfTestProgram({"copy"});
              }),
              "words");
}

// The application's own descriptor 0 stays as it is.
TEST(StandardInput, StaysUsableInTheApplication) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("story", "words").string();
    EXPECT_EQ(inForkedProcess([&] {
                  require(::close(0) == 0 && ::open(file.c_str(), O_RDONLY) == 0);
                  (void)outputOfTestProgram({});
                  std::array<char, 16> text{};
                  const auto count = ::read(0, text.data(), text.size());
                  require(count >= 0 && ::fcntl(0, F_GETFD) == 0);
                  return std::string(text.data(), static_cast<std::size_t>(count));
              }),
              "words");
}

/// Opens and closes files on a thread of its own, each as the lowest free descriptor. Every second one is
/// inheritable. The others are close-on-exec, and several, so that the same one does not follow itself.
class OpeningThread {
  public:
    explicit OpeningThread(const TemporaryDirectory& directory)
        : open_(directory.write("open", "open").string()) {
        for (int file = 0; file < 8; ++file)
            secrets_.push_back(directory.write("secret " + std::to_string(file), "secret").string());
        thread_ = std::thread([this] { work(); });
    }
    OpeningThread(const OpeningThread&) = delete;
    OpeningThread& operator=(const OpeningThread&) = delete;
    ~OpeningThread() {
        stopped_ = true;
        thread_.join();
    }

    /// How often a close-on-exec file was descriptor 0.
    int secretsAtStandardInput() const { return secretsAtStandardInput_; }

  private:
    void work() {
        for (std::size_t round = 0; !stopped_; ++round) {
            const int secret = ::open(secrets_[round % secrets_.size()].c_str(), O_RDONLY | O_CLOEXEC);
            if (secret == STDIN_FILENO)
                ++secretsAtStandardInput_;
            ::close(secret);
            ::close(::open(open_.c_str(), O_RDONLY)); // NOLINT(android-cloexec-open): it may be inherited.
        }
    }

    std::string open_;
    std::vector<std::string> secrets_;
    std::atomic<bool> stopped_ = false;
    std::atomic<int> secretsAtStandardInput_ = 0;
    std::thread thread_;
};

/// Lists the texts that are not allowed, with their counts.
std::string unexpected(const std::map<std::string, int>& counts, const std::vector<std::string>& allowed) {
    std::string others;
    for (const auto& [text, count] : counts)
        if (std::find(allowed.begin(), allowed.end(), text) == allowed.end())
            others += std::to_string(count) + " times \"" + text + "\"; ";
    return others;
}

// While descriptor 0 is closed, a file that another thread opens gets this number.
TEST(StandardInput, IsNeverACloseOnExecFile) {
    const TemporaryDirectory directory;
    EXPECT_EQ(inForkedProcess([&] {
                  require(::close(0) == 0);
                  const OpeningThread other(directory);
                  std::map<std::string, int> counts;
                  for (int run = 0; run < 300 || other.secretsAtStandardInput() < 300; ++run)
                      ++counts[outputOfTestProgram({"copy"})];
                  return unexpected(counts, {"", "open"});
              }),
              "");
}

// Each run opens pipes, one of which could get the number 0.
TEST(StandardInput, IsNeverAPipeOfAnotherRun) {
    EXPECT_EQ(inForkedProcess([&] {
                  require(::close(0) == 0);
                  std::map<std::string, int> counts;
                  for (int round = 0; round < 15; ++round) {
                      std::vector<Task<ProcessResult>> tasks;
                      for (int run = 0; run < 64; ++run)
                          tasks.push_back(startTestProgram({"input-kind"}));
                      for (Task<ProcessResult>& task : tasks)
                          ++counts[outcomeOf(std::move(task))];
                  }
                  return unexpected(counts, {"null"});
              }),
              "");
}

} // namespace

} // namespace kinovane::test
