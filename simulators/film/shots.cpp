// SPDX-License-Identifier: Apache-2.0

#include "shots.hpp"

#include <algorithm>

#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "seed.hpp"

namespace film {
namespace {

/// A take that is not there yet counts as the first.
std::int64_t takeOf(const json::object& state) {
    return state.contains("take") ? integerOf(state, "take") : 1;
}

const json::object& stateOf(const json::object& project, const std::string& id) {
    for (const json::value& value : listOf(project, "shots"))
        if (const json::object& state = asRecord(value); textOf(state, "id") == id)
            return state;
    throw simulator::Refusal("the film's documents are damaged: the shot " + simulator::jsonQuoted(id) +
                             " is planned, but the project does not know it");
}

std::vector<Line> linesOf(const json::object& planned, const Shot& shot) {
    std::vector<Line> lines;
    for (const json::value& value : listOf(planned, "dialogue")) {
        const json::object& line = asRecord(value);
        const std::string number = std::to_string(lines.size() + 1);
        const std::string text = textOf(line, "text");
        const std::int64_t start = std::min(millisecondsOf(line, "startSeconds"), shot.milliseconds);
        lines.push_back({"dialogue/" + shot.id + "-line-" + number + ".wav", textOf(line, "speaker"), text,
                         seedOf(text), start,
                         std::min<std::int64_t>(2000, (shot.milliseconds - start) * 2 / 3)});
    }
    return lines;
}

std::vector<Effect> effectsOf(const json::object& planned, const Shot& shot) {
    std::vector<Effect> effects;
    for (const json::value& value : listOf(planned, "soundEffects")) {
        const json::object& effect = asRecord(value);
        const std::string number = std::to_string(effects.size() + 1);
        effects.push_back(
            {"effects/" + shot.id + "-effect-" + number + ".wav",
             mixed(seedOf(textOf(effect, "prompt")), static_cast<std::uint64_t>(integerOf(effect, "seed"))),
             millisecondsOf(effect, "startSeconds"), millisecondsOf(effect, "durationSeconds"),
             numberOf(effect, "levelDb")});
    }
    return effects;
}

} // namespace

std::vector<Shot> shotsOf(const json::object& project, const json::object& plan) {
    if (plan.empty())
        throw simulator::Refusal("This film has no production plan.");
    std::vector<Shot> shots;
    std::int64_t clock = 0;
    for (const json::value& value : listOf(plan, "shots")) {
        const json::object& planned = asRecord(value);
        Shot shot;
        shot.id = textOf(planned, "id");
        shot.take = takeOf(stateOf(project, shot.id));
        shot.seed = mixed(static_cast<std::uint64_t>(integerOf(planned, "seed")),
                          static_cast<std::uint64_t>(shot.take));
        shot.startMilliseconds = clock;
        shot.milliseconds = millisecondsOf(planned, "durationSeconds");
        shot.lines = linesOf(planned, shot);
        shot.effects = effectsOf(planned, shot);
        clock += shot.milliseconds;
        shots.push_back(std::move(shot));
    }
    if (shots.empty())
        throw simulator::Refusal("The production plan of this film has no shots.");
    return shots;
}

void markShot(json::object& project, const Shot& shot, const char* status) {
    if (json::object* state = findById(listOf(project, "shots"), shot.id)) {
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
        json::object* planned = findById(listOf(plan, "shots"), textOf(state, "id"));
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

} // namespace film
