// SPDX-License-Identifier: Apache-2.0

#include <string>

#include "storyboard/page_sections.hpp"

namespace kinovane::tool {

namespace {

/// The beginning of a card: the picture, if there is one, and the name.
Html cardHead(const PageContent& content, std::string_view kind, const std::string& id,
              const std::string& name) {
    Html html;
    html << R"(<li class="card">)";
    if (const Url* picture = content.media.picture(lastAsset(content.storyboard, kind, id)))
        html << R"(<img loading="lazy" src=")" << *picture << R"(" alt="Picture of )" << Text(name)
             << R"(">)";
    return html << R"(<div><h3 dir="auto">)" << Text(name) << R"(</h3><dl class="details">)";
}

std::string seedText(const std::optional<std::int64_t>& seed) { return seed ? std::to_string(*seed) : ""; }

} // namespace

Html castSection(const PageContent& content) {
    Html html;
    if (content.storyboard.cast.empty())
        return html;
    html << R"(<section aria-labelledby="cast"><h2 id="cast">Cast</h2><ul class="cards">)";
    for (const FilmCastMember& member : content.storyboard.cast)
        html << cardHead(content, "cast-master", member.id, member.name) << fact("Looks", member.visual)
             << fact("Wardrobe", member.wardrobe) << fact("Voice", member.voice)
             << fact("Seed", seedText(member.seed)) << "</dl></div></li>";
    return html << "</ul></section>\n";
}

Html locationsSection(const PageContent& content) {
    Html html;
    if (content.storyboard.locations.empty())
        return html;
    html
        << R"(<section aria-labelledby="locations"><h2 id="locations">Locations</h2><ul class="cards wide">)";
    for (const FilmLocation& location : content.storyboard.locations)
        html << cardHead(content, "location-master", location.id, location.name)
             << fact("Looks", location.visual) << fact("Ambience", location.ambience)
             << fact("Seed", seedText(location.seed)) << "</dl></div></li>";
    return html << "</ul></section>\n";
}

} // namespace kinovane::tool
