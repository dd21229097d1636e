// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(PublishInterruption, StopsTheImporter) {
    struct Row {
        std::string sentence, step;
        std::vector<std::string> options;
        std::string steps, message;
        bool isManifestKept;
    };
    const PublishFilm film;
    const TemporaryDirectory temporary;
    const std::vector<Row> rows{
        {"in the dry run",
         "check",
         {"--dry-run"},
         film.writtenInDryRun(),
         "Interrupted while Vistrel checked the film. Nothing was imported.",
         false},
        {"in the check before the import",
         "check",
         {},
         film.written(),
         "Interrupted while Vistrel checked the film. The manifest was written, and nothing was imported.",
         true},
        {"in the import",
         "import",
         {},
         film.written() + nothingChanged + "Checked   Vistrel accepts the film\n",
         "The import was interrupted: Vistrel's library may have changed.",
         true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<std::string> options = row.options;
        options.insert(options.end(), {"--vistrel", programPath("interrupting_importer")});
        EXPECT_EQ(film.publish(options, {{"INTERRUPT", row.step}, {"TMPDIR", temporary.path().string()}}),
                  (Outcome{128 + SIGINT, "", row.steps + "kinovane: " + row.message + "\n"}));
        EXPECT_EQ(fs::exists(film.manifest()), row.isManifestKept);
        EXPECT_EQ(namesIn(temporary.path()), std::vector<std::string>());
    }
}

TEST(PublishInterruption, IsAnErrorInJSON) {
    const PublishFilm film;
    EXPECT_EQ(
        film.publish({"--json", "--vistrel", programPath("interrupting_importer")},
                     {{"INTERRUPT", "import"}}),
        (Outcome{
            128 + SIGINT, "",
            R"({"version":1,"error":{"kind":"interrupted","status":130,"message":"The import was interrupted: )"
            R"(Vistrel's library may have changed."}})"
            "\n"}));
}

/// The ends of a pipe, which a program inherits only as its standard streams.
std::pair<Descriptor, Descriptor> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Reads from the descriptor until the text appears.
std::string readUntil(int descriptor, const std::string& text) {
    std::string result;
    std::array<char, 4096> buffer{};
    while (result.find(text) == std::string::npos) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count <= 0)
            break;
        result.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return result;
}

// A file without blocks on the disk, which takes minutes to read.
TEST(PublishInterruption, StopsTheVerificationWithinAFile) {
    constexpr std::int64_t largeSize = std::int64_t{1} << 38U;
    PublishFilm film;
    film.workspace.list("delivery-master", "film.mp4").bytes = largeSize;
    film.workspace.directory.write("film.mp4", "");
    fs::resize_file(film.root() / "film.mp4", largeSize);
    writeDocuments(film.workspace);
    for (const int signal : {SIGINT, SIGTERM}) {
        auto [readEnd, writeEnd] = makePipe();
        const pid_t tool = startCommandLineTool({"publish", film.root().string(), "--manifest-only"},
                                                STDOUT_FILENO, writeEnd.get());
        writeEnd = Descriptor();
        std::string err = readUntil(readEnd.get(), film.loaded());
        ::kill(tool, signal);
        EXPECT_EQ(exitStatusOf(tool), 128 + signal);
        err += readUntil(readEnd.get(), "until the end");
        EXPECT_EQ(err,
                  film.loaded() + "kinovane: Interrupted before all files were verified. " + nothingWritten);
        EXPECT_FALSE(fs::exists(film.manifest()));
    }
}

TEST(PublishInterruption, IsNotCausedByAClosedPipe) {
    const PublishFilm film;
    const Variable library("VISTREL_LIBRARY", film.library().string());
    auto [readEnd, writeEnd] = makePipe();
    readEnd = Descriptor();
    const fs::path messages = film.home / "messages";
    const Descriptor err(::open(messages.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    for (const int messagesEnd : {writeEnd.get(), err.get()}) {
        const pid_t tool = startCommandLineTool(
            {"publish", film.root().string(), "--vistrel", programPath("vistrel"), "--quiet"}, writeEnd.get(),
            messagesEnd);
        EXPECT_EQ(exitStatusOf(tool), 6);
        EXPECT_TRUE(fs::exists(film.project() / "manifest.json"));
        fs::remove_all(film.library());
    }
    EXPECT_EQ(contentOf(messages), replaced(film.loaded(), "Loaded    t\n", "") +
                                       "kinovane: standard output: Broken pipe\nThe film was imported.\n");
}

} // namespace

} // namespace kinovane::test
