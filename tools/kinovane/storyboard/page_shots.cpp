// SPDX-License-Identifier: Apache-2.0

#include <string>

#include "storyboard/page_sections.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

std::string timeText(const std::optional<std::int64_t>& milliseconds) {
    return milliseconds ? durationText(static_cast<double>(*milliseconds) / 1000) : "?";
}

Html media(const PageContent& content, const StoryboardShot& shot) {
    Html html;
    html << R"(<div class="media">)";
    if (const Url* frame = content.media.picture(shot.keyframe))
        html << R"(<img class="frame" loading="lazy" src=")" << *frame << R"(" alt="Key frame of )"
             << Text(shot.id) << (shot.purpose.empty() ? Markup("") : Markup(": ")) << Text(shot.purpose)
             << R"(">)";
    else
        html << absence(content, shot.keyframe, "key frame");
    if (const Url* clip = content.media.clip(shot.clip))
        html << R"(<details class="clip"><summary>Clip</summary><video controls preload="none" src=")"
             << *clip << R"(" aria-label="Clip of )" << Text(shot.id)
             << R"("></video><p class="unplayable" hidden>This browser cannot play the clip.</p></details>)";
    else
        html << absence(content, shot.clip, "clip");
    html << R"(<p class="badges">)";
    if (shot.keyframe && content.media.picture(shot.keyframe) != nullptr)
        html << stateBadge(content.files[*shot.keyframe], "key frame ");
    if (shot.clip && content.media.clip(shot.clip) != nullptr)
        html << stateBadge(content.files[*shot.clip], "clip ");
    return html << "</p></div>";
}

Html name(const StoryboardName& named) {
    Html html;
    html << "<bdi>" << Text(named.name.value_or(named.id)) << "</bdi>";
    if (!named.name)
        html << R"( <span class="unknown">(not in the plan)</span>)";
    return html;
}

Html namesFact(Markup term, const std::vector<StoryboardName>& names) {
    Html html;
    if (names.empty())
        return html;
    html << "<div><dt>" << term << "</dt><dd>";
    for (std::size_t index = 0; index < names.size(); ++index)
        html << (index == 0 ? Markup("") : Markup(", ")) << name(names[index]);
    return html << "</dd></div>";
}

Html dialogue(const StoryboardShot& shot) {
    Html html;
    if (shot.dialogue.empty())
        return html;
    html << R"(<h4>Dialogue</h4><ul class="sounds">)";
    for (const FilmDialogueLine& line : shot.dialogue) {
        html << R"(<li><span class="time">+)" << Text(durationText(line.startSeconds))
             << R"(</span><span dir="auto"><b>)" << Text(line.speaker) << "</b> " << Text(line.text);
        if (!line.delivery.empty())
            html << " <i><bdi>" << Text(line.delivery) << "</bdi></i>";
        html << "</span></li>";
    }
    return html << "</ul>";
}

std::string levelText(double decibels) {
    std::string text = std::to_string(decibels);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text + " dB";
}

Html effects(const StoryboardShot& shot) {
    Html html;
    if (shot.soundEffects.empty())
        return html;
    html << R"(<h4>Sound effects</h4><ul class="sounds">)";
    for (const FilmSoundEffect& effect : shot.soundEffects)
        html << R"(<li><span class="time">+)" << Text(durationText(effect.startSeconds))
             << R"(</span><span dir="auto">)" << Text(effect.prompt) << " <i><bdi>"
             << Text(durationText(effect.durationSeconds)) << ", " << Text(levelText(effect.levelDb))
             << "</bdi></i></span></li>";
    return html << "</ul>";
}

Html card(const PageContent& content, std::size_t index) {
    const StoryboardShot& shot = content.storyboard.shots[index];
    Html html;
    html << R"(<article class="shot" id="shot-)" << index << R"(" aria-labelledby="name-)" << index << R"(">)"
         << media(content, shot) << R"(<div class="words"><h3 id="name-)" << index
         << R"("><span class="number">)" << index + 1 << "</span> <bdi>" << Text(shown(shot.id))
         << R"(</bdi></h3><p class="when"><span>)" << Text(timeText(shot.startMilliseconds))
         << "</span><span>" << Text(timeText(shot.durationMilliseconds)) << " long</span><span>take "
         << shot.take << "</span><span>seed " << shot.seed << "</span>";
    if (shot.status && !shot.status->empty())
        html << "<span><bdi>" << Text(*shot.status) << "</bdi></span>";
    html << "</p>";
    if (!shot.purpose.empty())
        html << R"(<p class="purpose" dir="auto">)" << Text(shot.purpose) << "</p>";
    html << R"(<dl class="details">)" << fact("Frame prompt", shot.framePrompt)
         << fact("Clip prompt", shot.prompt) << namesFact("Characters", shot.characters);
    if (!shot.location.id.empty())
        html << namesFact("Location", {shot.location});
    return html << fact("Transition", shot.transition) << "</dl>" << dialogue(shot) << effects(shot)
                << "</div></article>\n";
}

} // namespace

Html absence(const PageContent& content, std::optional<std::size_t> asset, Markup what) {
    Html html;
    html << R"(<p class="absent">)";
    if (!asset)
        return html << "No " << what << " is recorded</p>";
    const AssetFile& file = content.files[*asset];
    if (!content.hasFilm)
        html << "The " << what << " was not looked for";
    else if (file.state == FileState::missing)
        html << "The " << what << " is missing";
    else if (file.state == FileState::misplaced)
        html << "The " << what << " is refused: " << Text(file.reason);
    else if (file.state == FileState::unreadable)
        html << "The " << what << " cannot be read: " << Text(file.reason);
    else
        html << "The " << what << " is no file that a browser shows";
    return html << R"(<span class="path"><bdi>)" << Text(shown(content.storyboard.assets[*asset].path))
                << "</bdi></span></p>";
}

Html shotsSection(const PageContent& content) {
    Html html;
    html << R"(<section aria-labelledby="shots"><h2 id="shots">Shots</h2>)";
    if (!content.storyboard.hasPlan)
        return html << "<p>There is no production plan yet.</p></section>\n";
    if (content.storyboard.shots.empty())
        return html << "<p>The production plan has no shots.</p></section>\n";
    for (std::size_t index = 0; index < content.storyboard.shots.size(); ++index)
        html << card(content, index);
    return html << "</section>\n";
}

} // namespace kinovane::tool
