// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// A failure when a film of two files is published.
struct Failure {
    std::string sentence;
    std::function<void(WorkspaceMaker&)> damage; ///< Changes the sound workspace; may be empty.
    int status;
    std::string message;     ///< "{ROOT}" is replaced by the workspace's folder.
    std::string stepsBefore; ///< The steps that are printed before the failure.
    std::string program = programPath("vistrel");
    std::string misbehaviour = {};
    Arguments more = {};
};

void expectFailures(const std::vector<Failure>& rows) {
    for (const Failure& row : rows)
        for (const bool json : {false, true}) {
            SCOPED_TRACE(row.sentence + (json ? ", as JSON" : ""));
            WorkspaceMaker workspace;
            workspace.add("shot-clip", "clips/s1.mp4", "moving pictures");
            workspace.add("poster", "poster.png", "a poster");
            writeDocuments(workspace);
            if (row.damage)
                row.damage(workspace);
            const std::string root = workspace.directory.path().string();
            Arguments arguments{"publish", root, "--vistrel", row.program};
            for (const std::string& argument : row.more)
                arguments.push_back(replaced(argument, "{ROOT}", root));
            if (json)
                arguments.emplace_back("--json");
            Outcome outcome = runCommandLineTool(
                arguments, {{"VISTREL_LIBRARY", ""}, {"VISTREL_MISBEHAVE", row.misbehaviour}});
            // The manifest, and so its digest, depends on the time of day.
            if (const auto digest = outcome.out.find("sha256:"); digest != std::string::npos)
                outcome.out.erase(digest, std::string("sha256:").size() + 64);
            EXPECT_EQ(outcome, (Outcome{row.status, json ? "" : replaced(row.stepsBefore, "{ROOT}", root),
                                        "kinovane: " + replaced(row.message, "{ROOT}", root) + "\n"}));
        }
}

const std::string posterDigest = "sha256:78dbb01dda9ef4c2025686a3e7372fe6e77ac35ac97af8841bd2183b38f5a87c";
const std::string loaded = "Loaded    t\n";
const std::string verified = loaded + "Verified  2 files, 23 B\n";
const std::string written = verified + "Written   {ROOT}/vistrel-handoff.json\n          \n";

void removeFile(const WorkspaceMaker& workspace, const char* name) { fs::remove(workspace.directory / name); }

void changeProject(const WorkspaceMaker& workspace, const std::string& what, const std::string& by) {
    const std::string project = contentOf(workspace.directory / "film-project.json");
    workspace.directory.write("film-project.json", replaced(project, what, by));
}

void listMissingFile(WorkspaceMaker& workspace, const char* path) {
    workspace.list("poster", path);
    writeDocuments(workspace);
}

TEST(PublishFailure, IsReportedForAWorkspaceThatCannotBeRead) {
    expectFailures({
        {"no run manifest", [](auto& workspace) { removeFile(workspace, "run.json"); }, 3,
         "No run.json exists at {ROOT}/run.json.", ""},
        {"no project", [](auto& workspace) { removeFile(workspace, "film-project.json"); }, 3,
         "No film-project.json exists at {ROOT}/film-project.json.", ""},
        {"an unsupported contract",
         [](auto& workspace) { changeProject(workspace, "project.v1", "project.v2"); }, 3,
         "Unsupported film contract: quexrun/film-project.v2.", ""},
        {"a project without a title",
         [](auto& workspace) { changeProject(workspace, "\"title\"", "\"titel\""); }, 3,
         "The film project could not be read: film-project.json: title is missing", ""},
    });
}

TEST(PublishFailure, IsReportedForAFilmThatCannotBeHandedOver) {
    expectFailures({
        {"no plan", [](auto& workspace) { removeFile(workspace, "production-plan.json"); }, 4,
         "An accepted production plan is required before publishing to Vistrel.", loaded},
        {"a missing file", [](auto& workspace) { listMissingFile(workspace, "lost.png"); }, 4,
         "The handoff artifact is missing: lost.png", loaded},
        {"a path that leads out", [](auto& workspace) { listMissingFile(workspace, "../lost.png"); }, 4,
         "The handoff contains an unsafe artifact path: ../lost.png", loaded},
        {"a changed file", [](auto& workspace) { workspace.directory.write("poster.png", ""); }, 4,
         "Artifact hash mismatch for poster.png. Expected " + posterDigest + ", got " +
             std::string(emptyDigest) + ".",
         loaded},
    });
}

TEST(PublishFailure, IsReportedForAnExternalProgramThatFails) {
    expectFailures({
        {"no such program", {}, 5, "Required executable not found: /nowhere/vistrel", "", "/nowhere/vistrel"},
        {"no such program, reported before any file is verified",
         [](auto& workspace) { listMissingFile(workspace, "lost.png"); }, 5,
         "Required executable not found: /nowhere/vistrel", "", "/nowhere/vistrel"},
        {"a program that exits with a status",
         {},
         5,
         "Film command exited 3.",
         written,
         programPath("vistrel"),
         "exit-3"},
        {"a program that is killed",
         {},
         5,
         "Film command exited 9.",
         written,
         programPath("vistrel"),
         "killed"},
        {"a program that prints an error message",
         {},
         5,
         "VISTREL_LIBRARY is not set: it names the folder that films are imported into",
         written + "Checked   Vistrel accepts 1 scene, 1 shot, 2 files\n"},
        {"a receipt with other keys",
         {},
         5,
         "Film command returned invalid JSON: project_id is missing",
         written,
         programPath("vistrel"),
         "camel-case"},
        {"a reply that is no receipt",
         {},
         5,
         "Film command returned invalid JSON: line 1, column 1: this is not valid JSON",
         written,
         programPath("vistrel"),
         "not-json"},
    });
}

TEST(PublishFailure, IsReportedForPathsThatCannotBeReadOrWritten) {
    expectFailures({
        {"a folder instead of a file",
         [](auto& workspace) {
             removeFile(workspace, "poster.png");
             fs::create_directory(workspace.directory / "poster.png");
         },
         6, "{ROOT}/poster.png: Is a directory", loaded},
        {"a manifest below a file",
         {},
         6,
         "{ROOT}/run.json: Not a directory",
         verified,
         programPath("vistrel"),
         "",
         {"--output", "{ROOT}/run.json/handoff.json"}},
        {"a manifest at the path of a folder",
         {},
         6,
         "{ROOT}/clips: Is a directory",
         verified,
         programPath("vistrel"),
         "",
         {"--output", "{ROOT}/clips"}},
    });
}

TEST(PublishFailure, IsReportedForARefusal) {
    expectFailures({
        {"in the dry run",
         {},
         7,
         "Vistrel refused the manifest in the dry run. Nothing was imported.",
         written,
         programPath("vistrel"),
         "not-ok"},
        {"in the import",
         {},
         7,
         "Vistrel refused the import.",
         written + "Checked   Vistrel accepts the film\n",
         programPath("reluctant_importer")},
    });
}

} // namespace

} // namespace kinovane::test
