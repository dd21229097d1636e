// SPDX-License-Identifier: Apache-2.0

#include "commands/status.hpp"

#include <string>

#include <boost/json.hpp>

#include "film/film_location.hpp"
#include "film/next_step.hpp"
#include "film/next_step_text.hpp"
#include "film/overview.hpp"
#include "film/workspace_summary.hpp"
#include "terminal/display_width.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

std::string proofText(const FilmProof& proof, const WorkspaceSummary& summary) {
    std::string text = std::to_string(proof.completedCount()) + " of 10 steps";
    if (!summary.missingSteps.empty())
        text += "; next: " + std::string(proofStepName(summary.missingSteps.front().key));
    return text;
}

std::string humanText(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary,
                      std::size_t columns) {
    using enum TextTable::Alignment;
    TextTable facts({left, left});
    facts.add({"Phase", fitted(shown(film.project.phase), columns)});
    facts.add({"Status", fitted(shown(film.project.status), columns)});
    facts.add({"Proof", proofText(film.project.proof, summary)});
    facts.add({"Shots", shotsText(film, summary)});
    return titleLine(film.project.title, columns) + facts.text(columns);
}

json::object factsJSON(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary) {
    const FilmProject& project = film.project;
    return {{"version", 1},
            {"film", film.root.string()},
            {"title", project.title},
            {"projectId", project.projectId},
            {"phase", project.phase},
            {"status", project.status},
            {"proof", proofJSON(project.proof, summary)},
            {"shots", shotsJSON(film, summary)}};
}

} // namespace

ExitStatus status(const StatusRequest& request, const Session& session) {
    const Console& console = session.console;
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const WorkspaceSummary summary(film);
    const NextStep next = nextStep(film);
    if (console.options().json) {
        json::object document = factsJSON(film, summary);
        document.emplace("next", nextStepJSON(next, request.film));
        console.result(json::value(document));
    } else {
        const std::size_t columns = console.columns();
        console.result(humanText(film, summary, columns) + "\n" + nextStepText(next, request.film, columns));
    }
    return ExitStatus::success;
}

} // namespace kinovane::tool
