// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "support/child_counts.hpp"
#include "support/recorder.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;

class VistrelClientArguments : public testing::Test {
  protected:
    std::vector<std::string> validated(const fs::path& manifest) const {
        EXPECT_TRUE(client_.validate(manifest).get().ok);
        return recorder_.arguments();
    }
    std::vector<std::string> imported(const fs::path& manifest) const {
        EXPECT_TRUE(client_.import(manifest).get().ok);
        return recorder_.arguments();
    }

    const Recorder recorder_{R"({"ok":true,"project_id":"p"})"};
    const VistrelClient client_{programPath("recorder")};
};

TEST_F(VistrelClientArguments, AreThoseOfTheImporter) {
    EXPECT_THAT(validated("/tmp/h.json"),
                ElementsAre("production", "import-film", "/tmp/h.json", "--dry-run", "--output", "json"));
    EXPECT_THAT(imported("/tmp/h.json"),
                ElementsAre("production", "import-film", "/tmp/h.json", "--output", "json"));
}

TEST_F(VistrelClientArguments, KeepAnyPathAsOneArgument) {
    for (const std::string path :
         {"/tmp/my films/a lamp.json", "/tmp/$HOME;`id`\"'*.json", "/tmp/a\nb\t.json",
          "/tmp/Brèmes – 灯.json", "/tmp/ ", "/tmp/%20.json", "/tmp/--output"}) {
        EXPECT_THAT(validated(path),
                    ElementsAre("production", "import-film", path, "--dry-run", "--output", "json"));
        EXPECT_THAT(imported(path), ElementsAre("production", "import-film", path, "--output", "json"));
    }
}

TEST_F(VistrelClientArguments, MakeARelativePathAbsolute) {
    const std::string here = fs::current_path();
    EXPECT_THAT(imported("h.json"),
                ElementsAre("production", "import-film", here + "/h.json", "--output", "json"));
    EXPECT_THAT(imported("--dry-run"),
                ElementsAre("production", "import-film", here + "/--dry-run", "--output", "json"));
}

TEST_F(VistrelClientArguments, ExcludeAnEmptyPath) {
    const FilmToolError expected(
        FilmToolError::launchFailed{"the location of the handoff manifest is empty"});
    EXPECT_EQ(errorOf(client_.validate("")), expected);
    EXPECT_EQ(errorOf(client_.import("")), expected);
    EXPECT_FALSE(recorder_.ran());
}

// The other directory has no importer of this name, so a later lookup would fail.
TEST(VistrelClient, ResolvesARelativeProgramDuringTheCall) {
    const TemporaryDirectory directory;
    const Variable output("RECORDER_OUTPUT", R"({"ok":true,"project_id":"p"})");
    fs::create_directories(directory / "here/bin");
    fs::create_directories(directory / "there");
    fs::copy_file(programPath("recorder"), directory / "here/bin/vistrel");
    const fs::path before = fs::current_path();
    for (int round = 0; round < 20; ++round) {
        fs::current_path(directory / "here");
        Task<VistrelImportReceipt> task = VistrelClient("bin/vistrel").validate("/h.json");
        fs::current_path(directory / "there");
        EXPECT_EQ(failureOf(std::move(task)), "");
    }
    fs::current_path(before);
}

TEST(VistrelClient, KeepsTheNameAsGiven) {
    EXPECT_EQ(VistrelClient("vistrel").executable(), "vistrel");
    EXPECT_EQ(VistrelClient("a"), VistrelClient("a"));
    EXPECT_NE(VistrelClient("a"), VistrelClient("b"));
}

TEST(VistrelClient, DecodesReplies) {
    struct Row {
        std::string_view sentence;
        std::string output;
        VistrelImportReceipt expected;
    };
    const std::vector<Row> rows{
        {"the two required keys", R"({"ok":true,"project_id":"p"})", {true, "p", {}, {}, {}, {}, {}}},
        {"all keys",
         R"({"ok":true,"project_id":"p","episode_id":"e","imported_scenes":1,"imported_shots":2,"imported_assets":3,)"
         R"("project_url":"u"})",
         {true, "p", "e", 1, 2, 3, "u"}},
        {"nulls",
         R"({"ok":true,"project_id":"p","episode_id":null,"imported_shots":null})",
         {true, "p", {}, {}, {}, {}, {}}},
        {"a refusal", R"({"ok":false,"project_id":""})", {false, "", {}, {}, {}, {}, {}}},
        {"white space around the reply",
         " \r\n\t{\"ok\":true,\"project_id\":\"p\"}\n\n",
         {true, "p", {}, {}, {}, {}, {}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable output("RECORDER_OUTPUT", row.output);
        EXPECT_EQ(VistrelClient(programPath("recorder")).validate("/h.json").get(), row.expected);
        EXPECT_EQ(VistrelClient(programPath("recorder")).import("/h.json").get(), row.expected);
    }
}

TEST(VistrelClient, RefusesInvalidReplies) {
    struct Row {
        std::string_view sentence;
        std::string output;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an empty reply", "", "line 1, column 1: the document ends too early"},
        {"half a reply", "{\"ok\":true,\n", "line 2, column 1: the document ends too early"},
        {"a word", "done", "line 1, column 1: this is not valid JSON"},
        {"a second reply", R"({"ok":true,"project_id":"p"}{})",
         "line 1, column 29: something follows the end of the document"},
        {"no flag", R"({"project_id":"p"})", "ok is missing"},
        {"no project", R"({"ok":true})", "project_id is missing"},
        {"camel case", R"({"ok":true,"projectId":"p"})", "project_id is missing"},
        {"a flag that is a word", R"({"ok":"yes","project_id":"p"})",
         "ok: expected true or false, found a string"},
        {"a count with a fraction", R"({"ok":true,"project_id":"p","imported_shots":1.5})",
         "imported_shots: expected an integer, found 1.5"},
        {"a list", "[]", "expected an object, found a list"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable output("RECORDER_OUTPUT", row.output);
        EXPECT_EQ(errorOf(VistrelClient(programPath("recorder")).import("/h.json")),
                  FilmToolError(FilmToolError::invalidJSON{row.expected}));
    }
}

TEST(VistrelClient, ReportsFailuresToStartThroughTheTask) {
    const ProcessCounts before = countProcess();
    Task<VistrelImportReceipt> missing = VistrelClient("no-such-vistrel").validate("/h.json");
    EXPECT_EQ(errorOf(std::move(missing)),
              FilmToolError(FilmToolError::executableNotFound{"no-such-vistrel"}));
    Task<VistrelImportReceipt> directory = VistrelClient("/tmp").import("/h.json");
    EXPECT_EQ(errorOf(std::move(directory)), FilmToolError(FilmToolError::executableNotFound{"/tmp"}));
    Task<VistrelImportReceipt> cut =
        VistrelClient(programPath("recorder")).import(std::string("/tmp/cut\0short", 14));
    const FilmToolError error = errorOf(std::move(cut));
    EXPECT_TRUE(std::holds_alternative<FilmToolError::launchFailed>(error.value()));
    EXPECT_EQ(error.errorDescription(),
              "Could not launch film command: " + programPath("recorder") + ": an argument holds a NUL byte");
    EXPECT_EQ(settledCounts(before), before);
}

TEST(VistrelClient, RunsSeveralImportersAtOnce) {
    const Variable output("RECORDER_OUTPUT", R"({"ok":true,"project_id":"p"})");
    const VistrelClient client(programPath("recorder"));
    const ProcessCounts before = countProcess();
    std::vector<Task<VistrelImportReceipt>> tasks;
    for (int index = 0; index < 16; ++index)
        tasks.push_back(index % 2 == 0 ? client.validate("/h.json") : client.import("/h.json"));
    for (Task<VistrelImportReceipt>& task : tasks)
        EXPECT_EQ(task.get().projectId, "p");
    EXPECT_EQ(settledCounts(before), before);
}

} // namespace
} // namespace kinovane::test
