// SPDX-License-Identifier: Apache-2.0

#include "commands/shots.hpp"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/film_shots.hpp>

#include "film/film_location.hpp"
#include "film/shot_sounds.hpp"
#include "json/json_output.hpp"
#include "terminal/human_text.hpp"
#include "terminal/narrow_table.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

std::string statusOf(const FilmShot& shot) {
    return shot.state && shot.state->status ? *shot.state->status : shot.planned.status;
}

std::int64_t takeOf(const FilmShot& shot) {
    return shot.state && shot.state->take ? *shot.state->take : shot.planned.take;
}

std::string timeText(const std::optional<std::int64_t>& milliseconds) {
    return milliseconds ? durationText(static_cast<double>(*milliseconds) / 1000) : "?";
}

std::string mark(bool present) { return present ? styled(Style::good, "yes") : "no"; }

std::string dialogueText(const std::vector<FilmDialogueLine>& lines) {
    if (lines.empty())
        return "";
    const std::string count = lines.size() > 1 ? std::to_string(lines.size()) + " lines: " : "";
    return count + shown(lines.front().text);
}

std::string humanText(const FilmWorkspaceSnapshot& film, const std::vector<FilmShot>& shots,
                      std::size_t columns) {
    if (!film.productionPlan)
        return "There is no production plan yet.\n";
    if (shots.empty())
        return "The production plan has no shots.\n";
    using enum TextTable::Alignment;
    // In a narrow terminal the dialogue is left out first, then start, place, take, sound, frame and clip.
    NarrowTable table({{"#", right, 10, 10, 0},
                       {"shot", left, 8, 24, 0},
                       {"start", right, 20, 20, 8},
                       {"length", right, 20, 20, 2},
                       {"take", right, 6, 6, 6},
                       {"status", left, 9, 16, 1},
                       {"frame", left, 5, 5, 4},
                       {"clip", left, 4, 4, 3},
                       {"sound", left, 5, 5, 5},
                       {"place", left, 16, 24, 7},
                       {"dialogue", left, 16, 400, 9}});
    const std::map<std::string, std::vector<std::string>> sounds = soundsByShot(film.project.artifacts);
    for (const FilmShot& shot : shots)
        table.add({std::to_string(shot.order + 1), shown(shot.planned.id), timeText(shot.startMilliseconds),
                   timeText(shot.durationMilliseconds), std::to_string(takeOf(shot)), shown(statusOf(shot)),
                   mark(shot.keyframe.has_value()), mark(shot.clip.has_value()),
                   mark(sounds.contains(shot.planned.id)),
                   shown(shot.location ? shot.location->name : shot.planned.location),
                   dialogueText(shot.planned.dialogue)});
    return table.text(columns);
}

json::value pathOf(const std::optional<FilmArtifact>& artifact) {
    return artifact ? json::value(artifact->path) : nullptr;
}

json::array listJSON(const FilmWorkspaceSnapshot& film, const std::vector<FilmShot>& shots) {
    std::map<std::string, std::vector<std::string>> sounds = soundsByShot(film.project.artifacts);
    json::array list;
    for (const FilmShot& shot : shots) {
        json::array dialogue;
        for (const FilmDialogueLine& line : shot.planned.dialogue)
            dialogue.push_back({{"speaker", line.speaker}, {"text", line.text}});
        const std::vector<std::string>& paths = sounds[shot.planned.id];
        const auto& location = shot.location;
        list.push_back({{"id", shot.planned.id},
                        {"order", shot.order},
                        {"startMilliseconds", optionalValue(shot.startMilliseconds)},
                        {"durationMilliseconds", optionalValue(shot.durationMilliseconds)},
                        {"take", takeOf(shot)},
                        {"status", statusOf(shot)},
                        {"location", shot.planned.location},
                        {"locationName", location ? json::value(location->name) : nullptr},
                        {"dialogue", dialogue},
                        {"keyframe", pathOf(shot.keyframe)},
                        {"clip", pathOf(shot.clip)},
                        {"sounds", json::array(paths.begin(), paths.end())}});
    }
    return list;
}

} // namespace

ExitStatus shots(const ShotsRequest& request, const Session& session) {
    const Console& console = session.console;
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const std::vector<FilmShot> planned = kinovane::shots(film);
    if (console.options().json)
        console.result(json::value(
            json::object{{"version", 1}, {"film", film.root.string()}, {"shots", listJSON(film, planned)}}));
    else
        console.result(humanText(film, planned, console.columns()));
    return ExitStatus::success;
}

} // namespace kinovane::tool
