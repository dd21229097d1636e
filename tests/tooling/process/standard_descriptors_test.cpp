// SPDX-License-Identifier: Apache-2.0

// Operations of an application that has closed some of the standard descriptors.

#include "support/standard_descriptors.hpp"

#include <array>
#include <atomic>
#include <filesystem>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"
#include "tooling/film_tool/pi_copies.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace {

constexpr int rounds = 100;

/// Checks the closed standard descriptors on a thread of its own until it is destroyed. Records whether one
/// of them was open for anything but the root directory, with which the library reserves the numbers.
class DescriptorWatch {
  public:
    explicit DescriptorWatch(ClosedDescriptors closed)
        : thread_([this, closed](std::size_t /*turn*/) {
              const UnobservedAccess unobserved;
              struct stat status{};
              for (int number = 0; number <= STDERR_FILENO; ++number)
                  if ((closed & 1 << number) != 0 && ::fstat(number, &status) == 0 &&
                      (status.st_dev != root_.st_dev || status.st_ino != root_.st_ino))
                      seen_ = true;
          }) {
        thread_.awaitTurn();
    }

    bool seen() const { return seen_; }

  private:
    static struct stat rootDirectory() {
        struct stat status{};
        ::stat("/", &status);
        return status;
    }

    const struct stat root_ = rootDirectory();
    std::atomic<bool> seen_ = false;
    RepeatingThread thread_;
};

class StandardDescriptors : public testing::TestWithParam<ClosedDescriptors> {
  protected:
    /// Runs the job many times. Describes a result other than `expected`, or that a standard descriptor was
    /// in use; empty if there is neither.
    static std::string differences(const std::string& expected, const std::function<std::string()>& job) {
        return withClosed(GetParam(), [&] {
            const DescriptorWatch watch(GetParam());
            for (int round = 0; round < rounds; ++round)
                if (const std::string found = job(); found != expected)
                    return "in round " + std::to_string(round) + ": " + found;
            return std::string(watch.seen() ? "a standard descriptor was used" : "");
        });
    }
};

TEST_P(StandardDescriptors, StayClosedWhileAProgramRuns) {
    EXPECT_EQ(differences("output, errors",
                          [] {
                              const ProcessResult result =
                                  startTestProgram({"out", "output", "err", "errors"}).get();
                              return result.stdout + ", " + result.stderr;
                          }),
              "");
}

TEST_P(StandardDescriptors, StayClosedWhileCopiesOfPiAreListed) {
    const TemporaryDirectory root;
    const std::string program = installPi(root.path(), "1.2.3").string();
    EXPECT_EQ(differences(program,
                          [&] {
                              const auto found = PiExecutableResolver::bundledCandidates(root.path());
                              return found.empty() ? "nothing" : found.front().string();
                          }),
              "");
}

TEST_P(StandardDescriptors, StayClosedWhileAHomeDirectoryIsRead) {
    EXPECT_EQ(differences("not found",
                          [] {
                              try {
                                  return FilmToolClient::resolveExecutable("~/no/such/program").string();
                              } catch (const FilmToolError&) {
                                  return std::string("not found");
                              }
                          }),
              "");
}

INSTANTIATE_TEST_SUITE_P(Closed, StandardDescriptors, testing::Range(0, 8),
                         [](const auto& row) { return nameOf(row.param); });

} // namespace

} // namespace kinovane::test
