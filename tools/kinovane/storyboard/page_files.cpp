// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include "storyboard/page_sections.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

Html finding(bool isBlocking, Markup word, std::string_view text) {
    Html html;
    html << (isBlocking ? Markup(R"(<li><span class="badge bad">)") : Markup(R"(<li><span class="badge">)"))
         << word << R"(</span> <span dir="auto">)" << Text(text) << "</span></li>";
    return html;
}

Html findingList(const std::vector<PreflightFinding>& findings) {
    Html html;
    if (findings.empty())
        return html << "<p>Nothing in the documents prevents a handoff.</p>";
    html << R"(<ul class="findings">)";
    for (const PreflightFinding& each : findings) {
        const bool isBlocking = each.severity == PreflightSeverity::blocking;
        html << finding(isBlocking, isBlocking ? Markup("prevents the handoff") : Markup("warning"),
                        each.text);
    }
    return html << "</ul>";
}

Html issueList(const std::vector<FilmIssue>& issues) {
    Html html;
    if (issues.empty())
        return html << "<p>No issue is open.</p>";
    html << R"(<ul class="findings">)";
    for (const FilmIssue& issue : issues)
        html << finding(issue.blocking, issue.blocking ? Markup("blocking") : Markup("open"),
                        issue.code + ": " + issue.message);
    return html << "</ul>";
}

/// The positions of the assets: those of damaged files first.
std::vector<std::size_t> damagedFirst(const std::vector<AssetFile>& files) {
    std::vector<std::size_t> order;
    for (const bool damaged : {true, false})
        for (std::size_t index = 0; index < files.size(); ++index)
            if (files[index].isDamaged() == damaged)
                order.push_back(index);
    return order;
}

Html row(const PageContent& content, std::size_t index) {
    const FilmArtifact& asset = content.storyboard.assets[index];
    const AssetFile& file = content.files[index];
    Html html;
    html << R"(<tr id="file-)" << index << R"(" role="row"><th scope="row" role="rowheader"><bdi>)";
    if (const Url* link = content.media.link(index))
        html << R"(<a href=")" << *link << R"(">)" << Text(shown(asset.path)) << "</a>";
    else
        html << Text(shown(asset.path));
    html << R"(</bdi></th><td role="cell" class="kind"><bdi>)" << Text(shown(asset.kind))
         << R"(</bdi></td><td role="cell" class="size">)" << Text(sizeText(asset.bytes))
         << R"(</td><td role="cell" class="digest"><bdi>)" << Text(shown(asset.sha256))
         << R"(</bdi></td><td role="cell" class="state">)" << stateBadge(file);
    if (!file.reason.empty())
        html << R"( <span class="reason">)" << Text(file.reason) << "</span>";
    return html << "</td></tr>\n";
}

} // namespace

Html stateBadge(const AssetFile& file, Markup what) {
    Html html;
    if (!file.state)
        return html;
    html << (file.isDamaged() ? Markup(R"(<span class="badge bad">)")
                              : Markup(R"(<span class="badge good">)"))
         << what << Text(nameOf(*file.state)) << "</span>";
    return html;
}

Html findingsSection(const PageContent& content) {
    const Storyboard& storyboard = content.storyboard;
    Html html;
    if (!storyboard.findings || !storyboard.issues)
        return html;
    return html << R"(<section aria-labelledby="findings"><h2 id="findings">Findings and issues</h2>)"
                << "<h3>Before the handoff</h3>" << findingList(*storyboard.findings)
                << "<h3>Open issues</h3>" << issueList(*storyboard.issues) << "</section>\n";
}

Html filesSection(const PageContent& content) {
    Html html;
    html << R"(<section aria-labelledby="files"><h2 id="files">Files</h2>)";
    if (content.storyboard.assets.empty())
        return html << "<p>No file is recorded.</p></section>\n";
    html
        << R"(<table class="files" role="table" aria-labelledby="files"><thead role="rowgroup">)"
        << R"(<tr role="row"><th role="columnheader" scope="col">File</th>)"
        << R"(<th role="columnheader" scope="col">Kind</th><th role="columnheader" scope="col" class="size">Size</th>)"
        << R"(<th role="columnheader" scope="col">Digest</th>)"
        << R"(<th role="columnheader" scope="col">State</th></tr></thead><tbody role="rowgroup">)";
    for (const std::size_t index : damagedFirst(content.files))
        html << row(content, index);
    return html << "</tbody></table></section>\n";
}

} // namespace kinovane::tool
