// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "commands/diagnosis_text.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

TEST(DoctorJSON, ReportsTheStateOfEveryProgram) {
    struct Row {
        std::string sentence;
        std::vector<std::string> options;
        std::map<std::string, std::string> environment;
        int status;
        std::string expected; ///< A file of the folder "golden".
    };
    const TemporaryDirectory directory;
    const std::string empty =
        directory.write("status.json", R"({"models":[],"pi":{"installed":false}})").string();
    const std::vector<Row> rows{
        {"all programs are found", {}, {}, 0, "doctor.json"},
        {"no models", {}, {{"QUEXRUN_STATUS_FILE", empty}}, 0, "doctor-no-models.json"},
        {"one is missing and one fails",
         {"--film", "none-of-mine"},
         {{"QUEXRUN_MISBEHAVE", "complain"}},
         5,
         "doctor-failing.json"},
    };
    const fs::path programs = fs::path(programPath("film")).parent_path();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::map<std::string, std::string> environment{
            {"PATH", programs.string()}, {"QUEXRUN_STATUS_FILE", ""}, {"QUEXRUN_MISBEHAVE", ""}};
        for (const auto& [name, value] : row.environment)
            environment[name] = value;
        std::vector<std::string> arguments{"doctor", "--json"};
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        const Outcome outcome = runCommandLineTool(arguments, environment);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1);
        json::value expected =
            json::parse(replaced(golden(row.expected, {}), "{PROGRAMS}", programs.string()));
        json::array copies; // This machine may have installed copies.
        for (const fs::path& copy : PiExecutableResolver::bundledCandidates())
            copies.emplace_back(copy.string());
        expected.at("pi").as_object()["installedCopies"] = copies;
        EXPECT_EQ(json::parse(outcome.out), expected) << outcome;
    }
}

TEST(DoctorJSON, ReportsTheOriginOfPi) {
    struct Row {
        std::optional<tool::PiOrigin> origin;
        std::string expected;
    };
    const std::vector<Row> rows{
        {tool::PiOrigin::searchPath, R"("search-path")"},
        {tool::PiOrigin::namedPath, R"("named-place")"},
        {tool::PiOrigin::installedCopy, R"("installed-copy")"},
        {std::nullopt, "null"},
    };
    for (const Row& row : rows) {
        tool::Diagnosis diagnosis;
        diagnosis.piOrigin = row.origin;
        diagnosis.installedPis = {"/v2.0/pi/pi", "/1.9/pi/pi"};
        EXPECT_EQ(json::parse(tool::jsonText(diagnosis)).at("pi"),
                  json::parse(R"({"origin":)" + row.expected +
                              R"(,"installedCopies":["/v2.0/pi/pi","/1.9/pi/pi"]})"));
    }
}

} // namespace

} // namespace kinovane::test
