// SPDX-License-Identifier: Apache-2.0

#include "story.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "common/digest.hpp"
#include "seed.hpp"

namespace film {
namespace {

struct Person {
    const char *id, *name, *visual, *wardrobe, *voice;
};

struct Place {
    const char *id, *name, *visual, *ambience, *sound;
};

constexpr std::array<Person, 4> leads{
    {{"mira", "Mira", "Woman of forty, quick hands, grey streak", "Patched green coat", "Dry and warm"},
     {"tomasz", "Tomasz", "Tall man of sixty, careful steps", "Brown waistcoat, pocket watch",
      "Low, unhurried"},
     {"ines", "Inês", "Girl of ten, never quite still", "Yellow raincoat, wet shoes", "Bright and quick"},
     {"oke", "Oke", "Young man with a limp and a grin", "Striped jersey, rolled sleeves",
      "Hoarse, friendly"}}};
constexpr std::array<Person, 3> partners{
    {{"the-keeper", "The keeper", "Old woman behind a counter", "Black dress, white collar",
      "Clear and slow"},
     {"bruno", "Bruno", "Baker, flour to the elbows", "White apron", "Loud, then suddenly soft"},
     {"sefa", "Sefa", "Postwoman with an empty bag", "Blue uniform, red scarf", "Matter-of-fact"}}};
constexpr std::array<Place, 3> outside{
    {{"harbour", "The harbour", "Wet stones, masts, one lamp", "Small waves, ropes",
      "Ropes creaking on a mast"},
     {"hill-road", "The hill road", "Dry grass, a bend, the town far below", "Wind, crickets",
      "Wind through dry grass"},
     {"station", "The station", "Two platforms, a clock without hands", "A far train",
      "A train that does not stop"}}};
constexpr std::array<Place, 3> inside{
    {{"kitchen", "The kitchen", "A table, two cups, steam on the window", "A kettle",
      "A kettle before it sings"},
     {"workshop", "The workshop", "Tools on nails, one of them missing", "A clock ticking",
      "A drawer that sticks"},
     {"attic", "The attic", "Boxes with names on them", "Rain on the roof", "Rain on roof tiles"}}};
constexpr std::array<const char*, 3> questions{"Did you hear that?", "Were you going to tell me?",
                                               "Is it still there?"};
constexpr std::array<const char*, 3> answers{"I kept it. For you.", "Then we go now — together.",
                                             "It was here all the time."};

/// Everything about the story that is chosen by idea and title.
struct Choice {
    std::uint64_t seed;
    const Person *lead, *partner;
    const Place *first, *second;
    const char *question, *answer;
};

template <class List>
const auto& pick(const List& list, std::uint64_t seed, std::uint64_t counter) {
    return list[mixed(seed, counter) % list.size()];
}

Choice choiceOf(const Pitch& pitch) {
    const std::uint64_t seed = seedOf(pitch.title + '\n' + pitch.idea);
    return {seed,
            &pick(leads, seed, 1),
            &pick(partners, seed, 2),
            &pick(outside, seed, 3),
            &pick(inside, seed, 4),
            pick(questions, seed, 5),
            pick(answers, seed, 6)};
}

/// Quarters of a second are exact in every number format on the way.
std::array<std::int64_t, 3> shotMilliseconds(const Choice& choice, std::int64_t seconds) {
    const std::int64_t quarters = 4 * seconds;
    const auto first = quarters * (28 + static_cast<std::int64_t>(mixed(choice.seed, 7) % 8)) / 100;
    const auto second = quarters * (28 + static_cast<std::int64_t>(mixed(choice.seed, 8) % 8)) / 100;
    return {250 * first, 250 * second, 250 * (quarters - first - second)};
}

double seconds(std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000; }

json::object castMember(const Person& person, std::uint64_t seed) {
    return {{"id", person.id},         {"name", person.name},
            {"visual", person.visual}, {"wardrobe", person.wardrobe},
            {"voice", person.voice},   {"seed", shortSeed(seed)}};
}

json::object location(const Place& place, std::uint64_t seed) {
    return {{"id", place.id},
            {"name", place.name},
            {"visual", place.visual},
            {"ambience", place.ambience},
            {"seed", shortSeed(seed)}};
}

json::array listOfOne(json::object record) {
    json::array list;
    list.emplace_back(std::move(record));
    return list;
}

json::array dialogue(const Person& speaker, const char* text, std::int64_t shot) {
    return listOfOne({{"speaker", speaker.id},
                      {"text", text},
                      {"startSeconds", seconds(shot / 4)},
                      {"delivery", speaker.voice}});
}

json::array effects(const Place& place, std::int64_t shot, std::uint64_t seed) {
    return listOfOne({{"prompt", place.sound},
                      {"startSeconds", 0.0},
                      {"durationSeconds", seconds(std::min<std::int64_t>(shot, 1500))},
                      {"levelDb", -12.0},
                      {"seed", shortSeed(seed)}});
}

json::object shot(std::size_t number, std::int64_t length, const std::string& purpose,
                  const std::string& picture, const Place& place, std::uint64_t seed) {
    return {{"id", "shot-0" + std::to_string(number)},
            {"purpose", purpose},
            {"framePrompt", picture + ". " + place.visual},
            {"prompt", picture + ". The camera moves slowly closer."},
            {"durationSeconds", seconds(length)},
            {"seed", shortSeed(mixed(seed, 20 + number))},
            {"characters", json::array()},
            {"location", place.id},
            {"dialogue", json::array()},
            {"soundEffects", effects(place, length, mixed(seed, 30 + number))},
            {"transition", number == 3 ? "fade-out" : "cut"},
            {"status", "planned"},
            {"take", 1}};
}

json::array shots(const Choice& choice, const Pitch& pitch) {
    const auto lengths = shotMilliseconds(choice, pitch.seconds);
    const std::string lead = choice.lead->name;
    const std::string partner = choice.partner->name;
    json::object opening = shot(1, lengths[0], "Begin with the idea: " + pitch.idea, lead + " arrives alone",
                                *choice.first, choice.seed);
    opening["characters"] = textList({choice.lead->id});
    opening["dialogue"] = dialogue(*choice.lead, choice.question, lengths[0]);
    json::object turn =
        shot(2, lengths[1], "The turn, without a word", partner + " looks up", *choice.second, choice.seed);
    turn["characters"] = textList({choice.partner->id});
    json::object ending = shot(3, lengths[2], "Bring \"" + pitch.title + "\" home",
                               lead + " and " + partner + ", side by side", *choice.first, choice.seed);
    ending["characters"] = textList({choice.lead->id, choice.partner->id});
    ending["dialogue"] = dialogue(*choice.partner, choice.answer, lengths[2]);

    json::array all;
    all.emplace_back(std::move(opening));
    all.emplace_back(std::move(turn));
    all.emplace_back(std::move(ending));
    return all;
}

} // namespace

std::string projectIdOf(const Pitch& pitch) {
    return "film-" + simulator::digestOf(pitch.title + '\n' + pitch.idea).substr(0, 12);
}

json::object productionPlanOf(const Pitch& pitch) {
    const Choice choice = choiceOf(pitch);
    json::array cast;
    cast.emplace_back(castMember(*choice.lead, mixed(choice.seed, 10)));
    cast.emplace_back(castMember(*choice.partner, mixed(choice.seed, 11)));
    json::array locations;
    locations.emplace_back(location(*choice.first, mixed(choice.seed, 12)));
    locations.emplace_back(location(*choice.second, mixed(choice.seed, 13)));
    const json::object target{{"aspectRatio", "16:9"},
                              {"durationSeconds", static_cast<double>(pitch.seconds)},
                              {"fps", 24},
                              {"height", 36},
                              {"language", "en"},
                              {"width", 64}};
    return {{"contractVersion", "quexrun/film-production-plan.v1"},
            {"projectId", projectIdOf(pitch)},
            {"title", pitch.title},
            {"createdAt", pitch.createdAt},
            {"target", target},
            {"scorePrompt", "Slow chords that wait, and resolve only in the last shot"},
            {"cast", std::move(cast)},
            {"locations", std::move(locations)},
            {"shots", shots(choice, pitch)},
            {"plannedDurationSeconds", static_cast<double>(pitch.seconds)}};
}

json::object treatmentOf(const Pitch& pitch) {
    const Choice choice = choiceOf(pitch);
    const std::string lead = choice.lead->name;
    const std::string partner = choice.partner->name;
    const std::string asked = "“" + std::string(choice.question) + "”";
    const std::string answered = "“" + std::string(choice.answer) + "”";
    return {{"title", pitch.title},
            {"logline", lead + " meets " + partner + ", and one question changes the evening."},
            {"synopsis", pitch.idea + " " + lead + " asks: " + asked + " " + partner +
                             " takes a while to answer: " + answered},
            {"theme", "What is kept for somebody is never lost."},
            {"beats", textList({lead + " arrives and asks: " + asked, partner + " looks up",
                                partner + " answers: " + answered})},
            {"visualLanguage", "Plain shapes and one round light that wanders through every shot."},
            {"soundLanguage", "Hummed voices, one sound per place, slow chords underneath."}};
}

} // namespace film
