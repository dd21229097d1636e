// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <string>

#include "storyboard/page_sections.hpp"
#include "terminal/human_text.hpp"

namespace kinovane::tool {

namespace {

/// "0:05", "0:05.5".
std::string markText(double milliseconds) {
    std::string text = durationText(milliseconds / 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

double millisecondsOf(const std::optional<std::int64_t>& value) {
    return std::max<double>(0, static_cast<double>(value.value_or(0)));
}

/// The place of something below the track: its left edge and its width.
Html place(const TimelineLayout& layout, double start, double length) {
    Html rule;
    return rule << "{left:" << layout.percent(start) << "%;width:" << layout.percent(length) << "%}\n";
}

void addItemRules(Html& rules, const TimelineLayout& layout, const std::vector<TimelineItem>& items,
                  Markup prefix) {
    for (std::size_t index = 0; index < items.size(); ++index) {
        const TimelineItem& item = items[index];
        const double extent = std::max(item.labelEnd - item.start, 0.0);
        rules << prefix << index << "{left:" << layout.percent(item.start)
              << "%;width:" << layout.percent(extent) << "%;--row:" << item.row
              << ";--length:" << (extent > 0 ? std::min(item.length / extent, 1e6) * 100 : 0.0) << "%}\n";
    }
}

Html shotLink(const PageContent& content, std::size_t index) {
    const StoryboardShot& shot = content.storyboard.shots[index];
    const auto isDamaged = [&](std::optional<std::size_t> asset) {
        return asset && content.files[*asset].isDamaged();
    };
    Html html;
    const std::string length = durationText(millisecondsOf(shot.durationMilliseconds) / 1000);
    html << R"(<li id="t)" << index << R"(" class=")"
         << (content.media.picture(shot.keyframe) == nullptr ? Markup("no-frame ") : Markup(""))
         << (isDamaged(shot.keyframe) || isDamaged(shot.clip) ? Markup("is-damaged") : Markup(""))
         << R"("><a href="#shot-)" << index << R"(" title=")" << Text(shot.id) << ", " << Text(length)
         << R"("><span class="number">)" << index + 1 << R"(</span> <bdi class="name">)" << Text(shot.id)
         << R"(</bdi><span class="length">)" << Text(length) << "</span></a></li>";
    return html;
}

Html lines(const Storyboard& storyboard, const TimelineLayout& layout) {
    Html html;
    if (layout.lines.empty())
        return html;
    html << R"(<ul class="lane lines" id="lines" aria-label="Dialogue">)";
    for (std::size_t index = 0; index < layout.lines.size(); ++index) {
        const TimelineItem& item = layout.lines[index];
        const FilmDialogueLine& line = storyboard.shots[item.shot].dialogue[item.index];
        html << R"(<li id="l)" << index << R"(" title=")" << Text(markText(item.start)) << " "
             << Text(line.speaker) << ": " << Text(line.text) << R"("><span class="label" dir="auto"><b>)"
             << Text(line.speaker) << "</b> " << Text(line.text) << "</span></li>";
    }
    return html << "</ul>\n";
}

Html effects(const Storyboard& storyboard, const TimelineLayout& layout) {
    Html html;
    if (layout.effects.empty())
        return html;
    html << R"(<ul class="lane effects" id="effects" aria-label="Sound effects">)";
    for (std::size_t index = 0; index < layout.effects.size(); ++index) {
        const TimelineItem& item = layout.effects[index];
        const FilmSoundEffect& effect = storyboard.shots[item.shot].soundEffects[item.index];
        html << R"(<li id="e)" << index << R"(" title=")" << Text(markText(item.start)) << " "
             << Text(effect.prompt) << ", " << Text(durationText(effect.durationSeconds))
             << R"("><span class="bar"></span><span class="label" dir="auto">)" << Text(effect.prompt)
             << "</span></li>";
    }
    return html << "</ul>\n";
}

} // namespace

Html timelineRules(const Storyboard& storyboard, const TimelineLayout& layout) {
    Html rules;
    if (storyboard.width && storyboard.height && *storyboard.width > 0 && *storyboard.height > 0)
        rules << ":root{--frame:" << *storyboard.width << "/" << *storyboard.height << "}\n";
    if (layout.total <= 0)
        return rules;
    rules << "#track{min-width:" << layout.width << "px}\n#lines{--rows:" << layout.lineRows
          << "}\n#effects{--rows:" << layout.effectRows << "}\n";
    for (std::size_t level = 0; level < layout.levelWidths.size(); ++level)
        rules << "@container track (min-width:" << layout.levelWidths[level] << "px){.marks .m" << level
              << "{display:block}}\n";
    for (std::size_t index = 0; index < layout.marks.size(); ++index)
        rules << "#m" << index << "{left:" << layout.percent(layout.marks[index].time) << "%}\n";
    for (std::size_t index = 0; index < storyboard.shots.size(); ++index)
        if (const StoryboardShot& shot = storyboard.shots[index]; shot.startMilliseconds)
            rules << "#t" << index
                  << place(layout, millisecondsOf(shot.startMilliseconds),
                           millisecondsOf(shot.durationMilliseconds));
    addItemRules(rules, layout, layout.lines, "#l");
    addItemRules(rules, layout, layout.effects, "#e");
    return rules;
}

Html timelineSection(const PageContent& content, const TimelineLayout& layout) {
    const Storyboard& storyboard = content.storyboard;
    Html html;
    if (storyboard.shots.empty())
        return html;
    html << R"(<section class="timeline" aria-labelledby="timeline"><div class="bar"><h2 id="timeline">)"
         << "Timeline</h2>";
    if (layout.total <= 0)
        return html << "</div><p>No shot has a length.</p></section>\n";
    html << R"(<div class="zoom" role="group" aria-label="Zoom" hidden>)"
         << R"(<button type="button" data-zoom="whole">Whole film</button>)"
         << R"(<button type="button" data-zoom="out" aria-label="Zoom out">−</button>)"
         << R"(<button type="button" data-zoom="in" aria-label="Zoom in">+</button></div></div>)"
         << R"(<div class="scroll" id="scroll" tabindex="0" role="region" aria-label="Timeline to scale">)"
         << R"(<div id="track"><div class="marks" aria-hidden="true">)";
    for (std::size_t index = 0; index < layout.marks.size(); ++index)
        html << R"(<span id="m)" << index << R"(" class="m)" << layout.marks[index].level << R"(">)"
             << Text(markText(layout.marks[index].time)) << "</span>";
    html << R"(</div><ol class="lane shots" aria-label="Shots">)";
    for (std::size_t index = 0; index < storyboard.shots.size(); ++index)
        if (storyboard.shots[index].startMilliseconds)
            html << shotLink(content, index);
    html << "</ol>\n" << lines(storyboard, layout) << effects(storyboard, layout);
    return html << "</div></div></section>\n";
}

} // namespace kinovane::tool
