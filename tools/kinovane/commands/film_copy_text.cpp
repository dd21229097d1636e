// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <string>

#include "commands/film_copy.hpp"
#include "film/next_step_text.hpp"
#include "json/json_output.hpp"
#include "terminal/human_text.hpp"
#include "terminal/paragraph.hpp"
#include "terminal/progress_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace json = boost::json;

std::string FilmCopy::continuation() const {
    return shellLine({"kinovane", "copy", request_.film.string(), request_.target.string()});
}

std::string FilmCopy::summary() const {
    const std::string total = countText(progress_.filesTotal, "file", "files");
    if (isInterrupted_)
        return paragraphs("Interrupted: " + std::to_string(copied_ + present_) + " of " + total +
                              " are in the copy.\n",
                          columns_) +
               nextCommandText("", continuation(), columns_);
    std::string text =
        "Copied " + countText(copied_, "file", "files") + ": " + throughputText(bytes_, seconds_) + ".";
    if (present_ > 0)
        text += " " + countText(present_, "file was", "files were") + " there already.";
    if (isComplete())
        return paragraphs(text, columns_) + styled(Style::good, "The copy is complete:") + " " +
               shownPath(request_.target.string()) + "\n";
    const auto incomplete = std::ranges::count_if(problems_, &Problem::isIncomplete);
    text += "\n" + styled(Style::bad,
                          "The copy is not complete: " +
                              countText(static_cast<std::uint64_t>(incomplete), "entry", "entries") +
                              " and " + shown(film_.runManifest.filename().string()) + " were not copied.");
    return paragraphs(text, columns_) +
           nextCommandText("correct what is listed above, then", continuation(), columns_);
}

json::object FilmCopy::json() const {
    json::array problems;
    for (const Problem& problem : problems_)
        problems.push_back(
            {{"path", problem.path},
             {"state", problem.state},
             {"reason", problem.reason.empty() ? json::value() : json::value(problem.reason)}});
    return {{"film", film_.root.string()},
            {"title", film_.project.title},
            {"target", request_.target.string()},
            {"state", isInterrupted_ ? "interrupted"
                      : isComplete() ? "complete"
                                     : "incomplete"},
            {"files", progress_.filesTotal},
            {"copied", copied_},
            {"present", present_},
            {"bytes", bytes_},
            {"seconds", std::round(seconds_ * 1000) / 1000},
            {"problems", problems}};
}

} // namespace kinovane::tool
