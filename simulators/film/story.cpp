// SPDX-License-Identifier: Apache-2.0

#include "story.hpp"

#include <algorithm>
#include <array>
#include <map>

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

using Values = std::map<std::string, std::string, std::less<>>;

/// Replaces names in braces, such as {lead.name}, by their values.
std::string filled(std::string_view text, const Values& values) {
    std::string out;
    while (!text.empty()) {
        const std::size_t open = std::min(text.find('{'), text.size());
        out += text.substr(0, open);
        const std::size_t close = text.find('}', open);
        if (close == std::string_view::npos)
            break;
        out += values.find(text.substr(open + 1, close - open - 1))->second;
        text.remove_prefix(close + 1);
    }
    return out;
}

void fill(json::value& value, const Values& values) {
    if (json::object* object = value.if_object())
        for (auto& member : *object)
            fill(member.value(), values);
    else if (json::array* array = value.if_array())
        for (json::value& element : *array)
            fill(element, values);
    else if (value.is_string())
        value = filled(value.get_string(), values);
}

/// The plan or the treatment of the template, with the people and locations that idea and title choose.
json::object storyDocument(const Pitch& pitch, std::string_view name) {
    json::object story = documentTemplate("story.json");
    const std::uint64_t seed = seedOf(pitch);
    const auto pick = [&](std::string_view list, std::uint64_t counter) {
        const json::array& all = listOf(story, list);
        return all[static_cast<std::size_t>(mixed(seed, counter) % all.size())];
    };
    Values values{{"idea", pitch.idea},
                  {"title", pitch.title},
                  {"question", std::string(pick("questions", 5).as_string())},
                  {"answer", std::string(pick("answers", 6).as_string())}};
    const std::map<std::string, json::value> roles{{"lead", pick("leads", 1)},
                                                   {"partner", pick("partners", 2)},
                                                   {"first", pick("exteriors", 3)},
                                                   {"second", pick("interiors", 4)}};
    for (const auto& [role, record] : roles)
        for (const auto& member : asRecord(record))
            values.emplace(role + "." + std::string(member.key()), member.value().as_string());
    fill(story[name], values);
    return recordOf(story, name);
}

/// Quarters of a second, which every number format represents exactly.
std::array<std::int64_t, 3> shotMilliseconds(std::uint64_t seed, std::int64_t seconds) {
    const std::int64_t quarters = 4 * seconds;
    const auto first = quarters * (28 + static_cast<std::int64_t>(mixed(seed, 7) % 8)) / 100;
    const auto second = quarters * (28 + static_cast<std::int64_t>(mixed(seed, 8) % 8)) / 100;
    return {250 * first, 250 * second, 250 * (quarters - first - second)};
}

double seconds(std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000; }

void setSeeds(json::array& records, std::uint64_t seed, std::uint64_t counter) {
    for (json::value& record : records)
        asRecord(record)["seed"] = shortSeed(seed, counter++);
}

/// Sets the times of a shot of this length.
void setTimes(json::object& shot, std::int64_t length) {
    shot["durationSeconds"] = seconds(length);
    for (json::value& line : listOf(shot, "dialogue"))
        asRecord(line)["startSeconds"] = seconds(length / 4);
    for (json::value& effect : listOf(shot, "soundEffects"))
        asRecord(effect)["durationSeconds"] = seconds(std::min<std::int64_t>(length, 1500));
}

} // namespace

std::string projectIdOf(const Pitch& pitch) {
    return "film-" + digestOf(pitch.title + '\n' + pitch.idea).substr(0, 12);
}

json::object productionPlanOf(const Pitch& pitch) {
    json::object plan = storyDocument(pitch, "plan");
    const std::uint64_t seed = seedOf(pitch);
    plan["projectId"] = projectIdOf(pitch);
    plan["createdAt"] = pitch.createdAt;
    plan["plannedDurationSeconds"] = static_cast<double>(pitch.seconds);
    recordOf(plan, "target")["durationSeconds"] = static_cast<double>(pitch.seconds);
    setSeeds(listOf(plan, "cast"), seed, 10);
    setSeeds(listOf(plan, "locations"), seed, 12);
    setSeeds(listOf(plan, "shots"), seed, 21);
    const auto lengths = shotMilliseconds(seed, pitch.seconds);
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        json::object& shot = asRecord(listOf(plan, "shots")[index]);
        setTimes(shot, lengths[index]);
        setSeeds(listOf(shot, "soundEffects"), seed, 31 + index);
    }
    return plan;
}

json::object treatmentOf(const Pitch& pitch) { return storyDocument(pitch, "treatment"); }

} // namespace simulator::film
