// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/ordinary_user.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// The description of the invalidProject error, or what happened instead.
std::string outcomeOfLoading(const fs::path& manifest) {
    try {
        static_cast<void>(FilmProjectLoader::load(manifest));
        return "loaded";
    } catch (const FilmProjectError& error) {
        const auto* invalid = std::get_if<FilmProjectError::invalidProject>(&error.value());
        if (invalid == nullptr)
            return "another case: " + error.errorDescription();
        EXPECT_EQ(error.errorDescription(), "The film project could not be read: " + invalid->description);
        return invalid->description;
    }
}

/// A workspace with all three documents.
struct CompleteWorkspace {
    CompleteWorkspace() {
        directory.write("run.json", "");
        directory.write("film-project.json", smallestProject());
        directory.write("production-plan.json", encodeJSON(FilmProductionPlan{}));
        directory.write("treatment.json", encodeJSON(FilmTreatment{}));
        EXPECT_EQ(outcome(), "loaded");
    }

    std::string outcome() const { return outcomeOfLoading(directory / "run.json"); }

    TemporaryDirectory directory;
};

struct DocumentRow {
    std::string name;
    const char* missingKey;
    const char* truncated;
    const char* repeated;
};

const DocumentRow documents[] = {
    {"film-project.json", "contractVersion is missing", "line 1, column 714: the document ends too early",
     "line 1, column 715: something follows the end of the document"},
    {"production-plan.json", "contractVersion is missing", "line 1, column 155: the document ends too early",
     "line 1, column 156: something follows the end of the document"},
    {"treatment.json", "title is missing", "line 1, column 100: the document ends too early",
     "line 1, column 101: something follows the end of the document"},
};

TEST(BrokenDocument, IsReportedByNameAndReason) {
    struct Row {
        const char* sentence;
        std::string content;
        const char* reason;
    };
    for (const DocumentRow& document : documents) {
        const CompleteWorkspace workspace;
        const std::string whole = contentOf(workspace.directory / document.name);
        const Row rows[] = {
            {"an empty file", "", "line 1, column 1: the document ends too early"},
            {"an empty object", "{}", document.missingKey},
            {"a list", "[]", "expected an object, found a list"},
            {"the last byte is missing", whole.substr(0, whole.size() - 1), document.truncated},
            {"the document twice", whole + whole, document.repeated},
            {"no JSON", "film", "line 1, column 2: this is not valid JSON"},
            {"not UTF-8", "{\n\"title\":\"Br\xE8mes\"}", "line 2, column 12: the text is not UTF-8"},
            {"nested too deep", std::string(2'000'000, '['),
             "line 1, column 513: nested more than 512 levels deep"},
            {"nested too deep under an unknown key", R"({"x":)" + std::string(512, '['),
             "line 1, column 517: nested more than 512 levels deep"},
            {"only NUL bytes", std::string(4096, '\0'), "line 1, column 1: this is not valid JSON"},
        };
        for (const Row& row : rows) {
            SCOPED_TRACE(document.name + ": " + row.sentence);
            workspace.directory.write(document.name, row.content);
            EXPECT_EQ(workspace.outcome(), document.name + ": " + row.reason);
        }
    }
}

void makeDirectory(const fs::path& location) { fs::create_directory(location); }

void makeFIFO(const fs::path& location) { EXPECT_EQ(::mkfifo(location.c_str(), 0644), 0); }

void makeSocket(const fs::path& location) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    location.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

void linkToZero(const fs::path& location) { fs::create_symlink("/dev/zero", location); }

void linkToNull(const fs::path& location) { fs::create_symlink("/dev/null", location); }

void makeLargeFile(const fs::path& location) {
    const int file = ::open(location.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    EXPECT_EQ(::ftruncate(file, (off_t{256} << 20U) + 1), 0);
    ::close(file);
}

TEST(BrokenDocument, IsRefusedWhenItIsNotAFileOfModerateSize) {
    struct Row {
        const char* sentence;
        void (*make)(const fs::path& location);
        const char* reason;
    };
    const Row rows[] = {
        {"a directory", makeDirectory, "Is a directory"},
        {"a FIFO without a writer", makeFIFO, "this is not an ordinary file"},
        {"a socket", makeSocket, "this is not an ordinary file"},
        {"an endless device", linkToZero, "this is not an ordinary file"},
        {"an empty device", linkToNull, "this is not an ordinary file"},
        {"a file of more than 256 MiB", makeLargeFile, "File too large"},
    };
    for (const DocumentRow& document : documents) {
        const CompleteWorkspace workspace;
        const fs::path location = workspace.directory / document.name;
        for (const Row& row : rows) {
            SCOPED_TRACE(document.name + ": " + row.sentence);
            fs::remove(location);
            row.make(location);
            EXPECT_EQ(workspace.outcome(), document.name + ": " + row.reason);
        }
    }
}

TEST(BrokenDocument, IsReportedWhenItMayNotBeRead) {
    for (const DocumentRow& document : documents) {
        SCOPED_TRACE(document.name);
        const CompleteWorkspace workspace;
        fs::permissions(workspace.directory.path(), fs::perms::all);
        fs::permissions(workspace.directory / document.name, fs::perms::none);
        EXPECT_EQ(asOrdinaryUser([&] { return workspace.outcome(); }), document.name + ": Permission denied");
    }
}

TEST(BrokenDocument, IsReportedWhenTheWorkspaceMayNotBeSearched) {
    const TemporaryDirectory directory;
    directory.write("film/run.json", "");
    directory.write("film/film-project.json", smallestProject());
    fs::permissions(directory.path(), fs::perms::all);
    fs::permissions(directory / "film", fs::perms::owner_read);
    EXPECT_EQ(asOrdinaryUser([&] { return outcomeOfLoading(directory / "film/run.json"); }),
              "film-project.json: Permission denied");
}

TEST(BrokenDocument, IsReportedInTheOrderOfReading) {
    const CompleteWorkspace workspace;
    workspace.directory.write("treatment.json", "{}");
    workspace.directory.write("production-plan.json", "{}");
    EXPECT_EQ(workspace.outcome(), "production-plan.json: contractVersion is missing");
    workspace.directory.write("film-project.json", "{}");
    EXPECT_EQ(workspace.outcome(), "film-project.json: contractVersion is missing");
}

TEST(LinkedDocument, IsRead) {
    for (const DocumentRow& document : documents) {
        SCOPED_TRACE(document.name);
        const CompleteWorkspace workspace;
        const fs::path location = workspace.directory / document.name;
        fs::create_directory(workspace.directory / "elsewhere");
        fs::rename(location, workspace.directory / "elsewhere/document");
        fs::create_symlink("elsewhere/document", location);
        EXPECT_EQ(workspace.outcome(), "loaded");
    }
}

TEST(LinkedDocument, IsAbsentWhenTheLinkIsBroken) {
    const CompleteWorkspace workspace;
    for (const char* const name : {"production-plan.json", "treatment.json"}) {
        fs::remove(workspace.directory / name);
        fs::create_symlink("nowhere", workspace.directory / name);
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(workspace.directory / "run.json");
        EXPECT_FALSE(film.productionPlan);
        EXPECT_EQ(film.treatment.has_value(), name == std::string("production-plan.json"));
    }
    const fs::path project = workspace.directory / "film-project.json";
    fs::remove(project);
    fs::create_symlink("nowhere", project);
    EXPECT_EQ(workspace.outcome(), "another case: No film-project.json exists at " + project.string() + ".");
}

} // namespace
} // namespace kinovane::test
