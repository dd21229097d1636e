// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

const std::map<std::string, std::string> withoutOpener{{"PATH", "/nonexistent"}};

/// A film with a clip of its only shot, and the opener that records its arguments.
struct OpenableFilm {
    OpenableFilm() {
        workspace.add("shot-clip", "clips/s1.mp4", "clip");
        workspace.add("poster", "poster.png", "poster");
        workspace.add("rough-cut", "cuts/rough.mp4", "cut");
        write();
    }

    void write() const {
        writeDocuments(workspace);
        workspace.directory.write("run.json", "");
    }

    std::string path(const std::string& name) const { return (workspace.directory / name).string(); }
    std::string folder() const { return workspace.directory.path().string(); }

    Outcome open(std::vector<std::string> arguments,
                 std::map<std::string, std::string> environment = {}) const {
        arguments.insert(arguments.begin(), "open");
        environment.emplace("PATH", FILE_OPENER_FOLDER);
        environment.emplace("OPENER_LOG", log.path() / "log");
        return runCommandLineTool(std::move(arguments), std::move(environment));
    }

    /// What the opener was called with.
    std::string opened() const {
        return fs::exists(log.path() / "log") ? contentOf(log.path() / "log") : std::string();
    }

    WorkspaceMaker workspace;
    TemporaryDirectory log;
};

TEST(Open, OpensAFileOfTheFilm) {
    const OpenableFilm film;
    const struct {
        const char* sentence;
        std::vector<std::string> arguments;
        const char* file;
    } rows[]{
        {"a shot", {"s1", film.folder()}, "clips/s1.mp4"},
        {"the poster", {"poster", film.folder()}, "poster.png"},
        {"the best cut, with the film as the only argument", {film.folder()}, "cuts/rough.mp4"},
        {"the best cut, with the run manifest", {film.path("run.json")}, "cuts/rough.mp4"},
    };
    std::string opened;
    for (const auto& [sentence, arguments, file] : rows) {
        EXPECT_EQ(film.open(arguments), (Outcome{0, "", "Opened " + film.path(file) + "\n"})) << sentence;
        opened += film.path(file) + "\n";
        EXPECT_EQ(film.opened(), opened) << sentence;
    }
}

TEST(Open, GivesTheOpenerThePathThatWasChecked) {
    OpenableFilm film;
    fs::create_symlink("cuts/rough.mp4", film.path("link.mp4"));
    film.workspace.list("delivery-master", "link.mp4");
    film.write();
    EXPECT_EQ(film.open({film.folder()}), (Outcome{0, "", "Opened " + film.path("link.mp4") + "\n"}));
    EXPECT_EQ(film.opened(), film.path("cuts/rough.mp4") + "\n") << "links are followed before, not after";
}

TEST(Open, PrintsThePath) {
    const OpenableFilm film;
    EXPECT_EQ(film.open({"s1", film.folder(), "--print"}),
              (Outcome{0, film.path("clips/s1.mp4") + "\n", ""}));
    EXPECT_EQ(
        film.open({"poster", film.folder(), "--print", "--json"}),
        (Outcome{0, R"({"version":1,"path":")" + film.path("poster.png") + "\",\"opened\":false}\n", ""}));
    EXPECT_EQ(film.opened(), "");
}

TEST(Open, RefusesWhatIsNoFileOfTheFilm) {
    struct Row {
        std::string sentence;
        std::function<void(OpenableFilm&)> prepare;
        std::string what;
        int status;
        std::string message; ///< With "{}" for the film's folder.
    };
    const std::vector<Row> rows{
        {"an unknown shot", [](OpenableFilm&) {}, "s2", 2,
         "\"s2\" is not a shot of \"t\". Did you mean \"s1\"?"},
        {"a misspelt poster", [](OpenableFilm&) {}, "psoter", 2,
         "\"psoter\" is not a shot of \"t\". Did you mean \"poster\"?"},
        {"a recorded path outside the film",
         [](OpenableFilm& film) { film.workspace.list("poster", "/etc/passwd"); }, "poster", 4,
         "/etc/passwd is not opened: it lies outside the film's folder"},
        {"a path that leads out",
         [](OpenableFilm& film) { film.workspace.list("poster", "../../etc/passwd"); }, "poster", 4,
         "{}/../../etc/passwd is not opened: it leads out of the film's folder, to /etc/passwd"},
        {"a link that leads out",
         [](OpenableFilm& film) {
             fs::create_symlink("/etc/passwd", film.workspace.directory / "link.png");
             film.workspace.list("poster", "link.png");
         },
         "poster", 4, "{}/link.png is not opened: it leads out of the film's folder, to /etc/passwd"},
        {"a directory", [](OpenableFilm& film) { film.workspace.list("poster", "clips"); }, "poster", 4,
         "{}/clips is not opened: it is not a regular file"},
        {"a file that is missing", [](OpenableFilm& film) { film.workspace.list("poster", "lost.png"); },
         "poster", 4, "{}/lost.png: No such file or directory"},
        {"a path with a NUL byte",
         [](OpenableFilm& film) { film.workspace.list("poster", std::string_view("poster.png\0x", 12)); },
         "poster", 4, "$'{}/poster.png\\x00x' is not opened: its path is not valid"},
        {"a shot without a clip",
         [](OpenableFilm& film) {
             std::erase_if(film.workspace.snapshot.project.artifacts,
                           [](const auto& each) { return each.kind == "shot-clip"; });
         },
         "s1", 4, "the shot \"s1\" has no clip yet"},
    };
    for (const auto& [sentence, prepare, what, status, message] : rows) {
        OpenableFilm film;
        prepare(film);
        film.write();
        EXPECT_EQ(film.open({what, film.folder()}),
                  (Outcome{status, "", "kinovane: " + replaced(message, "{}", film.folder()) + "\n"}))
            << sentence;
        EXPECT_EQ(film.opened(), "") << sentence;
    }
}

TEST(Open, NamesTheFileWhenTheOpenerFails) {
    const OpenableFilm film;
    const std::string file = film.path("clips/s1.mp4");
#ifdef __APPLE__
    const std::string opener = "open";
#else
    const std::string opener = "xdg-open";
#endif
    EXPECT_EQ(
        film.open({"s1", film.folder()}, withoutOpener),
        (Outcome{5, "", "kinovane: " + opener + " was not found. Open the file by hand: " + file + "\n"}));
    EXPECT_EQ(film.open({"s1", film.folder()}, {{"OPENER_STATUS", "3"}}),
              (Outcome{5, "", "kinovane: " + opener + " exited 3. Open the file by hand: " + file + "\n"}));
}

TEST(Open, PassesAnAbsolutePath) {
    OpenableFilm film;
    film.workspace.add("poster", "-rf.png", "poster");
    film.write();
    EXPECT_EQ(film.open({"poster", film.folder()}).status, 0);
    EXPECT_EQ(film.opened(), film.path("-rf.png") + "\n");
}

} // namespace

} // namespace kinovane::test
