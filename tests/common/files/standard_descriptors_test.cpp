// SPDX-License-Identifier: Apache-2.0

#include "common/files/standard_descriptors.hpp"

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/forked_process.hpp"

namespace kinovane::test {
namespace {

struct ClosedRow {
    const char* sentence;
    std::vector<int> closed;
};

const ClosedRow closedRows[] = {
    {"all are open", {}},
    {"standard input is closed", {0}},
    {"standard output is closed", {1}},
    {"standard error is closed", {2}},
    {"input and error are closed", {0, 2}},
    {"output and error are closed", {1, 2}},
    {"all are closed", {0, 1, 2}},
};

/// Runs the job in a process that has closed these descriptors, and returns its text.
std::string withClosed(const std::vector<int>& closed, const std::function<std::string()>& job) {
    return inForkedProcess([&] {
        for (const int number : closed)
            ::close(number);
        return job();
    });
}

Descriptor openRoot() {
    return openAboveStandard([] { return ::open("/", O_RDONLY | O_CLOEXEC); });
}

std::string openStandardDescriptors() {
    std::string open;
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(number, F_GETFD) >= 0)
            open += std::to_string(number);
    return open;
}

TEST(OpenAboveStandard, NeverReturnsAStandardDescriptor) {
    for (const ClosedRow& row : closedRows) {
        SCOPED_TRACE(row.sentence);
        const std::string outcome = withClosed(row.closed, [] {
            const Descriptor descriptor = openRoot();
            return descriptor && !isStandard(descriptor.get()) ? "above" : std::to_string(descriptor.get());
        });
        EXPECT_EQ(outcome, "above");
    }
}

TEST(OpenAboveStandard, LeavesTheStandardDescriptorsAsTheyWere) {
    for (const ClosedRow& row : closedRows) {
        SCOPED_TRACE(row.sentence);
        const std::string outcome = withClosed(row.closed, [] {
            const std::string before = openStandardDescriptors();
            const Descriptor descriptor = openRoot();
            const std::string after = openStandardDescriptors();
            return after == before ? "unchanged" : after;
        });
        EXPECT_EQ(outcome, "unchanged");
    }
}

TEST(OpenAboveStandard, ReportsAFailureInErrno) {
    for (const ClosedRow& row : closedRows) {
        SCOPED_TRACE(row.sentence);
        const std::string outcome = withClosed(row.closed, [] {
            const Descriptor descriptor = openAboveStandard([] { return ::open("/nowhere", O_RDONLY); });
            return !descriptor && errno == ENOENT ? "reported" : "lost";
        });
        EXPECT_EQ(outcome, "reported");
    }
}

TEST(ReservedStandardDescriptors, CanBeNeitherReadNorWritten) {
    for (const ClosedRow& row : closedRows) {
        SCOPED_TRACE(row.sentence);
        const std::string outcome = withClosed(row.closed, [&] {
            const ReservedStandardDescriptors reserved;
            std::string succeeded;
            for (const int number : row.closed) {
                char byte = 'x';
                if (::write(number, &byte, 1) >= 0 || errno != EBADF)
                    succeeded += "write ";
                if (::read(number, &byte, 1) >= 0)
                    succeeded += "read ";
            }
            return succeeded;
        });
        EXPECT_EQ(outcome, "");
    }
}

} // namespace
} // namespace kinovane::test
