// SPDX-License-Identifier: Apache-2.0

#include "commands/storyboard.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include <boost/json.hpp>

#include "film/opener.hpp"
#include "film/staged_file.hpp"
#include "session/failure.hpp"
#include "storyboard/page.hpp"
#include "storyboard/storyboard_source.hpp"
#include "terminal/human_text.hpp"
#include "terminal/progress_line.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

/// A page that was written.
struct Result {
    const StoryboardRequest& request;
    const StoryboardSource& source;
    const fs::path& page;
    const Storyboard& storyboard;
    const std::vector<AssetFile>& files;
    PageMedia::Counts media;
    std::size_t bytes;

    std::size_t count(FileState state) const {
        return static_cast<std::size_t>(std::ranges::count(files, state, &AssetFile::state));
    }
    std::size_t damaged() const {
        return static_cast<std::size_t>(std::ranges::count_if(files, &AssetFile::isDamaged));
    }

    ExitStatus status() const {
        if (!request.verify || damaged() == 0)
            return ExitStatus::success;
        return damaged() == count(FileState::unreadable) ? ExitStatus::fileSystem : ExitStatus::handoff;
    }

    std::string summary() const {
        std::string text = countText(storyboard.shots.size(), "shot", "shots") + ", " +
                           countText(files.size(), "file", "files") + ". The page has " +
                           sizeText(static_cast<std::int64_t>(bytes)) + ": " +
                           countText(media.embedded, "picture or clip is", "pictures and clips are") +
                           " embedded, " + std::to_string(media.linked) + " linked.\n";
        if (!source.film)
            text += "The film's folder was not found, so that no file is shown.\n";
        else if (damaged() > 0)
            text += styled(Style::bad, countText(damaged(), "file is", "files are") +
                                           " damaged or missing; the page lists them first.") +
                    "\n";
        else if (request.verify && !files.empty())
            text += styled(Style::good, "All files are sound.") + "\n";
        return text;
    }

    json::object document() const {
        json::array list;
        for (std::size_t index = 0; index < files.size(); ++index)
            if (const auto& state = files[index].state; state && *state != FileState::sound)
                list.push_back({{"path", storyboard.assets[index].path},
                                {"kind", storyboard.assets[index].kind},
                                {"state", nameOf(*state)},
                                {"reason", files[index].reason.empty() ? json::value()
                                                                       : json::value(files[index].reason)}});
        return {{"version", 1},
                {"film", source.film ? json::value(source.film->root.string()) : json::value()},
                {"title", storyboard.title},
                {"page", page.string()},
                {"bytes", bytes},
                {"shots", storyboard.shots.size()},
                {"files", files.size()},
                {"embedded", media.embedded},
                {"linked", media.linked},
                {"verified", request.verify},
                {"damaged", list},
                {"opened", request.open}};
    }
};

Storyboard contentOf(const StoryboardSource& source) {
    if (source.handoff)
        return storyboardOf(*source.handoff);
    return source.film ? storyboardOf(*source.film) : Storyboard();
}

std::vector<AssetFile> filesOf(const Storyboard& storyboard, const StoryboardSource& source,
                               const StoryboardRequest& request, const Session& session) {
    if (!source.film)
        return std::vector<AssetFile>(storyboard.assets.size());
    HandoffBuildOptions options{.workers = request.workers, .stop = session.stop};
    if (!request.verify)
        return examineAssets(source.film->root, storyboard.assets, false, options);
    ProgressLine progress(session.console);
    options.onProgress = progress.callback();
    return examineAssets(source.film->root, storyboard.assets, true, options);
}

} // namespace

ExitStatus storyboard(const StoryboardRequest& request, const Session& session) {
    if (request.output == "-")
        throw UsageError("--output is the path of a page, such as storyboard.html");
    const Console& console = session.console;
    const StoryboardSource source = loadStoryboardSource(request.film);
    const fs::path target = pageTarget(source, request.output, request.force);
    if (!source.film && request.verify)
        throw CommandError(ExitStatus::workspace,
                           shownPath(source.manifest.string()) +
                               ": the film's folder was not found, so that no file can be verified");
    const Storyboard storyboard = contentOf(source);
    const std::vector<AssetFile> files = filesOf(storyboard, source, request, session);
    const PageMedia media = source.film
                                ? PageMedia(storyboard, files, source.film->root, target, request.embedLimit)
                                : PageMedia(storyboard);
    const std::string page =
        storyboardPage({storyboard, files, media, request.verify, source.film.has_value()});
    writeFile(target, page);

    const fs::path written = target.lexically_normal();
    const Result result{request, source, written, storyboard, files, media.counts(), page.size()};
    console.step(result.summary());
    if (request.open)
        openWithSystem(fs::canonical(written), session.stop); // Its links are relative to this path.
    if (console.options().json)
        console.result(json::value(result.document()));
    else
        console.result(shownPath(written.string()) + "\n");
    return result.status();
}

} // namespace kinovane::tool
