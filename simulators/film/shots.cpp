// SPDX-License-Identifier: Apache-2.0

#include "shots.hpp"

#include <algorithm>

#include "common/refusal.hpp"

namespace simulator::film {
namespace {

/// The number of the current take; 1 when there is none yet.
std::int64_t takeOf(const json::object& state) {
    return state.contains("take") ? integerOf(state, "take") : 1;
}

const json::object& stateOf(const json::object& project, const std::string& id) {
    for (const json::value& value : listOf(project, "shots"))
        if (const json::object& state = asRecord(value); textOf(state, "id") == id)
            return state;
    throw Refusal("the film's documents are damaged: the shot " + jsonQuoted(id) +
                  " is planned, but the project does not know it");
}

std::vector<Line> linesOf(const json::object& planned, const Shot& shot) {
    std::vector<Line> lines;
    for (const json::value& value : listOf(planned, "dialogue")) {
        const json::object& line = asRecord(value);
        const std::string number = std::to_string(lines.size() + 1);
        const std::int64_t start = std::min(millisecondsOf(line, "startSeconds"), shot.milliseconds);
        lines.push_back({"dialogue/" + shot.id + "-line-" + number + ".wav", textOf(line, "speaker"),
                         textOf(line, "text"), start,
                         std::min<std::int64_t>(2000, (shot.milliseconds - start) * 2 / 3)});
    }
    return lines;
}

} // namespace

std::vector<Shot> shotsOf(const json::object& project, const json::object& plan) {
    if (plan.empty())
        throw Refusal("This film has no production plan.");
    std::vector<Shot> shots;
    for (const json::value& value : listOf(plan, "shots")) {
        const json::object& planned = asRecord(value);
        Shot shot;
        shot.id = textOf(planned, "id");
        shot.take = takeOf(stateOf(project, shot.id));
        shot.startMilliseconds = durationOf(shots);
        shot.milliseconds = millisecondsOf(planned, "durationSeconds");
        shot.lines = linesOf(planned, shot);
        for (std::size_t number = 1; number <= listOf(planned, "soundEffects").size(); ++number)
            shot.effectPaths.push_back("effects/" + shot.id + "-effect-" + std::to_string(number) + ".wav");
        shots.push_back(std::move(shot));
    }
    if (shots.empty())
        throw Refusal("The production plan of this film has no shots.");
    return shots;
}

std::string takeNames(const std::vector<Shot>& shots) {
    std::string names;
    for (const Shot& shot : shots)
        names += (names.empty() ? "" : ", ") + shot.takeName();
    return names;
}

std::int64_t durationOf(const std::vector<Shot>& shots) {
    return shots.empty() ? 0 : shots.back().startMilliseconds + shots.back().milliseconds;
}

void markShot(json::object& project, const Shot& shot, const char* status) {
    if (json::object* state = findRecord(listOf(project, "shots"), "id", shot.id)) {
        (*state)["status"] = status;
        (*state)["take"] = shot.take;
        (*state)["selectedCandidate"] = 0;
    }
}

void beginNewTakes(json::object& project) {
    for (json::value& value : listOf(project, "shots")) {
        json::object& state = asRecord(value);
        if (optionalTextOf(state, "status") == newTake) {
            state["take"] = takeOf(state) + 1;
            state["status"] = "planned";
        }
    }
}

void copyShotStates(const json::object& project, json::object& plan) {
    if (plan.empty())
        return;
    for (const json::value& value : listOf(project, "shots")) {
        const json::object& state = asRecord(value);
        json::object* planned = findRecord(listOf(plan, "shots"), "id", textOf(state, "id"));
        if (planned == nullptr || !state.contains("take"))
            continue;
        const std::int64_t take = integerOf(state, "take");
        if (state.contains("status"))
            (*planned)["status"] = textOf(state, "status");
        (*planned)["take"] = take;
        (*planned)["selectedCandidate"] = 0;
        (*planned)["selectedSeed"] = integerOf(*planned, "seed") + take - 1;
    }
}

} // namespace simulator::film
