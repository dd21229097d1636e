// SPDX-License-Identifier: Apache-2.0

#include <type_traits>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

namespace kinovane::test {
namespace {

static_assert(std::is_base_of_v<std::exception, FilmProjectError>);
static_assert(std::is_nothrow_copy_constructible_v<FilmProjectError>);
static_assert(std::is_nothrow_copy_assignable_v<FilmProjectError>);
static_assert(std::is_convertible_v<FilmProjectError::missingRunManifest, FilmProjectError>);
static_assert(std::is_convertible_v<FilmProjectError::missingProject, FilmProjectError>);
static_assert(std::is_convertible_v<FilmProjectError::unsupportedContract, FilmProjectError>);
static_assert(std::is_convertible_v<FilmProjectError::invalidProject, FilmProjectError>);
static_assert(std::is_convertible_v<FilmProjectError::Case, FilmProjectError>);
static_assert(!std::is_convertible_v<std::string, FilmProjectError>);
static_assert(
    std::is_same_v<FilmProjectError::Case,
                   std::variant<FilmProjectError::missingRunManifest, FilmProjectError::missingProject,
                                FilmProjectError::unsupportedContract, FilmProjectError::invalidProject>>);

struct Row {
    const char* sentence;
    FilmProjectError error;
    const char* description;
};

TEST(FilmProjectError, HasADescriptionForEachCase) {
    const Row rows[] = {
        {"no run manifest", FilmProjectError::missingRunManifest{"/films/Brèmes 1/run.json"},
         "No run.json exists at /films/Brèmes 1/run.json."},
        {"no project", FilmProjectError::missingProject{"/films/a/film-project.json"},
         "No film-project.json exists at /films/a/film-project.json."},
        {"another contract", FilmProjectError::unsupportedContract{"quexrun/film-project.v2"},
         "Unsupported film contract: quexrun/film-project.v2."},
        {"an empty contract", FilmProjectError::unsupportedContract{""}, "Unsupported film contract: ."},
        {"a broken document", FilmProjectError::invalidProject{"treatment.json: title is missing"},
         "The film project could not be read: treatment.json: title is missing"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(row.error.errorDescription(), row.description);
        EXPECT_STREQ(row.error.what(), row.description);
    }
}

TEST(FilmProjectError, IsEqualByCaseAndPayload) {
    const FilmProjectError error = FilmProjectError::missingProject{"/a"};
    EXPECT_TRUE(error == FilmProjectError(FilmProjectError::missingProject{"/a"}));
    EXPECT_FALSE(error == FilmProjectError(FilmProjectError::missingProject{"/b"}));
    EXPECT_FALSE(error == FilmProjectError(FilmProjectError::missingRunManifest{"/a"}));
    EXPECT_FALSE(FilmProjectError(FilmProjectError::unsupportedContract{"x"}) ==
                 FilmProjectError(FilmProjectError::invalidProject{"x"}));
}

TEST(FilmProjectError, KeepsItsCaseAndTextWhenCopied) {
    FilmProjectError kept = FilmProjectError::invalidProject{"other"};
    try {
        throw FilmProjectError(FilmProjectError::unsupportedContract{"quexrun/film-project.v2"});
    } catch (const std::exception& error) {
        kept = dynamic_cast<const FilmProjectError&>(error);
    }
    EXPECT_STREQ(kept.what(), "Unsupported film contract: quexrun/film-project.v2.");
    const auto* contract = std::get_if<FilmProjectError::unsupportedContract>(&kept.value());
    ASSERT_NE(contract, nullptr);
    EXPECT_EQ(contract->identifier, "quexrun/film-project.v2");
}

TEST(FilmProjectError, IsUnchangedWhenMovedFrom) {
    FilmProjectError error = FilmProjectError::invalidProject{"why"};
    const FilmProjectError moved = std::move(error);
    EXPECT_EQ(moved, error); // NOLINT(bugprone-use-after-move): moving is copying here
}

} // namespace
} // namespace kinovane::test
