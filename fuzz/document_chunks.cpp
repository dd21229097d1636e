// SPDX-License-Identifier: Apache-2.0

// A document that is decoded in chunks, or checked in a first pass and stored in a second, gives the same
// record, or the same error, as the whole text does.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <variant>

#include "common/json/decoder.hpp"
#include "decoding.hpp"
#include "handoff/handoff_tables.hpp"
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

/// Gives a text in chunks, of which the first ends at `cut`.
class CutText {
  public:
    CutText(std::string_view text, std::size_t cut) : first_(text.substr(0, cut)), rest_(text.substr(cut)) {}

    std::size_t operator()(std::span<std::byte> buffer) {
        std::string_view& from = first_.empty() ? rest_ : first_;
        const std::size_t count = std::min(buffer.size(), from.size());
        if (count != 0)
            std::memcpy(buffer.data(), from.data(), count);
        from.remove_prefix(count);
        return count;
    }

  private:
    std::string_view first_;
    std::string_view rest_;
};

template <class Record, class Decode>
Outcome<Record> outcomeOf(Decode decode) {
    try {
        Record record{};
        decode(&record, json::shapeOf<Record>());
        return record;
    } catch (const JSONDecodingError& error) {
        return textsOf(error);
    }
}

template <class Record>
Outcome<Record> decodeInChunks(std::string_view text, std::size_t cut) {
    return outcomeOf<Record>([&](void* target, const json::Shape& shape) {
        if (!json::decodeInto(target, shape, CutText(text, cut), text.size()))
            json::checkAndDecodeInto(target, shape, text);
    });
}

template <class Record>
Outcome<Record> decodeInTwoPasses(std::string_view text) {
    return outcomeOf<Record>(
        [&](void* target, const json::Shape& shape) { json::checkAndDecodeInto(target, shape, text); });
}

struct Compare {
    std::size_t choice;

    template <class Record>
    void operator()(std::string_view text) const {
        const std::size_t cut = choice % (text.size() + 1);
        const Outcome<Record> whole = decodeWithinMemory<Record>(text);
        promise(whole == decodeInChunks<Record>(text, cut), "a document gives the same in chunks", text);
        promise(whole == decodeInTwoPasses<Record>(text), "a document gives the same in two passes", text);
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    if (size < 2)
        return 0;
    // The first two bytes choose where the document is cut.
    const std::size_t choice = data[0] * std::size_t{256} + data[1];
    Documents::apply(textOf(data, size).substr(2), Compare{choice});
    return 0;
}
