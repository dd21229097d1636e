// SPDX-License-Identifier: Apache-2.0

#include "commands/diagnosis_text.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commands/diagnosis.hpp"

namespace kinovane::tool {

namespace {

ProgramFinding found(const char* role) {
    return {role, role, std::filesystem::path("/bin") / role, std::nullopt};
}

/// All programs are found, and no model is known.
Diagnosis soundDiagnosis() {
    return {found("film"),       found("vistrel"), found("quexrun"), found("pi"), PiOrigin::searchPath, {},
            QuexRunAgentStatus{}};
}

ProgramFinding missing(const char* role) {
    ProgramFinding program{role, role, std::nullopt, std::nullopt};
    program.problem = problemOf(program, FilmToolError(FilmToolError::executableNotFound{role}));
    return program;
}

/// The text from one heading to the next.
std::string section(const std::string& text, const std::string& heading) {
    const auto begin = text.find("\n" + heading + "\n");
    if (begin == std::string::npos)
        return "no such section in: " + text;
    const auto end = text.find("\n\n", begin + 1);
    return text.substr(begin + heading.size() + 2,
                       end == std::string::npos ? end : end - begin - heading.size() - 1);
}

TEST(Diagnosis, ReportsWhichPiIsUsedAndWhy) {
    struct Row {
        std::string sentence;
        std::optional<PiOrigin> origin;
        std::filesystem::path path;
        std::vector<std::filesystem::path> copies;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"only on the search path",
         PiOrigin::searchPath,
         "/bin/pi",
         {},
         "  USED  on the search path  /bin/pi\n"
         "  What is on the search path comes before the installed copies.\n"},
        {"on the search path, and copies",
         PiOrigin::searchPath,
         "/bin/pi",
         {"/a b/v2.0/pi/pi", "/a b/1.9/pi/pi"},
         "  USED  on the search path  /bin/pi\n"
         "        installed copy      /a b/v2.0/pi/pi\n"
         "        installed copy      /a b/1.9/pi/pi\n"
         "  What is on the search path comes before the installed copies.\n"},
        {"only copies",
         PiOrigin::installedCopy,
         "/a b/v2.0/pi/pi",
         {"/a b/v2.0/pi/pi", "/a b/1.9/pi/pi"},
         "  USED  installed copy  /a b/v2.0/pi/pi\n"
         "        installed copy  /a b/1.9/pi/pi\n"
         "  There is no pi on the search path, so the newest installed copy is used.\n"},
        {"named, and a copy",
         PiOrigin::namedPath,
         "/x/pi",
         {"/a b/1.9/pi/pi"},
         "  USED  named with --pi  /x/pi\n"
         "        installed copy   /a b/1.9/pi/pi\n"
         "  What is named with --pi comes before the installed copies.\n"},
        {"another name that was not found, and a copy",
         std::nullopt,
         "",
         {"/a b/1.9/pi/pi"},
         "    installed copy  /a b/1.9/pi/pi\n"
         "  Installed copies are used only for the name \"pi\".\n"},
        {"none at all", std::nullopt, "", {}, "  none\n"},
    };
    for (const Row& row : rows) {
        Diagnosis diagnosis = soundDiagnosis();
        diagnosis.piOrigin = row.origin;
        diagnosis.pi.path = row.origin ? std::optional(row.path) : std::nullopt;
        diagnosis.installedPis = row.copies;
        EXPECT_EQ(section(humanText(diagnosis), "Copies of pi"), row.expected) << row.sentence;
    }
}

TEST(Diagnosis, ReportsThatAllProgramsAreMissing) {
    const Diagnosis diagnosis{missing("film"), missing("vistrel"), missing("quexrun"),
                              missing("pi"),   std::nullopt,       {},
                              std::nullopt};
    EXPECT_EQ(humanText(diagnosis), R"(All four programs are missing or do not answer.

Programs
  film     MISSING  Required executable not found: film
                    Put it into a folder of the search path (PATH), or say with --film PROGRAM where
                    it is.
  vistrel  MISSING  Required executable not found: vistrel
                    Put it into a folder of the search path (PATH), or say with --vistrel PROGRAM
                    where it is.
  quexrun  MISSING  Required executable not found: quexrun
                    Put it into a folder of the search path (PATH), or say with --quexrun PROGRAM
                    where it is.
  pi       MISSING  Required executable not found: pi
                    Put it into a folder of the search path (PATH), have quexrun install a copy, or
                    say with --pi PROGRAM where it is.

Copies of pi
  none

Models
  not known, because quexrun gave no answer

What quexrun says of its own pi
  not known, because quexrun gave no answer
)");
}

TEST(Diagnosis, KeepsTheLinesOfAnErrorMessage) {
    Diagnosis diagnosis = soundDiagnosis();
    const std::string longWord(120, 'x');
    ProcessResult result{"/bin/quexrun", {}, 1, "", {}};
    result.stderr = "first \x1b[31mline\n\n  " + longWord + " y\n";
    diagnosis.quexrun.problem =
        problemOf(diagnosis.quexrun, FilmToolError(FilmToolError::commandFailed{result}));
    EXPECT_EQ(humanText(diagnosis).substr(0, humanText(diagnosis).find("\nCopies of pi")),
              "1 of the four programs is missing or does not answer.\n"
              "\nPrograms\n"
              "  film     found    /bin/film\n"
              "  vistrel  found    /bin/vistrel\n"
              "  quexrun  found    /bin/quexrun\n"
              "           FAILING  first \\x1b[31mline\n"
              "\n"
              "                      " +
                  longWord +
                  " y\n"
                  "                    Run it in a terminal with \"agent status --json\" to find out more, "
                  "or name\n"
                  "                    another program with --quexrun PROGRAM.\n"
                  "  pi       found    /bin/pi\n");
}

TEST(Diagnosis, MarksTheBestModel) {
    const QuexRunAgentModel small{"s", "Small", true, -1, "e", true};
    const QuexRunAgentModel large{"l", "Large\tone", true, 64, "e", true};
    QuexRunAgentModel absent = large;
    absent.installed = false;
    struct Row {
        std::string sentence;
        std::vector<QuexRunAgentModel> models;
        std::string expected;
    };
    const std::string none = "  No model is both installed and startable by quexrun. Install a model that "
                             "quexrun can start.\n";
    const std::vector<Row> rows{
        {"the only one",
         {small},
         "        name   id  installed  startable  memory  engine\n"
         "  BEST  Small  s   yes        yes         -1 GB  e\n"},
        {"the first of two that are the same",
         {small, large, large},
         "        name        id  installed  startable  memory  engine\n"
         "        Small       s   yes        yes         -1 GB  e\n"
         "  BEST  Large\\tone  l   yes        yes         64 GB  e\n"
         "        Large\\tone  l   yes        yes         64 GB  e\n"},
        {"none that is installed",
         {absent},
         "    name        id  installed  startable  memory  engine\n"
         "    Large\\tone  l   no         yes         64 GB  e\n" +
             none},
    };
    for (const Row& row : rows) {
        Diagnosis diagnosis = soundDiagnosis();
        diagnosis.agent = QuexRunAgentStatus{row.models, {}};
        EXPECT_EQ(section(humanText(diagnosis), "Models"), row.expected) << row.sentence;
    }
}

TEST(Diagnosis, RepairsAPathThatIsNotUTF8InJSON) {
    Diagnosis diagnosis = soundDiagnosis();
    diagnosis.installedPis = {"/caf\xe9/pi"};
    const std::string text = jsonText(diagnosis);
    EXPECT_NE(text.find("\"installedCopies\":[\"/caf\uFFFD/pi\"]"), std::string::npos) << text;
}

} // namespace

} // namespace kinovane::tool
