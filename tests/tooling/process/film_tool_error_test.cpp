// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

namespace kinovane::test {

namespace {

ProcessResult resultOf(std::int32_t exitCode, std::string errors) {
    return {"/usr/bin/film", {"plan", "--json"}, exitCode, "output", std::move(errors)};
}

static_assert(std::is_nothrow_copy_constructible_v<FilmToolError>);
static_assert(std::is_nothrow_copy_assignable_v<FilmToolError>);
static_assert(std::is_convertible_v<FilmToolError::launchFailed, FilmToolError>);
static_assert(std::is_convertible_v<FilmToolError::Case, FilmToolError>);
static_assert(!std::is_convertible_v<std::string, FilmToolError>);
static_assert(std::is_same_v<FilmToolError::Case,
                             std::variant<FilmToolError::executableNotFound, FilmToolError::launchFailed,
                                          FilmToolError::commandFailed, FilmToolError::invalidJSON>>);

TEST(FilmToolError, DescribesEveryCase) {
    struct Row {
        const char* sentence;
        FilmToolError error;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a missing program", FilmToolError::executableNotFound{"film"},
         "Required executable not found: film"},
        {"a missing path", FilmToolError::executableNotFound{"~/bin/film"},
         "Required executable not found: ~/bin/film"},
        {"a missing program without a name", FilmToolError::executableNotFound{""},
         "Required executable not found: "},
        {"a refused start", FilmToolError::launchFailed{"Exec format error"},
         "Could not launch film command: Exec format error"},
        {"a failed run without standard error", FilmToolError::commandFailed{resultOf(3, "")},
         "Film command exited 3."},
        {"a failed run with a negative status", FilmToolError::commandFailed{resultOf(-1, "")},
         "Film command exited -1."},
        {"a failed run with standard error", FilmToolError::commandFailed{resultOf(3, "boom\n")}, "boom\n"},
        {"a failed run with white space only", FilmToolError::commandFailed{resultOf(3, " \n")}, " \n"},
        {"a failed run with several lines", FilmToolError::commandFailed{resultOf(3, "\n a\n b\n\n")},
         "\n a\n b\n\n"},
        {"an unreadable reply", FilmToolError::invalidJSON{"line 1, column 1: no value"},
         "Film command returned invalid JSON: line 1, column 1: no value"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(row.error.errorDescription(), row.expected);
        EXPECT_EQ(row.error.what(), row.expected);
        const FilmToolError copy = row.error;
        EXPECT_EQ(copy, row.error);
        EXPECT_EQ(copy.errorDescription(), row.expected);
    }
}

TEST(FilmToolError, IsEqualByCaseAndPayload) {
    ProcessResult otherExecutable = resultOf(3, "boom");
    otherExecutable.executable = "/bin/film";
    ProcessResult otherArguments = resultOf(3, "boom");
    otherArguments.arguments.pop_back();
    ProcessResult otherOutput = resultOf(3, "boom");
    otherOutput.stdout = "";
    // No two of these are equal, although some have the same description.
    const std::vector<FilmToolError> different{
        FilmToolError::executableNotFound{"x"},
        FilmToolError::executableNotFound{"y"},
        FilmToolError::launchFailed{"x"},
        FilmToolError::launchFailed{"y"},
        FilmToolError::invalidJSON{"x"},
        FilmToolError::invalidJSON{"y"},
        FilmToolError::commandFailed{resultOf(3, "boom")},
        FilmToolError::commandFailed{resultOf(4, "boom")},
        FilmToolError::commandFailed{resultOf(3, "boom\n")},
        FilmToolError::commandFailed{otherExecutable},
        FilmToolError::commandFailed{otherArguments},
        FilmToolError::commandFailed{otherOutput},
    };
    for (std::size_t left = 0; left < different.size(); ++left)
        for (std::size_t right = 0; right < different.size(); ++right) {
            SCOPED_TRACE(testing::Message() << left << " and " << right);
            EXPECT_EQ(different[left] == different[right], left == right);
            EXPECT_EQ(different[left] != different[right], left != right);
        }
    // Two objects with equal contents are equal.
    EXPECT_EQ(FilmToolError(FilmToolError::commandFailed{resultOf(3, "boom")}),
              FilmToolError(FilmToolError::Case(FilmToolError::commandFailed{resultOf(3, "boom")})));
    EXPECT_EQ(FilmToolError(FilmToolError::invalidJSON{"x"}), FilmToolError(FilmToolError::invalidJSON{"x"}));
}

TEST(FilmToolError, HoldsItsCaseAndPayload) {
    const FilmToolError error = FilmToolError::commandFailed{resultOf(3, "boom\n")};
    const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value());
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->result, resultOf(3, "boom\n"));
    EXPECT_EQ(std::get_if<FilmToolError::launchFailed>(&error.value()), nullptr);
    EXPECT_EQ(std::get<FilmToolError::executableNotFound>(
                  FilmToolError(FilmToolError::executableNotFound{"film"}).value())
                  .name,
              "film");
}

TEST(FilmToolError, IsReplacedByAssignment) {
    FilmToolError error = FilmToolError::launchFailed{"first"};
    const FilmToolError kept = error;
    error = FilmToolError(FilmToolError::invalidJSON{"second"});
    EXPECT_EQ(error.errorDescription(), "Film command returned invalid JSON: second");
    EXPECT_EQ(kept.errorDescription(), "Could not launch film command: first");
}

TEST(FilmToolError, IsCaughtAsStdException) {
    try {
        throw FilmToolError(FilmToolError::launchFailed{"x"});
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "Could not launch film command: x");
        EXPECT_NE(dynamic_cast<const FilmToolError*>(&error), nullptr);
    }
}

TEST(ProcessResult, SucceedsOnlyWithStatusZero) {
    struct Row {
        std::int32_t exitCode;
        bool expected;
    };
    for (const Row row : {Row{0, true}, Row{1, false}, Row{-1, false}, Row{255, false}, Row{256, false}})
        EXPECT_EQ(resultOf(row.exitCode, "").succeeded(), row.expected) << row.exitCode;
}

} // namespace

} // namespace kinovane::test
