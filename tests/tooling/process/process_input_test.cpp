// SPDX-License-Identifier: Apache-2.0

// The arguments, environment and working directory of a program.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"
#include "tooling/process/test_program.hpp"

extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

Texts splitAtNUL(std::string_view text) {
    Texts parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\0'), text.size());
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string hexOf(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value / 16U];
        text += digits[value % 16U];
    }
    return text;
}

Texts ownEnvironment() {
    Texts entries;
    for (char** entry = environ; *entry != nullptr; ++entry)
        entries.emplace_back(*entry);
    return entries;
}

Texts childEnvironment(std::map<std::string, std::string> additions) {
    return splitAtNUL(startTestProgram({"environment"}, std::move(additions)).get().stdout);
}

TEST(ProcessArguments, ArriveUnchanged) {
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    struct Row {
        const char* sentence;
        Texts arguments;
    };
    const std::vector<Row> rows{
        {"none", {}},
        {"one", {"plain"}},
        {"an empty one", {"", "x", ""}},
        {"spaces", {"two words", " ", "  front and back  "}},
        {"quotes", {"\"double\"", "'single'", "`back`", "it's"}},
        {"lines", {"first\nsecond\r\n", "\t"}},
        {"leading dashes", {"-n", "--help", "--", "-"}},
        {"characters that a shell interprets",
         {"$HOME", "*", "~", "a;b", "a|b", "a&b", ">out", "\\", "!1", "#", "{a,b}"}},
        {"letters of several scripts", {"\u00E9t\u00E9", "\u6620\u753B", "\U0001F3AC"}},
        {"every byte but NUL", {everyByte}},
        {"100 KB in one", {std::string(100'000, 'x')}},
        {"many", Texts(5'000, "shot")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        Texts arguments{"arguments"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const ProcessResult result = startTestProgram(arguments).get();
        std::string expected;
        for (const std::string& argument : row.arguments)
            expected += hexOf(argument) + "\n";
        EXPECT_EQ(result.stdout, expected);
        EXPECT_EQ(result.arguments, arguments);
    }
}

TEST(ProcessEnvironment, IsInheritedWithoutAdditions) { EXPECT_EQ(childEnvironment({}), ownEnvironment()); }

TEST(ProcessEnvironment, PrefersAdditionsToInheritedVariables) {
    ::setenv("KINOVANE_TEST_OLD", "old", 1);
    ::setenv("KINOVANE_TEST_EMPTY", "", 1);
    const Texts own = ownEnvironment();
    struct Row {
        const char* sentence;
        std::map<std::string, std::string> additions;
        Texts replaced; ///< Inherited entries that the child does not have.
        Texts expected;
    };
    const std::vector<Row> rows{
        {"a new variable is added", {{"KINOVANE_TEST_NEW", "new"}}, {}, {"KINOVANE_TEST_NEW=new"}},
        {"an inherited variable is replaced",
         {{"KINOVANE_TEST_OLD", "new"}},
         {"KINOVANE_TEST_OLD=old"},
         {"KINOVANE_TEST_OLD=new"}},
        {"an empty value replaces an inherited one",
         {{"KINOVANE_TEST_OLD", ""}},
         {"KINOVANE_TEST_OLD=old"},
         {"KINOVANE_TEST_OLD="}},
        {"an inherited empty value is replaced",
         {{"KINOVANE_TEST_EMPTY", "x"}},
         {"KINOVANE_TEST_EMPTY="},
         {"KINOVANE_TEST_EMPTY=x"}},
        {"a prefix of a name is another name", {{"KINOVANE_TEST", "x"}}, {}, {"KINOVANE_TEST=x"}},
        {"a value may hold any text",
         {{"KINOVANE_TEST_NEW", "a=b c\n\"'$HOME\u00E9"}},
         {},
         {"KINOVANE_TEST_NEW=a=b c\n\"'$HOME\u00E9"}},
        {"names are case-sensitive", {{"kinovane_test_old", "x"}}, {}, {"kinovane_test_old=x"}},
        {"several at once",
         {{"KINOVANE_TEST_NEW", "1"}, {"KINOVANE_TEST_OLD", "2"}},
         {"KINOVANE_TEST_OLD=old"},
         {"KINOVANE_TEST_NEW=1", "KINOVANE_TEST_OLD=2"}},
        {"100 KB",
         {{"KINOVANE_TEST_NEW", std::string(100'000, 'x')}},
         {},
         {"KINOVANE_TEST_NEW=" + std::string(100'000, 'x')}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        Texts expected = own;
        for (const std::string& entry : row.replaced)
            ASSERT_EQ(std::erase(expected, entry), 1U);
        expected.insert(expected.end(), row.expected.begin(), row.expected.end());
        EXPECT_THAT(childEnvironment(row.additions), testing::UnorderedElementsAreArray(expected));
    }
    ::unsetenv("KINOVANE_TEST_OLD");
    ::unsetenv("KINOVANE_TEST_EMPTY");
}

TEST(ProcessEnvironment, ReplacesOnlyPATHByPATH) {
    const std::string former = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "";
    ::setenv("PATH", "/usr/bin:/bin", 1);
    Texts expected = ownEnvironment();
    std::replace(expected.begin(), expected.end(), std::string("PATH=/usr/bin:/bin"),
                 std::string("PATH=/elsewhere"));
    EXPECT_THAT(childEnvironment({{"PATH", "/elsewhere"}}), testing::UnorderedElementsAreArray(expected));
    // The program is found with the PATH of this process.
    EXPECT_EQ(outcomeOf(FilmToolClient("true").run({}, {{"PATH", "/elsewhere"}})), "");
    ::setenv("PATH", former.c_str(), 1);
}

TEST(ProcessEnvironment, LeavesThatOfTheApplicationUnchanged) {
    const Texts before = ownEnvironment();
    (void)childEnvironment({{"KINOVANE_TEST_NEW", "new"}, {"PATH", "/elsewhere"}});
    EXPECT_EQ(ownEnvironment(), before);
}

TEST(ProcessInput, RefusesInvalidText) {
    const std::string nul("a\0b", 3);
    struct Row {
        const char* sentence;
        Texts arguments;
        std::map<std::string, std::string> environment;
        std::string message;
    };
    const std::vector<Row> rows{
        {"a NUL byte in an argument", {"out", nul}, {}, "an argument holds a NUL byte"},
        {"a NUL byte at the end of an argument",
         {"out", std::string("a\0", 2)},
         {},
         "an argument holds a NUL byte"},
        {"a NUL byte in a value", {}, {{"KEY", nul}}, "an environment variable holds a NUL byte"},
        {"a NUL byte in a key", {}, {{nul, "value"}}, "an environment variable holds a NUL byte"},
        {"an empty key", {}, {{"", "value"}}, "\"\" cannot be the name of an environment variable"},
        {"a key with an equals sign",
         {},
         {{"A=B", "c"}},
         "\"A=B\" cannot be the name of an environment variable"},
        {"a key that is an equals sign",
         {},
         {{"=", ""}},
         "\"=\" cannot be the name of an environment variable"},
        {"a good key beside a bad one",
         {},
         {{"A", "a"}, {"B=", "b"}},
         "\"B=\" cannot be the name of an environment variable"},
        {"an argument too long",
         {"out", std::string(200'000, 'x')},
         {},
         "posix_spawn: Argument list too long"},
        {"arguments too long together",
         Texts(200, std::string(100'000, 'x')),
         {},
         "posix_spawn: Argument list too long"},
        {"a value too long", {}, {{"KEY", std::string(200'000, 'x')}}, "posix_spawn: Argument list too long"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(outputOfTestProgram(row.arguments, row.environment),
                  "Could not launch film command: " + testProgramPath() + ": " + row.message);
    }
}

TEST(ProcessInput, IncludesTheWorkingDirectory) {
    const TemporaryDirectory directory;
    const fs::path former = fs::current_path();
    fs::current_path(directory.path());
    const std::string printed = outputOfTestProgram({"directory"});
    fs::current_path(former);
    EXPECT_EQ(printed, directory.path().string());
}

} // namespace

} // namespace kinovane::test
