// SPDX-License-Identifier: Apache-2.0

// Simulates a libcrypto without SHA-256: this program replaces the function that fetches algorithms.

#include <span>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

extern "C" EVP_MD* EVP_MD_fetch(OSSL_LIB_CTX* /*context*/, const char* /*algorithm*/,
                                const char* /*properties*/) {
    return nullptr;
}

namespace kinovane::test {

namespace {

std::string errorOf(const std::function<void()>& operation) {
    try {
        operation();
        return "no error";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(MissingSHA256, IsReportedByEveryOperationThatNeedsIt) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(sampleFilm() / "run.json");
    const TemporaryDirectory directory;
    const auto target = directory / "handoff.json";
    struct Row {
        const char* sentence;
        std::function<void()> operation;
    };
    const Row rows[] = {
        {"the digest of bytes", [] { VistrelHandoffBuilder::sha256(std::span<const std::byte>()); }},
        {"the digest of a file", [] { VistrelHandoffBuilder::sha256(sampleFilm() / "run.json"); }},
        {"building", [&] { VistrelHandoffBuilder::build(film, "film"); }},
        {"an audit", [&] { VistrelHandoffBuilder::audit(film); }},
        {"writing", [&] { VistrelHandoffBuilder::write({}, target); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(errorOf(row.operation), "libcrypto on this machine has no SHA-256");
    }
    EXPECT_TRUE(namesIn(directory.path()).empty());
}

} // namespace

} // namespace kinovane::test
