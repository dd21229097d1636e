// SPDX-License-Identifier: Apache-2.0

// Every reply of an external program is decoded, and the functions of the record return correct results, or
// it is refused with a legible message.

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "decoding.hpp"
#include "record_choice.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

using Replies = RecordChoice<FilmStatusResponse, FilmVistrelExportReceipt, PiAgentLaunchSpec,
                             VistrelImportReceipt, QuexRunAgentStatus, QuexRunAgentModel, QuexRunAgentPi,
                             FilmReviewRequest, FilmIssue, FilmProof>;

template <class Record>
void checkRecord(const Record& /*record*/) {}

void checkRecord(const FilmReviewRequest& request) {
    promise(request.id() == request.shotId + ":" + request.recordedAt,
            "a review request's id consists of shot and time", request.id());
}

void checkRecord(const FilmIssue& issue) { promise(issue.id() == issue.code, "an issue's id is its code"); }

void checkRecord(const FilmProof& proof) {
    int complete = 0;
    for (const bool step :
         {proof.creation, proof.clips, proof.assembly, proof.dialogue, proof.sound, proof.captions,
          proof.inspection, proof.review, proof.humanReview, proof.delivery})
        complete += step ? 1 : 0;
    promise(proof.completedCount() == complete, "the complete steps are counted");
}

void checkRecord(const FilmStatusResponse& status) {
    for (const FilmReviewRequest& request : status.reviewRequests)
        checkRecord(request);
    for (const FilmIssue& issue : status.issues)
        checkRecord(issue);
    checkRecord(status.proof);
}

/// No usable model is better than the best, and no earlier one is as good.
void checkRecord(const QuexRunAgentStatus& status) {
    const auto best = status.bestInstalledModel();
    bool found = false;
    for (const QuexRunAgentModel& model : status.models) {
        if (!model.installed || !model.startableByQuexRun)
            continue;
        promise(best.has_value(), "some model is best when one is usable");
        promise(model.recommendedUnifiedMemoryGB <= best->recommendedUnifiedMemoryGB,
                "no usable model has more memory than the best", model.id);
        if (!found && model.recommendedUnifiedMemoryGB == best->recommendedUnifiedMemoryGB) {
            promise(model == *best, "the first of several best models is chosen", model.id);
            found = true;
        }
    }
    promise(found == best.has_value(), "the best model is one of the usable ones");
}

struct CheckReply {
    template <class Record>
    void operator()(std::string_view document) const {
        const auto outcome = decodeWithinMemory<Record>(document);
        if (const auto* record = std::get_if<Record>(&outcome))
            checkRecord(*record);
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    Replies::apply(textOf(data, size), CheckReply());
    return 0;
}
