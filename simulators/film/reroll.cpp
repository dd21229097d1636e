// SPDX-License-Identifier: Apache-2.0

#include <array>

#include "changes.hpp"
#include "common/refusal.hpp"
#include "phases.hpp"
#include "shots.hpp"
#include "step.hpp"

namespace simulator::film {
namespace {

/// What shows or describes the takes of all shots together.
constexpr std::array<std::string_view, 17> dependentKinds{
    "take-selection",      "edit-block",       "edit-block-receipt", "rough-cut",
    "media-inspection",    "inspection-frame", "final-master",       "poster",
    "thumbnail",           "technical-review", "creative-review",    "review-frame",
    "review-package",      "human-review",     "delivery-master",    "delivery",
    "production-readiness"};
constexpr std::array<const char*, 7> dependentProof{"creation", "clips",       "assembly", "inspection",
                                                    "review",   "humanReview", "delivery"};

json::object& stateToArchive(json::object& project, const std::string& shotId) {
    json::object* state = findRecord(listOf(project, "shots"), "id", shotId);
    const std::string name = jsonQuoted(shotId);
    if (state == nullptr)
        throw Refusal("This film has no shot " + name + ".");
    if (optionalTextOf(*state, "status") == newTake)
        throw Refusal("The shot " + name + " is waiting for a new take already.");
    if (!state->contains("take") || findArtifact(project, "frames/" + shotId + ".png") == nullptr)
        throw Refusal("The shot " + name + " has no take yet.");
    return *state;
}

} // namespace

std::string reroll(Workspace& workspace, const std::string& shotId, const std::string& note) {
    expectNoJournal(workspace);
    json::object& project = workspace.project();
    phaseAfter(textOf(project, "phase"));
    json::object& state = stateToArchive(project, shotId);
    const std::int64_t take = integerOf(state, "take");

    Step step(workspace, "reroll");
    const std::string folder = "takes/" + shotId + "/take-" + std::to_string(take);
    step.archive("frames/" + shotId + ".png", folder + "/frame.png");
    step.archive("clips/" + shotId + ".mp4", folder + "/clip.mp4");
    for (const std::string_view kind : dependentKinds)
        step.removeKind(kind);
    state["status"] = newTake;
    addRequest(project, shotId, note, step.startedAt(), take);
    for (const char* flag : dependentProof)
        recordOf(project, "proof")[flag] = false;
    reopen(project);
    step.commit();
    return "Take " + std::to_string(take) + " of " + shotId +
           " has been put aside. Run the film to make the next one.";
}

} // namespace simulator::film
