// SPDX-License-Identifier: Apache-2.0

// Descriptors that the library opens, in applications that have closed the standard ones.

#include "common/files/standard_descriptors.hpp"

#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/forked_process.hpp"

namespace kinovane::test {

namespace {

struct ClosedRow {
    std::string sentence;
    std::vector<int> closed;
};

class DescriptorNumbers : public testing::TestWithParam<ClosedRow> {
  protected:
    /// Runs the job in a process that has closed these descriptors.
    static std::string withClosed(const std::function<std::string()>& job) {
        return inForkedProcess([&] {
            for (const int number : GetParam().closed)
                ::close(number);
            return job();
        });
    }
};

std::string openNumbers() {
    std::string open;
    for (int number = 0; number <= STDERR_FILENO; ++number)
        if (::fcntl(number, F_GETFD) >= 0)
            open += std::to_string(number);
    return open;
}

TEST_P(DescriptorNumbers, AnOpenedDescriptorIsNeverAStandardOne) {
    EXPECT_EQ(
        withClosed([] {
            const Descriptor descriptor = openAboveStandard([] { return ::open("/", O_RDONLY | O_CLOEXEC); });
            return descriptor && !isStandard(descriptor.get()) ? "above" : std::to_string(descriptor.get());
        }),
        "above");
}

TEST_P(DescriptorNumbers, TheStandardOnesAreAsBeforeAfterwards) {
    EXPECT_EQ(withClosed([] {
                  const std::string before = openNumbers();
                  const Descriptor descriptor =
                      openAboveStandard([] { return ::open("/", O_RDONLY | O_CLOEXEC); });
                  return openNumbers() == before ? "as before" : openNumbers();
              }),
              "as before");
}

TEST_P(DescriptorNumbers, AReservedOneCanNeitherBeReadNorWritten) {
    EXPECT_EQ(withClosed([] {
                  const ReservedStandardDescriptors reserved;
                  std::string wrong;
                  for (const int number : GetParam().closed) {
                      char byte = 'x';
                      if (::write(number, &byte, 1) >= 0 || errno != EBADF)
                          wrong += "written ";
                      if (::read(number, &byte, 1) >= 0)
                          wrong += "read ";
                  }
                  return wrong;
              }),
              "");
}

TEST_P(DescriptorNumbers, AFailureToOpenIsTheCallersToReport) {
    EXPECT_EQ(withClosed([] {
                  const Descriptor descriptor =
                      openAboveStandard([] { return ::open("/nowhere", O_RDONLY); });
                  return !descriptor && errno == ENOENT ? "reported" : "lost";
              }),
              "reported");
}

INSTANTIATE_TEST_SUITE_P(, DescriptorNumbers,
                         testing::Values(ClosedRow{"all are open", {}}, ClosedRow{"input is closed", {0}},
                                         ClosedRow{"output is closed", {1}},
                                         ClosedRow{"errors are closed", {2}},
                                         ClosedRow{"input and errors are closed", {0, 2}},
                                         ClosedRow{"output and errors are closed", {1, 2}},
                                         ClosedRow{"all are closed", {0, 1, 2}}),
                         [](const auto& row) { return std::to_string(row.index); });

} // namespace

} // namespace kinovane::test
