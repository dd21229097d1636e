// SPDX-License-Identifier: Apache-2.0

// A document in a file is read in pieces. Wherever the pieces meet, the answer is that of the whole text. So
// is that of the two passes which a document is read in when its values take much memory.

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include <unistd.h>

#include "common/files/descriptor.hpp"
#include "common/files/regular_file.hpp"
#include "common/json/decoder.hpp"
#include "handoff/handoff_tables.hpp"
#include "reading.hpp"
#include "record_choice.hpp"
#include "target.hpp"
#include "tooling/film_tool/reply_tables.hpp"
#include "workspace/brief_form.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"
#include "workspace/treatment_table.hpp"

namespace kinovane::fuzz {
namespace {

using Documents = RecordChoice<FilmTarget, FilmProject, FilmProductionPlan, FilmTreatment, FilmBrief,
                               FilmApproval, FilmSoundEffect, FilmProof>;

constexpr std::size_t pieceSize = std::size_t{64} << 10U;

/// A file that holds a piece of white space and then the text. Reading it from `cut` on gives a first piece
/// with just so many bytes of the text in it.
class PaddedFile {
  public:
    PaddedFile() {
        std::string name = (std::filesystem::temp_directory_path() / "kinovane-fuzz-XXXXXX").string();
        descriptor_ = Descriptor(::mkstemp(name.data()));
        ::unlink(name.c_str());
        const std::string space(pieceSize, ' ');
        if (!descriptor_ || ::pwrite(descriptor_.get(), space.data(), space.size(), 0) < 0)
            throw std::runtime_error("no temporary file");
    }

    /// Shares its place in the file with every other file given so far.
    RegularFile holding(std::string_view text, std::size_t cut) const {
        const auto length = static_cast<off_t>(pieceSize + text.size());
        Descriptor shared(::dup(descriptor_.get()));
        if (!shared || ::ftruncate(shared.get(), length) != 0 ||
            ::pwrite(shared.get(), text.data(), text.size(), pieceSize) < 0 ||
            ::lseek(shared.get(), static_cast<off_t>(cut), SEEK_SET) < 0)
            throw std::runtime_error("cannot fill the temporary file");
        return {std::move(shared), "document"};
    }

  private:
    Descriptor descriptor_;
};

template <class Record>
using Answer = std::variant<Record, Refusal>;

/// As `json::decodeFile` does, but with an open file.
template <class Record>
Answer<Record> readInPieces(RegularFile file, std::string_view text) {
    try {
        Record record{};
        if (!json::decodeInto(&record, json::shapeOf<Record>(), std::move(file)))
            json::checkAndDecodeInto(&record, json::shapeOf<Record>(), text);
        return record;
    } catch (const JSONDecodingError& error) {
        return refusalOf(error);
    }
}

/// In two passes over the whole text, whether or not its values take much memory.
template <class Record>
Answer<Record> readInTwoPasses(std::string_view text) {
    try {
        Record record{};
        json::checkAndDecodeInto(&record, json::shapeOf<Record>(), text);
        return record;
    } catch (const JSONDecodingError& error) {
        return refusalOf(error);
    }
}

struct Compare {
    std::size_t choice;

    template <class Record>
    void operator()(std::string_view text) const {
        static const PaddedFile file;
        if (text.starts_with("\xEF\xBB\xBF")) // Behind white space it would be no byte-order mark.
            return;
        const std::size_t cut = choice % (text.size() + 1);
        const Answer<Record> whole = readDocument<Record>(text);
        promise(whole == readInPieces<Record>(file.holding(text, cut), text),
                "a document gives the same in pieces", text);
        promise(whole == readInTwoPasses<Record>(text), "a document gives the same in two passes", text);
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    if (size < 2)
        return 0;
    // Two bytes say where the document is cut.
    const std::size_t choice = data[0] * std::size_t{256} + data[1];
    Documents::apply(textOf(data, size).substr(2), Compare{choice});
    return 0;
}
