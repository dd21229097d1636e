// SPDX-License-Identifier: Apache-2.0

// What a program gets as its standard input, also while other threads open and close files.

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

TEST(StandardInput, IsInheritedWhenItMayBe) {
    const TemporaryDirectory place;
    const std::string story = "A lamp for the late ferry\n";
    const std::string file = place.write("story", story).string();
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
        int flags; ///< With which the story becomes descriptor 0; negative: it is closed.
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an open file", {"copy"}, O_RDONLY, story},
        {"the kind of an open file", {"input-kind"}, O_RDONLY, "file"},
        {"a file that is close-on-exec", {"input-kind"}, O_RDONLY | O_CLOEXEC, "null"},
        {"nothing can be read then", {"copy", "out", "end"}, O_RDONLY | O_CLOEXEC, "end"},
        {"a closed descriptor", {"input-kind"}, -1, "null"},
        {"nothing can be read from it, without an error", {"copy", "out", "end"}, -1, "end"},
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
TEST(StandardInput, OfTheApplicationStays) {
    const TemporaryDirectory place;
    const std::string file = place.write("story", "words").string();
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

/// Opens and closes files, one after the other, each for a moment under the lowest free number. Every other
/// one may be inherited; the others are many, so that the same one is not met again at once.
class OpeningThread {
  public:
    explicit OpeningThread(const TemporaryDirectory& place) : open_(place.write("open", "open").string()) {
        for (int file = 0; file < 8; ++file)
            secrets_.push_back(place.write("secret " + std::to_string(file), "secret").string());
        thread_ = std::thread([this] { work(); });
    }
    OpeningThread(const OpeningThread&) = delete;
    OpeningThread& operator=(const OpeningThread&) = delete;
    ~OpeningThread() {
        stopped_ = true;
        thread_.join();
    }

    /// How often a file that must not be inherited was standard input.
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

/// How often each text came.
std::string tally(const std::map<std::string, int>& counts, const std::vector<std::string>& allowed) {
    std::string others;
    for (const auto& [text, count] : counts)
        if (std::find(allowed.begin(), allowed.end(), text) == allowed.end())
            others += std::to_string(count) + " times \"" + text + "\"; ";
    return others;
}

// Without standard input, whatever another thread opens has its number for a moment.
TEST(StandardInput, IsNoFileThatMustNotBeInherited) {
    const TemporaryDirectory place;
    EXPECT_EQ(inForkedProcess([&] {
                  require(::close(0) == 0);
                  const OpeningThread other(place);
                  std::map<std::string, int> counts;
                  for (int run = 0; run < 300 || other.secretsAtStandardInput() < 300; ++run)
                      ++counts[outputOfTestProgram({"copy"})];
                  return tally(counts, {"", "open"});
              }),
              "");
}

// Each run opens pipes, and one of them may have the number 0 for a moment.
TEST(StandardInput, IsNoPipeOfAnotherRun) {
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
                  return tally(counts, {"null"});
              }),
              "");
}

} // namespace

} // namespace kinovane::test
