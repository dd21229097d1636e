// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <string>

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

constexpr const char* documents[] = {"film-project.json", "production-plan.json", "treatment.json"};

/// What the error says behind "The film project could not be read: ", or what came instead.
std::string complaintOf(const fs::path& manifest) {
    try {
        static_cast<void>(FilmProjectLoader::load(manifest));
        return "was loaded";
    } catch (const FilmProjectError& error) {
        const auto* invalid = std::get_if<FilmProjectError::invalidProject>(&error.value());
        if (invalid == nullptr)
            return "another case: " + error.errorDescription();
        EXPECT_EQ(error.errorDescription(), "The film project could not be read: " + invalid->description);
        return invalid->description;
    }
}

void makeSocket(const fs::path& location) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    location.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

class BrokenDocument : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        directory_.write("run.json", "");
        directory_.write("film-project.json", smallestProject());
        directory_.write("production-plan.json", encodeJSON(FilmProductionPlan{}));
        directory_.write("treatment.json", encodeJSON(FilmTreatment{}));
        ASSERT_EQ(complaint(), "was loaded");
    }

    std::string complaint() const { return complaintOf(directory_ / "run.json"); }

    TemporaryDirectory directory_;
    const std::string name_ = GetParam();
    const fs::path location_ = directory_ / GetParam();
};

struct ContentRow {
    const char* sentence;
    std::string content;
    const char* complaint;
};

TEST_P(BrokenDocument, WhatItHoldsIsWrong) {
    const std::string whole = contentOf(location_);
    const std::string firstKey = name_ == "treatment.json" ? "title" : "contractVersion";
    const std::string missing = firstKey + " is missing";
    const std::string cut =
        "line 1, column " + std::to_string(whole.size()) + ": the document ends too early";
    const std::string trailing =
        "line 1, column " + std::to_string(whole.size() + 1) + ": something follows the end of the document";
    const ContentRow rows[] = {
        {"nothing", "", "line 1, column 1: the document ends too early"},
        {"an empty object", "{}", missing.c_str()},
        {"a list", "[]", "expected an object, found a list"},
        {"cut short by one byte", whole.substr(0, whole.size() - 1), cut.c_str()},
        {"twice", whole + whole, trailing.c_str()},
        {"no JSON", "film", "line 1, column 2: this is not valid JSON"},
        {"not UTF-8", "{\n\"title\":\"Br\xE8mes\"}", "line 2, column 12: the text is not UTF-8"},
        {"nested very deep", std::string(2'000'000, '['),
         "line 1, column 513: nested more than 512 levels deep"},
        {"nested very deep under an unknown key", R"({"x":)" + std::string(512, '['),
         "line 1, column 517: nested more than 512 levels deep"},
        {"only NUL bytes", std::string(4096, '\0'), "line 1, column 1: this is not valid JSON"},
    };
    for (const ContentRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        directory_.write(name_, row.content);
        EXPECT_EQ(complaint(), name_ + ": " + row.complaint);
    }
}

struct PlaceRow {
    const char* sentence;
    std::function<void(const fs::path&)> make;
    const char* complaint;
};

TEST_P(BrokenDocument, SomethingElseStandsInItsPlace) {
    const auto notOrdinary = "this is not an ordinary file";
    const PlaceRow rows[] = {
        {"a directory", [](const fs::path& place) { fs::create_directory(place); }, "Is a directory"},
        {"a FIFO that nobody writes to",
         [](const fs::path& place) { EXPECT_EQ(::mkfifo(place.c_str(), 0644), 0); }, notOrdinary},
        {"a socket", makeSocket, notOrdinary},
        {"a device without end", [](const fs::path& place) { fs::create_symlink("/dev/zero", place); },
         notOrdinary},
        {"an empty device", [](const fs::path& place) { fs::create_symlink("/dev/null", place); },
         notOrdinary},
        {"a file of more than 256 MiB",
         [this](const fs::path& place) {
             directory_.write(name_, "");
             fs::resize_file(place, (std::uintmax_t{256} << 20U) + 1);
         },
         "File too large"},
    };
    for (const PlaceRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        fs::remove(location_);
        row.make(location_);
        EXPECT_EQ(complaint(), name_ + ": " + row.complaint);
    }
}

TEST_P(BrokenDocument, ALinkThatLeadsNowhereIsAnAbsentDocument) {
    fs::remove(location_);
    fs::create_symlink("nowhere", location_);
    if (name_ == "film-project.json") {
        EXPECT_EQ(complaint(), "another case: No film-project.json exists at " + location_.string() + ".");
        return;
    }
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(directory_ / "run.json");
    EXPECT_EQ(snapshot.productionPlan.has_value(), name_ != "production-plan.json");
    EXPECT_EQ(snapshot.treatment.has_value(), name_ != "treatment.json");
}

TEST_P(BrokenDocument, ALinkToADocumentIsFollowed) {
    fs::create_directory(directory_ / "elsewhere");
    fs::rename(location_, directory_ / "elsewhere/document");
    fs::create_symlink("elsewhere/document", location_);
    EXPECT_EQ(complaint(), "was loaded");
}

TEST_P(BrokenDocument, ItMayNotBeRead) {
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(location_, fs::perms::none);
    EXPECT_EQ(asOrdinaryUser([this] { return complaint(); }), name_ + ": Permission denied");
}

INSTANTIATE_TEST_SUITE_P(Each, BrokenDocument, testing::ValuesIn(documents), [](const auto& each) {
    const std::string name = each.param;
    return name.substr(0, name.find_first_of("-."));
});

TEST(BrokenDocuments, TheFirstOneIsReported) {
    const TemporaryDirectory directory;
    directory.write("run.json", "");
    directory.write("film-project.json", smallestProject());
    directory.write("treatment.json", "{}");
    directory.write("production-plan.json", "{}");
    EXPECT_EQ(complaintOf(directory / "run.json"), "production-plan.json: contractVersion is missing");
    directory.write("film-project.json", "{}");
    EXPECT_EQ(complaintOf(directory / "run.json"), "film-project.json: contractVersion is missing");
}

TEST(BrokenDocuments, AWorkspaceThatMayNotBeSearchedSaysSo) {
    const TemporaryDirectory directory;
    directory.write("film/run.json", "");
    directory.write("film/film-project.json", smallestProject());
    fs::permissions(directory.path(), fs::perms::all);
    fs::permissions(directory / "film", fs::perms::owner_read);
    EXPECT_EQ(asOrdinaryUser([&] { return complaintOf(directory / "film/run.json"); }),
              "film-project.json: Permission denied");
}

} // namespace
} // namespace kinovane::test
