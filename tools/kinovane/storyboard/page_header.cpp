// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <string>

#include "film/workspace_summary.hpp"
#include "storyboard/page_sections.hpp"
#include "terminal/human_text.hpp"

namespace kinovane::tool {

namespace {

constexpr double leastDifference = 0.05; // Seconds. The lengths of shots are rounded to whole milliseconds.

std::string sizeOf(const Storyboard& storyboard) {
    if (!storyboard.width || !storyboard.height)
        return "not set";
    return std::to_string(*storyboard.width) + " × " + std::to_string(*storyboard.height) + " pixels";
}

/// The planned length, and that of the shots where it is another one.
std::string durationOf(const Storyboard& storyboard) {
    if (!storyboard.durationSeconds)
        return "not planned yet";
    std::string text = durationText(*storyboard.durationSeconds);
    const double shots = TimelineLayout(storyboard).total / 1000;
    if (!storyboard.shots.empty() && std::abs(shots - *storyboard.durationSeconds) >= leastDifference)
        text += " planned, shots " + durationText(shots);
    return text;
}

Html proofList(const FilmProof& proof) {
    Html html;
    html << R"(<section aria-labelledby="proof"><h2 id="proof">Proof <span class="count">)"
         << proof.completedCount() << R"( of 10 steps</span></h2><ol class="proof">)";
    for (const FilmProofStep& step : proof.steps()) {
        html << (step.complete ? Markup(R"(<li class="done">)") : Markup(R"(<li class="open">)"));
        html << Text(proofStepName(step.key)) << R"(<span class="spoken">: )"
             << (step.complete ? Markup("complete") : Markup("not complete")) << "</span></li>";
    }
    return html << "</ol></section>\n";
}

Html paragraph(Markup open, const std::optional<std::string>& text) {
    Html html;
    if (text && !text->empty())
        html << open << Text(*text) << "</p>";
    return html;
}

Html story(const Storyboard& storyboard) {
    Html html;
    html << paragraph(R"(<p dir="auto">)", storyboard.synopsis);
    if (storyboard.theme && !storyboard.theme->empty())
        html << R"(<p><b>Theme</b> <bdi>)" << Text(*storyboard.theme) << "</bdi></p>";
    if (!storyboard.idea.empty())
        html << R"(<p><b>Idea</b> <bdi>)" << Text(storyboard.idea) << "</bdi></p>";
    if (html.empty())
        return html;
    Html details;
    return details << R"(<details class="story"><summary>The story</summary>)" << html << "</details>";
}

} // namespace

Html fact(Markup term, std::string_view text) {
    Html html;
    if (!text.empty())
        html << "<div><dt>" << term << R"(</dt><dd dir="auto">)" << Text(text) << "</dd></div>";
    return html;
}

Html headerSection(const PageContent& content) {
    const Storyboard& storyboard = content.storyboard;
    Html html;
    html << R"(<header class="title">)";
    if (const Url* poster = content.media.picture(lastAsset(storyboard, "poster")))
        html << R"(<img class="poster" src=")" << *poster << R"(" alt="Poster of )" << Text(storyboard.title)
             << R"(">)";
    html << R"(<div class="words"><p class="genre">Storyboard</p><h1 dir="auto">)"
         << Text(storyboard.title.empty() ? "Untitled film" : std::string_view(storyboard.title)) << "</h1>"
         << paragraph(R"(<p class="logline" dir="auto">)", storyboard.logline);
    html << R"(<dl class="facts">)" << fact("Duration", durationOf(storyboard))
         << fact("Frames per second", storyboard.fps ? std::to_string(*storyboard.fps) : "not set")
         << fact("Size", sizeOf(storyboard))
         << fact("Aspect ratio", storyboard.aspectRatio.value_or("not set"))
         << fact("Shots", std::to_string(storyboard.shots.size()))
         << fact("Files", std::to_string(storyboard.assets.size()))
         << fact("Phase", storyboard.phase.value_or("")) << fact("Status", storyboard.status.value_or(""))
         << fact("Changed", storyboard.updatedAt) << fact("Handed over", storyboard.exportedAt.value_or(""))
         << "</dl>" << story(storyboard) << "</div></header>\n";
    return html << proofList(storyboard.proof);
}

Html damageSection(const PageContent& content) {
    const auto isDamaged = [](const AssetFile& file) { return file.isDamaged(); };
    const auto damaged = static_cast<std::uint64_t>(std::ranges::count_if(content.files, isDamaged));
    Html html;
    if (!content.hasFilm)
        return html << R"(<p class="notice">The film’s folder was not found, so that no picture and no clip )"
                    << "is shown.</p>\n";
    if (damaged == 0) {
        if (content.isVerified && !content.files.empty())
            html << R"(<p class="notice good">)"
                 << Text(content.files.size() == 1 ? "The file was verified, and is sound."
                                                   : "All " + std::to_string(content.files.size()) +
                                                         " files were verified, and are sound.")
                 << "</p>\n";
        return html;
    }
    html << R"(<section class="damage" aria-labelledby="damage"><h2 id="damage">)"
         << Text(countText(damaged, "file is", "files are")) << " damaged or missing</h2><ul>";
    for (std::size_t index = 0; index < content.files.size(); ++index)
        if (const AssetFile& file = content.files[index]; file.isDamaged()) {
            html << "<li>" << stateBadge(file) << R"( <a href="#file-)" << index << R"("><bdi>)"
                 << Text(content.storyboard.assets[index].path) << "</bdi></a>";
            if (!file.reason.empty())
                html << R"( <span class="reason">)" << Text(file.reason) << "</span>";
            html << "</li>";
        }
    return html << "</ul></section>\n";
}

} // namespace kinovane::tool
