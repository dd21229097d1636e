// SPDX-License-Identifier: Apache-2.0

#include "story.hpp"

#include <algorithm>
#include <array>

#include "common/digest.hpp"

namespace simulator::film {
namespace {

/// A pseudo-random number made from a seed and a counter.
std::uint64_t mixed(std::uint64_t seed, std::uint64_t counter) {
    std::uint64_t value = seed + (counter + 1) * 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

std::uint64_t seedOf(const Pitch& pitch) {
    const std::string text = pitch.title + '\n' + pitch.idea;
    std::uint64_t seed = text.size();
    for (const char character : text)
        seed = mixed(seed, static_cast<unsigned char>(character));
    return seed;
}

/// A seed as the documents contain it.
std::int64_t shortSeed(std::uint64_t seed, std::uint64_t counter) {
    return static_cast<std::int64_t>(mixed(seed, counter) % 1000000);
}

/// The parts of the story that idea and title choose from the template.
struct Story {
    std::uint64_t seed;
    json::object constants, lead, partner, first, second;
    std::string question, answer;

    explicit Story(const Pitch& pitch)
        : seed(seedOf(pitch)), constants(documentTemplate("story.json")), lead(asRecord(pick("leads", 1))),
          partner(asRecord(pick("partners", 2))), first(asRecord(pick("exteriors", 3))),
          second(asRecord(pick("interiors", 4))), question(pick("questions", 5).as_string()),
          answer(pick("answers", 6).as_string()) {}

    const json::value& pick(std::string_view list, std::uint64_t counter) const {
        const json::array& all = listOf(constants, list);
        return all[mixed(seed, counter) % all.size()];
    }

    std::string leadName() const { return textOf(lead, "name"); }
    std::string partnerName() const { return textOf(partner, "name"); }
};

/// Quarters of a second, which every number format represents exactly.
std::array<std::int64_t, 3> shotMilliseconds(std::uint64_t seed, std::int64_t seconds) {
    const std::int64_t quarters = 4 * seconds;
    const auto first = quarters * (28 + static_cast<std::int64_t>(mixed(seed, 7) % 8)) / 100;
    const auto second = quarters * (28 + static_cast<std::int64_t>(mixed(seed, 8) % 8)) / 100;
    return {250 * first, 250 * second, 250 * (quarters - first - second)};
}

double seconds(std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000; }

json::object withSeed(json::object record, std::int64_t seed) {
    record.erase("sound");
    record["seed"] = seed;
    return record;
}

json::array recordList(const std::vector<json::object>& records) {
    return json::array(records.begin(), records.end());
}

json::array dialogue(const json::object& speaker, const std::string& text, std::int64_t shotLength) {
    return recordList({{{"speaker", textOf(speaker, "id")},
                        {"text", text},
                        {"startSeconds", seconds(shotLength / 4)},
                        {"delivery", textOf(speaker, "voice")}}});
}

json::array effects(const json::object& location, std::int64_t shotLength, std::int64_t seed) {
    return recordList({{{"prompt", textOf(location, "sound")},
                        {"startSeconds", 0.0},
                        {"durationSeconds", seconds(std::min<std::int64_t>(shotLength, 1500))},
                        {"levelDb", -12.0},
                        {"seed", seed}}});
}

json::object shot(const Story& story, std::uint64_t number, std::int64_t length, const std::string& purpose,
                  const std::string& picture, const json::object& location) {
    return {{"id", "shot-0" + std::to_string(number)},
            {"purpose", purpose},
            {"framePrompt", picture + ". " + textOf(location, "visual")},
            {"prompt", picture + ". The camera moves slowly closer."},
            {"durationSeconds", seconds(length)},
            {"seed", shortSeed(story.seed, 20 + number)},
            {"characters", json::array()},
            {"location", textOf(location, "id")},
            {"dialogue", json::array()},
            {"soundEffects", effects(location, length, shortSeed(story.seed, 30 + number))},
            {"transition", number == 3 ? "fade-out" : "cut"},
            {"status", "planned"},
            {"take", 1}};
}

json::array shots(const Story& story, const Pitch& pitch) {
    const auto lengths = shotMilliseconds(story.seed, pitch.seconds);
    const std::string leadId = textOf(story.lead, "id");
    const std::string partnerId = textOf(story.partner, "id");
    json::object opening = shot(story, 1, lengths[0], "Begin with the idea: " + pitch.idea,
                                story.leadName() + " arrives alone", story.first);
    opening["characters"] = textList({leadId});
    opening["dialogue"] = dialogue(story.lead, story.question, lengths[0]);
    json::object turn = shot(story, 2, lengths[1], "The turn, without a word",
                             story.partnerName() + " looks up", story.second);
    turn["characters"] = textList({partnerId});
    json::object ending =
        shot(story, 3, lengths[2], "Bring \"" + pitch.title + "\" home",
             story.leadName() + " and " + story.partnerName() + ", side by side", story.first);
    ending["characters"] = textList({leadId, partnerId});
    ending["dialogue"] = dialogue(story.partner, story.answer, lengths[2]);
    return recordList({opening, turn, ending});
}

} // namespace

std::string projectIdOf(const Pitch& pitch) {
    return "film-" + digestOf(pitch.title + '\n' + pitch.idea).substr(0, 12);
}

json::object productionPlanOf(const Pitch& pitch) {
    const Story story(pitch);
    const auto length = static_cast<double>(pitch.seconds);
    json::object target = recordOf(story.constants, "target");
    target["durationSeconds"] = length;
    return {{"contractVersion", "quexrun/film-production-plan.v1"},
            {"projectId", projectIdOf(pitch)},
            {"title", pitch.title},
            {"createdAt", pitch.createdAt},
            {"target", target},
            {"scorePrompt", textOf(story.constants, "scorePrompt")},
            {"cast", recordList({withSeed(story.lead, shortSeed(story.seed, 10)),
                                 withSeed(story.partner, shortSeed(story.seed, 11))})},
            {"locations", recordList({withSeed(story.first, shortSeed(story.seed, 12)),
                                      withSeed(story.second, shortSeed(story.seed, 13))})},
            {"shots", shots(story, pitch)},
            {"plannedDurationSeconds", length}};
}

json::object treatmentOf(const Pitch& pitch) {
    const Story story(pitch);
    const std::string lead = story.leadName();
    const std::string partner = story.partnerName();
    const std::string asked = "“" + story.question + "”";
    const std::string answered = "“" + story.answer + "”";
    return {{"title", pitch.title},
            {"logline", lead + " meets " + partner + ", and one question changes the evening."},
            {"synopsis", pitch.idea + " " + lead + " asks: " + asked + " " + partner +
                             " takes a while to answer: " + answered},
            {"theme", textOf(story.constants, "theme")},
            {"beats", textList({lead + " arrives and asks: " + asked, partner + " looks up",
                                partner + " answers: " + answered})},
            {"visualLanguage", textOf(story.constants, "visualLanguage")},
            {"soundLanguage", textOf(story.constants, "soundLanguage")}};
}

} // namespace simulator::film
