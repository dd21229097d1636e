// SPDX-License-Identifier: Apache-2.0

// Every record with a writing form: a decoded record is encoded, and decoding that gives an equal record.

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "decoding.hpp"
#include "json_grammar.hpp"
#include "record_choice.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

using WritableRecords =
    RecordChoice<FilmApproval, FilmDepartmentTask, FilmShotState, FilmReviewRequest, FilmJob,
                 FilmProductionConfiguration, FilmModelConfiguration, FilmArtifact, FilmProof, FilmIssue,
                 FilmProductionPlan, FilmTarget, FilmCastMember, FilmLocation, FilmProductionShot,
                 FilmDialogueLine, FilmSoundEffect, FilmTreatment, VistrelHandoff, VistrelHandoffSource,
                 VistrelHandoffProject, VistrelHandoffShot, VistrelHandoffAsset, VistrelImportReceipt,
                 FilmStatusResponse, FilmVistrelExportReceipt, PiAgentLaunchSpec, QuexRunAgentModel,
                 QuexRunAgentPi, QuexRunAgentStatus>;

/// Records can be compared by value, because decoding never gives a NaN: JSON has none, and a number that is
/// too large for a double is refused. The sign of 0, which comparing ignores, shows in the encoded bytes.
template <class Record>
void checkRoundTrip(const Record& record, JSONFormat format) {
    const std::string document = encodeJSON(record, format);
    const GrammarResult grammar = parseByGrammar(document);
    promise(grammar.valid && grammar.isObject, "an encoded record is a JSON object", document);
    const Record decoded = decodeJSON<Record>(document);
    promise(decoded == record, "an encoded record is decoded as an equal one", document);
    promise(encodeJSON(decoded, format) == document, "encoding it again gives the same bytes", document);
}

struct CheckRoundTrips {
    template <class Record>
    void operator()(std::string_view document) const {
        const auto outcome = decodeWithinMemory<Record>(document);
        const auto* record = std::get_if<Record>(&outcome);
        if (record == nullptr)
            return;
        try {
            checkRoundTrip(*record, JSONFormat::compact);
            checkRoundTrip(*record, JSONFormat::pretty);
        } catch (const std::exception& error) {
            promise(false, "a decoded record can be encoded and decoded again", error.what());
        }
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    WritableRecords::apply(textOf(data, size), CheckRoundTrips());
    return 0;
}
