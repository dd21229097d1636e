// SPDX-License-Identifier: Apache-2.0

// Every record that can be written: what was read is written, and what was written reads back as the same.

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

using Written =
    RecordChoice<FilmApproval, FilmDepartmentTask, FilmShotState, FilmReviewRequest, FilmJob,
                 FilmProductionConfiguration, FilmModelConfiguration, FilmArtifact, FilmProof, FilmIssue,
                 FilmProductionPlan, FilmTarget, FilmCastMember, FilmLocation, FilmProductionShot,
                 FilmDialogueLine, FilmSoundEffect, FilmTreatment, VistrelHandoff, VistrelHandoffSource,
                 VistrelHandoffProject, VistrelHandoffShot, VistrelHandoffAsset, VistrelImportReceipt,
                 FilmStatusResponse, FilmVistrelExportReceipt, PiAgentLaunchSpec, QuexRunAgentModel,
                 QuexRunAgentPi, QuexRunAgentStatus>;

/// Records are compared by value. That is safe, because no number that is unequal to itself comes out of
/// reading: JSON cannot say NaN, and what is too large for a double is refused. A lost sign of 0, which
/// comparing would not see, shows in the written bytes.
template <class Record>
void writeAndReadBack(const Record& record, JSONFormat format) {
    const std::string document = encodeJSON(record, format);
    const Reading reading = readByGrammar(document);
    promise(reading.valid && reading.isObject, "what is written is JSON", document);
    const Record again = decodeJSON<Record>(document);
    promise(again == record, "what is written reads back equal", document);
    promise(encodeJSON(again, format) == document, "writing again gives the same bytes", document);
}

struct ReadAndWrite {
    template <class Record>
    void operator()(std::string_view document) const {
        const auto outcome = decodeWithinMemory<Record>(document);
        const auto* record = std::get_if<Record>(&outcome);
        if (record == nullptr)
            return;
        try {
            writeAndReadBack(*record, JSONFormat::compact);
            writeAndReadBack(*record, JSONFormat::pretty);
        } catch (const std::exception& error) {
            promise(false, "what was read can be written and read again", error.what());
        }
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    Written::apply(textOf(data, size), ReadAndWrite());
    return 0;
}
