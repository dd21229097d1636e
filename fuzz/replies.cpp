// SPDX-License-Identifier: Apache-2.0

// Every reply of an outside program: it is read, and then answers what it is asked, or it is refused with a
// message that a person can read.

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
void ask(const Record& /*record*/) {}

void ask(const FilmReviewRequest& request) {
    promise(request.id() == request.shotId + ":" + request.recordedAt,
            "a review request's id is made of shot and time", request.id());
}

void ask(const FilmIssue& issue) { promise(issue.id() == issue.code, "an issue's id is its code"); }

void ask(const FilmProof& proof) {
    int complete = 0;
    for (const bool step :
         {proof.creation, proof.clips, proof.assembly, proof.dialogue, proof.sound, proof.captions,
          proof.inspection, proof.review, proof.humanReview, proof.delivery})
        complete += step ? 1 : 0;
    promise(proof.completedCount() == complete, "the complete steps are counted");
}

void ask(const FilmStatusResponse& status) {
    for (const FilmReviewRequest& request : status.reviewRequests)
        ask(request);
    for (const FilmIssue& issue : status.issues)
        ask(issue);
    ask(status.proof);
}

/// Nothing usable is better than the best, and nothing earlier is as good.
void ask(const QuexRunAgentStatus& status) {
    const auto best = status.bestInstalledModel();
    bool met = false;
    for (const QuexRunAgentModel& model : status.models) {
        if (!model.installed || !model.startableByQuexRun)
            continue;
        promise(best.has_value(), "some model is best when one is usable");
        promise(model.recommendedUnifiedMemoryGB <= best->recommendedUnifiedMemoryGB,
                "no usable model has more memory than the best", model.id);
        if (!met && model.recommendedUnifiedMemoryGB == best->recommendedUnifiedMemoryGB) {
            promise(model == *best, "the earliest of several best models is taken", model.id);
            met = true;
        }
    }
    promise(met == best.has_value(), "the best model is one of the usable ones");
}

struct Read {
    template <class Record>
    void operator()(std::string_view document) const {
        const auto outcome = decodeWithinMemory<Record>(document);
        if (const auto* record = std::get_if<Record>(&outcome))
            ask(*record);
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    Replies::apply(textOf(data, size), Read());
    return 0;
}
