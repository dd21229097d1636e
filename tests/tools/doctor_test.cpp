// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

/// Runs `doctor` with the simulators on the search path.
Outcome runDoctor(Arguments options, const Environment& more = {}) {
    Environment environment{{"PATH", fs::path(programPath("film")).parent_path().string()},
                            {"QUEXRUN_STATUS_FILE", ""},
                            {"QUEXRUN_MISBEHAVE", ""}};
    for (const auto& [name, value] : more)
        environment[name] = value;
    options.insert(options.begin(), "doctor");
    return runCommandLineTool(std::move(options), std::move(environment));
}

/// Replaces the placeholders for paths of this machine, which may have copies of pi installed.
std::string filledIn(std::string text, const fs::path& own = {}) {
    std::string rows;
    for (const fs::path& copy : PiExecutableResolver::bundledCandidates())
        rows += "        installed copy      " + copy.string() + "\n";
    text = replaced(std::move(text), "{COPIES}", rows);
    text = replaced(std::move(text), "{OWN}", own.string());
    return replaced(std::move(text), "{PROGRAMS}", fs::path(programPath("film")).parent_path().string());
}

const std::string film = "  film     found  {PROGRAMS}/film\n";
const std::string vistrel = "  vistrel  found  {PROGRAMS}/vistrel\n";
const std::string quexrun = "  quexrun  found  {PROGRAMS}/quexrun\n";
const std::string pi = "  pi       found  {PROGRAMS}/pi\n";

/// In a table with something missing or failing, the second column is wider.
std::string widened(const std::string& rows) { return replaced(rows, " found  ", " found    "); }

const std::string all = "All four programs are there, and quexrun answers.\n";
const std::string one = "1 of the four programs is missing or does not answer.\n";
const std::string piOnPath = "\nCopies of pi\n"
                             "  USED  on the search path  {PROGRAMS}/pi\n{COPIES}"
                             "  What is on the search path comes before the installed copies.\n";
const std::string reply = R"(
Models
        name          id            installed  startable  memory  engine
        Heron 8B      heron-8b-q4   yes        yes         16 GB  llama-server
  BEST  Heron 32B     heron-32b-q4  yes        yes         48 GB  llama-server
        Bittern 70B   bittern-70b   yes        no          96 GB  external
        Bittern 120B  bittern-120b  no         yes        192 GB  mlx

What quexrun says of its own pi
  Installed  yes
  Version    0.0.0-simulator
  Place      /usr/local/bin/pi
)";
const std::string noReply = R"(
Models
  not known, because quexrun gave no answer

What quexrun says of its own pi
  not known, because quexrun gave no answer
)";

TEST(Doctor, FindsAllPrograms) {
    EXPECT_EQ(
        runDoctor({}),
        (Outcome{0, filledIn(all + "\nPrograms\n" + film + vistrel + quexrun + pi + piOnPath + reply), ""}));
}

TEST(Doctor, ReportsAMissingProgram) {
    struct Row {
        std::string role, programs, rest;
    };
    const auto missing = [](const std::string& role) {
        return "  " + role + std::string(9 - role.size(), ' ') +
               "MISSING  Required executable not found: none-of-mine\n"
               "                    Name an executable file with --" +
               role + " PROGRAM, or leave this option out to have";
    };
    const std::vector<Row> rows{
        {"film",
         missing("film") + "\n                    film looked for on the search path (PATH).\n" +
             widened(vistrel + quexrun + pi),
         piOnPath + reply},
        {"vistrel",
         widened(film) + missing("vistrel") +
             "\n                    vistrel looked for on the search path (PATH).\n" + widened(quexrun + pi),
         piOnPath + reply},
        {"quexrun",
         widened(film + vistrel) + missing("quexrun") +
             "\n                    quexrun looked for on the search path (PATH).\n" + widened(pi),
         piOnPath + noReply},
    };
    for (const Row& row : rows)
        EXPECT_EQ(runDoctor({"--" + row.role, "none-of-mine"}),
                  (Outcome{5, filledIn(one + "\nPrograms\n" + row.programs + row.rest), ""}))
            << row.role;
}

TEST(Doctor, ReportsAMissingPi) {
    std::string copies = "\nCopies of pi\n";
    for (const fs::path& copy : PiExecutableResolver::bundledCandidates())
        copies += "    installed copy  " + copy.string() + "\n";
    copies += PiExecutableResolver::bundledCandidates().empty()
                  ? "  none\n"
                  : "  Installed copies are used only for the name \"pi\".\n";
    EXPECT_EQ(runDoctor({"--pi", "none-of-mine"}),
              (Outcome{5,
                       filledIn(one + "\nPrograms\n" + widened(film + vistrel + quexrun) +
                                "  pi       MISSING  Required executable not found: none-of-mine\n"
                                "                    Name an executable file with --pi PROGRAM, or leave "
                                "this option out to have pi\n"
                                "                    looked for on the search path (PATH) and among the "
                                "installed copies.\n" +
                                copies + reply),
                       ""}));
}

TEST(Doctor, ReportsAFailingQuexrun) {
    struct Row {
        std::string sentence;
        Environment environment;
        std::string description;
    };
    const std::string run =
        "                    Run it in a terminal with \"agent status --json\" to find out more, or name\n"
        "                    another program with --quexrun PROGRAM.\n";
    const std::string update = "                    Make sure that this is quexrun, and a version that fits; "
                               "otherwise name another\n"
                               "                    program with --quexrun PROGRAM.\n";
    const std::string invalid = "quexrun: Film command returned invalid JSON: quexrun agent status: ";
    const TemporaryDirectory directory;
    const std::string torn = directory.write("status.json", R"({"models":[])").string();
    const std::vector<Row> rows{
        {"exits with a status", {{"QUEXRUN_MISBEHAVE", "exit-5"}}, "quexrun: Film command exited 5.\n" + run},
        {"is killed", {{"QUEXRUN_MISBEHAVE", "killed"}}, "quexrun was ended by signal 9 (Killed).\n" + run},
        {"prints an error message",
         {{"QUEXRUN_MISBEHAVE", "complain"}},
         "The agent runtime is being updated. Try again in a moment.\n" + run},
        {"prints no JSON",
         {{"QUEXRUN_MISBEHAVE", "not-json"}},
         invalid + "line 1, column 1: this is not valid JSON\n" + update},
        {"omits a key",
         {{"QUEXRUN_MISBEHAVE", "missing-key"}},
         invalid + "models[0].servingEngine is missing\n" + update},
        {"stops in the middle of the document",
         {{"QUEXRUN_STATUS_FILE", torn}},
         invalid + "line 1, column 13: the document ends too early\n" + update},
    };
    const std::string before =
        filledIn(one + "\nPrograms\n" + widened(film + vistrel + quexrun) + "           FAILING  ");
    const std::string after = filledIn(widened(pi) + piOnPath + noReply);
    for (const Row& row : rows)
        EXPECT_EQ(runDoctor({}, row.environment),
                  (Outcome{5, std::string(before).append(row.description).append(after), ""}))
            << row.sentence;
}

TEST(Doctor, UsesProgramsNamedByTheirPaths) {
    const TemporaryDirectory own;
    for (const char* name : {"my pi", "torn"}) {
        own.write(name, "neither script nor program");
        fs::permissions(own / name, fs::perms::owner_exec, fs::perm_options::add);
    }
    EXPECT_EQ(
        runDoctor({"--pi", (own / "my pi").string(), "--quexrun", (own / "torn").string()}),
        (Outcome{
            5,
            filledIn(one + "\nPrograms\n" + widened(film + vistrel) +
                         "  quexrun  found    {OWN}/torn\n"
                         "           FAILING  torn: Could not launch film command: {OWN}/torn: posix_spawn: "
                         "Exec format error\n"
                         "                    Make sure that this file is a program for this "
                         "machine, or name another one with\n"
                         "                    --quexrun PROGRAM.\n"
                         "  pi       found    {OWN}/my pi\n"
                         "\nCopies of pi\n"
                         "  USED  named with --pi  {OWN}/my pi\n" +
                         replaced(filledIn("{COPIES}"), "copy      ", "copy   ") +
                         "  What is named with --pi comes before the installed copies.\n" + noReply,
                     own.path()),
            ""}));
}

TEST(Doctor, SucceedsWithoutModels) {
    const TemporaryDirectory directory;
    const std::string status =
        directory.write("status.json", R"({"models":[],"pi":{"installed":false}})").string();
    EXPECT_EQ(runDoctor({}, {{"QUEXRUN_STATUS_FILE", status}}),
              (Outcome{0,
                       filledIn(all + "\nPrograms\n" + film + vistrel + quexrun + pi + piOnPath +
                                "\nModels\n  none\n"
                                "  No model is both installed and startable by quexrun. Install a model that "
                                "quexrun can start.\n"
                                "\nWhat quexrun says of its own pi\n"
                                "  Installed  no\n  Version    not given\n  Place      not given\n"),
                       ""}));
}

} // namespace

} // namespace kinovane::test
