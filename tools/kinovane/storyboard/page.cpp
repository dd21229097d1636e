// SPDX-License-Identifier: Apache-2.0

#include "storyboard/page.hpp"

#include <cstddef>
#include <span>
#include <string_view>

#include <kinovane/handoff.hpp>
#include <kinovane/version.hpp>

#include "film/file_content.hpp"
#include "storyboard/page_parts.hpp"
#include "storyboard/page_sections.hpp"

namespace kinovane::tool {

namespace {

unsigned char valueOf(char digit) {
    return static_cast<unsigned char>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
}

/// The source of a security policy that permits exactly this text: 'sha256-…'.
std::string policySource(std::string_view text) {
    const std::string digest = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
    const std::string_view digits = std::string_view(digest).substr(std::string_view("sha256:").size());
    std::string bytes;
    for (std::size_t index = 0; index + 1 < digits.size(); index += 2)
        bytes += static_cast<char>(valueOf(digits[index]) << 4U | valueOf(digits[index + 1]));
    return "'sha256-" + base64(bytes) + "'";
}

/// The policy stands before everything that it governs. 'self' and "file:" permit the linked files of the
/// film, the first for a page that a server provides.
Html policy(const Html& style, const Html& script) {
    Html html;
    return html << R"(<meta http-equiv="Content-Security-Policy" content="default-src 'none'; )"
                << "img-src data: 'self' file:; media-src data: 'self' file:; style-src "
                << Text(policySource(style.text())) << "; script-src " << Text(policySource(script.text()))
                << R"(; base-uri 'none'; form-action 'none'">)"
                << "\n";
}

constexpr Markup doctype = "<!DOCTYPE html>\n";
constexpr Markup generator = R"(<meta name="generator" content="kinovane storyboard">)";

void addLink(Html& html, const Html& section, Markup target, Markup name) {
    if (!section.empty())
        html << R"(<li><a href="#)" << target << R"(">)" << name << "</a></li>";
}

} // namespace

bool isStoryboardPage(const std::filesystem::path& file) {
    const std::string beginning = beginningOf(file);
    return beginning.starts_with(doctype.text()) && beginning.find(generator.text()) != std::string::npos;
}

std::string storyboardPage(const PageContent& content) {
    const TimelineLayout layout(content.storyboard);
    const Html timeline = timelineSection(content, layout);
    const Html shots = shotsSection(content);
    const Html cast = castSection(content);
    const Html locations = locationsSection(content);
    const Html findings = findingsSection(content);
    const Html files = filesSection(content);
    Html style;
    style << styleSheet << timelineRules(content.storyboard, layout);
    Html script;
    script << pageScript;

    Html page;
    page << doctype << "<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         << policy(style, script) << generator << "\n"
         << R"(<meta name="viewport" content="width=device-width, initial-scale=1">)"
         << R"(<meta name="color-scheme" content="light dark"><meta name="referrer" content="no-referrer">)"
         << R"(<link rel="icon" href="data:,"><title>)" << Text(content.storyboard.title)
         << " – storyboard</title>\n<style>" << style << "</style>\n</head>\n<body>\n"
         << R"(<a class="skip" href="#main">Skip to the content</a>)" << headerSection(content)
         << R"(<nav aria-label="Sections"><ul>)";
    addLink(page, timeline, "timeline", "Timeline");
    addLink(page, shots, "shots", "Shots");
    addLink(page, cast, "cast", "Cast");
    addLink(page, locations, "locations", "Locations");
    addLink(page, findings, "findings", "Findings");
    addLink(page, files, "files", "Files");
    page << R"(</ul></nav><main id="main" tabindex="-1">)" << damageSection(content) << timeline << shots
         << cast << locations << findings << files << "</main>\n<footer>Made by kinovane "
         << Text(KinovaneCoreVersionString) << ".</footer>\n<script>" << script
         << "</script>\n</body>\n</html>\n";
    return page.text();
}

} // namespace kinovane::tool
