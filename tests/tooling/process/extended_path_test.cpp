// SPDX-License-Identifier: Apache-2.0

#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/variable.hpp"
#include "tooling/process/controlled_outcome.hpp"

namespace kinovane::test {
namespace {

/// The child's variables in the form NAME=VALUE.
std::multiset<std::string> variablesOfChild(const RunOptions& options) {
    std::istringstream output(outcomeWith({"environment"}, options));
    std::multiset<std::string> variables;
    for (std::string variable; std::getline(output, variable, '\0');)
        variables.insert(variable);
    return variables;
}

/// The values of PATH that a child has, each with a newline.
std::string pathOfChild(const RunOptions& options) {
    std::string found;
    for (const std::string& variable : variablesOfChild(options))
        if (variable.starts_with("PATH="))
            found += variable.substr(5) + "\n";
    return found.empty() ? "absent" : found;
}

struct PathRow {
    std::string_view sentence;
    std::optional<std::string> path;  ///< Of this process.
    std::optional<std::string> given; ///< PATH in RunOptions::environment.
    std::string unchanged;            ///< The child's PATH by default.
    std::string extended;             ///< The same with `extendPath`.
};

const PathRow rows[] = {
    {"a PATH without any of the directories",
     "/a:/b",
     {},
     "/a:/b\n",
     "/a:/b:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
    {"the short PATH of a desktop application",
     "/usr/bin:/bin:/usr/sbin:/sbin",
     {},
     "/usr/bin:/bin:/usr/sbin:/sbin\n",
     "/usr/bin:/bin:/usr/sbin:/sbin:/opt/homebrew/bin:/usr/local/bin\n"},
    {"all of the directories, in another order",
     "/bin:/usr/bin:/usr/local/bin:/opt/homebrew/bin",
     {},
     "/bin:/usr/bin:/usr/local/bin:/opt/homebrew/bin\n",
     "/bin:/usr/bin:/usr/local/bin:/opt/homebrew/bin\n"},
    {"directories whose names begin and end alike",
     "/usr/bin/more:/more/usr/bin",
     {},
     "/usr/bin/more:/more/usr/bin\n",
     "/usr/bin/more:/more/usr/bin:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
    {"an empty entry, which is the working directory",
     "/bin:",
     {},
     "/bin:\n",
     "/bin::/opt/homebrew/bin:/usr/local/bin:/usr/bin\n"},
    {"no PATH", {}, {}, "absent", "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
    {"an empty PATH", "", {}, "\n", "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
    {"another PATH in the options", "/a", "/b:/usr/bin", "/b:/usr/bin\n",
     "/b:/usr/bin:/opt/homebrew/bin:/usr/local/bin:/bin\n"},
    {"an empty PATH in the options", "/a", "", "\n", "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
    {"PATH only in the options", {}, "/b", "/b\n", "/b:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin\n"},
};

TEST(ExtendedPath, HasTheSearchedDirectoriesAtItsEnd) {
    for (const PathRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable path("PATH", row.path);
        RunOptions options;
        if (row.given)
            options.environment["PATH"] = *row.given;
        EXPECT_EQ(pathOfChild(options), row.unchanged);
        options.extendPath = true;
        EXPECT_EQ(pathOfChild(options), row.extended);
    }
}

TEST(ExtendedPath, ChangesNoOtherVariable) {
    const Variable path("PATH", "/a");
    auto expected = variablesOfChild({});
    expected.erase("PATH=/a");
    expected.insert("PATH=/a:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin");
    EXPECT_EQ(variablesOfChild({.extendPath = true}), expected);
}

TEST(ExtendedPath, StartsWithThatOfTheOperation) {
    RunOptions options;
    options.extendPath = true;
    const ProcessResult result =
        FilmToolClient(testProgramPath()).run({"environment"}, {{"PATH", "/call"}}, options).get();
    EXPECT_NE(result.stdout.find("PATH=/call:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin"),
              std::string::npos);
}

} // namespace
} // namespace kinovane::test
