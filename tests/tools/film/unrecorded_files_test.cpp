// SPDX-License-Identifier: Apache-2.0

#include "film/unrecorded_files.hpp"

#include <filesystem>
#include <ostream>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"

namespace kinovane::tool {

void PrintTo(const UnrecordedFile& file, std::ostream* stream) {
    *stream << file.path << " (" << file.bytes.value_or(0) << ", " << file.remark << ")";
}

} // namespace kinovane::tool

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Files = std::vector<tool::UnrecordedFile>;

TEST(UnrecordedFiles, AreEverythingThatNoArtifactRecords) {
    WorkspaceMaker film;
    const TemporaryDirectory& root = film.directory;
    for (const char* document :
         {"film-project.json", "production-plan.json", "treatment.json", "vistrel-handoff.json"})
        root.write(document, "");
    film.add("shot-clip", "clips/a.mp4", "abc");
    film.add("shot-clip", "./clips/b.mp4", "abc");
    film.list("poster", "lost.png");
    EXPECT_EQ(tool::unrecordedFiles(film.snapshot), Files{});

    root.write("notes/treatment.json", "12345");
    root.write("clips/c\n.mp4", "1");
    ::mkfifo((root / "pipe").c_str(), 0600);
    fs::create_symlink("clips/a.mp4", root / "link.mp4");
    fs::create_directory_symlink("/", root / "everything");
    fs::create_directories(root / "empty/folder");
    EXPECT_EQ(tool::unrecordedFiles(film.snapshot), (Files{{"clips/c\n.mp4", 1, ""},
                                                           {"everything", {}, "a link to /"},
                                                           {"link.mp4", {}, "a link to clips/a.mp4"},
                                                           {"notes/treatment.json", 5, ""},
                                                           {"pipe", {}, "a named pipe"}}));
}

TEST(UnrecordedFiles, DoNotIncludeAFileThatIsRecordedThroughALink) {
    WorkspaceMaker film;
    film.directory.write("clips/a.mp4", "abc");
    fs::create_directory_symlink("clips", film.directory / "media");
    film.list("shot-clip", "media/a.mp4");
    EXPECT_EQ(tool::unrecordedFiles(film.snapshot), (Files{{"media", {}, "a link to clips"}}));
}

} // namespace

} // namespace kinovane::test
