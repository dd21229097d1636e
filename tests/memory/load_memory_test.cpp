// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "memory/document_templates.hpp"
#include "memory/hostile_documents.hpp"
#include "memory/record_types.hpp"
#include "support/heap_count.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

struct DocumentFile {
    std::string record;
    std::string file;
};

void PrintTo(const DocumentFile& row, std::ostream* stream) { *stream << row.record; }

const json::Shape& shapeOf(std::string_view record) {
    for (const RecordType& type : recordTypes())
        if (type.name == record)
            return *type.shape;
    throw std::logic_error("no such record");
}

/// The document with the supported contract version as its contractVersion.
std::string withContract(std::string document) {
    constexpr std::string_view before = R"("contractVersion":")";
    if (const std::size_t position = document.find(before); position != std::string::npos)
        document.insert(position + before.size(), "quexrun/film-project.v1");
    return document;
}

class LoadMemory : public testing::Test {
  protected:
    /// Whether the workspace was loaded.
    bool load() const {
        try {
            static_cast<void>(FilmProjectLoader::load(directory_ / "run.json"));
            return true;
        } catch (const FilmProjectError&) {
            return false;
        }
    }

    TemporaryDirectory directory_;
};

class LoadMemoryOf : public LoadMemory, public testing::WithParamInterface<DocumentFile> {};

TEST_P(LoadMemoryOf, IsBoundedByTheSizeOfTheDocument) {
    directory_.write("run.json", "");
    directory_.write("film-project.json", withContract(smallestDocument(shapeOf("FilmProject"))));
    forEachHostileDocument(shapeOf(GetParam().record), hostileSize, [&](const HostileDocument& document) {
        SCOPED_TRACE(document.sentence);
        const bool ofProject = GetParam().record == "FilmProject";
        directory_.write(GetParam().file, ofProject ? withContract(document.text) : document.text);
        bool accepted = false;
        const std::size_t peak = peakBytesOf([&] { accepted = load(); });
        if (!document.sentence.starts_with("contractVersion"))
            EXPECT_EQ(accepted, document.accepted);
        const double ratio = static_cast<double>(peak) / static_cast<double>(document.text.size());
        EXPECT_LT(ratio, document.accepted ? 32 : 8);
    });
}

// Each element takes two bytes in the document; a decoded shot takes several hundred.
TEST_F(LoadMemory, IsLittleMoreThanTheTextOfALongListOfWrongElements) {
    directory_.write("run.json", "");
    for (const bool complete : {true, false}) {
        SCOPED_TRACE(complete ? "complete" : "truncated");
        const std::string text =
            R"({"shots":[0)" + repeatedTo(8 * hostileSize, ",0") + (complete ? "]}" : "");
        directory_.write("film-project.json", text);
        bool accepted = true;
        const std::size_t peak = peakBytesOf([&] { accepted = load(); });
        EXPECT_FALSE(accepted);
        EXPECT_LT(peak, text.size() + 65'536);
    }
}

const auto nameOf = [](const auto& info) { return info.param.record; };
INSTANTIATE_TEST_SUITE_P(Document, LoadMemoryOf,
                         testing::Values(DocumentFile{"FilmProject", "film-project.json"},
                                         DocumentFile{"FilmProductionPlan", "production-plan.json"},
                                         DocumentFile{"FilmTreatment", "treatment.json"}),
                         nameOf);

} // namespace
} // namespace kinovane::test
