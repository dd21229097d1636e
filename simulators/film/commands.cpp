// SPDX-License-Identifier: Apache-2.0

#include "commands.hpp"

#include <array>

#include "advance.hpp"
#include "agent_launch.hpp"
#include "artifact_list.hpp"
#include "clock.hpp"
#include "common/json_text.hpp"
#include "invocation_log.hpp"
#include "new_film.hpp"
#include "recover.hpp"
#include "reroll.hpp"
#include "review.hpp"
#include "status_reply.hpp"
#include "vistrel_manifest.hpp"

namespace film {
namespace {

using simulator::compact;

Workspace opened(const Command& command, Access access) { return {command.value("run.json"), access}; }

std::string plan(const Command& command, bool) {
    const std::string createdAt = timeStamp();
    const std::filesystem::path manifest = createFilm(
        {command.value("idea"), command.value("title"), std::stoll(command.value("seconds")), createdAt},
        command.value("folder"));
    createInvocationLog(manifest.parent_path());
    return compact(json::object{{"ok", true},
                                {"contractVersion", "quexrun/film-plan-reply.v1"},
                                {"status", statusOf(Workspace(manifest, Access::look))}});
}

std::string status(const Command& command, bool) { return compact(statusOf(opened(command, Access::look))); }

std::string approveGate(const Command& command, bool) {
    Workspace film = opened(command, Access::change);
    return approve(film, command.value("gate"), command.value("note"), command.value("name"));
}

std::string run(const Command& command, bool cutOff) {
    Workspace film = opened(command, Access::change);
    return advance(film, cutOff);
}

std::string recoverFilm(const Command& command, bool) {
    Workspace film = opened(command, Access::change);
    return recover(film);
}

std::string rerollShot(const Command& command, bool) {
    Workspace film = opened(command, Access::change);
    return reroll(film, command.value("shot"), command.value("note"));
}

std::string reviewFilm(const Command& command, bool) {
    Workspace film = opened(command, Access::change);
    return review(film);
}

std::string exportVistrel(const Command& command, bool) {
    const Workspace film = opened(command, Access::look);
    const auto output = command.optionalValue("file");
    const std::filesystem::path file = output ? absolutePath(*output) : film.place("vistrel-handoff.json");
    const VistrelManifest manifest = vistrelManifestOf(film);
    const std::string text = simulator::pretty(manifest.document);
    std::filesystem::create_directories(file.parent_path());
    simulator::replaceFile(file, text);
    return compact(json::object{{"ok", true},
                                {"contractVersion", handoffContract},
                                {"manifest", file.native()},
                                {"manifestSha256", digestText(text)},
                                {"projectId", textOf(film.project(), "projectId")},
                                {"shots", manifest.shots},
                                {"assets", manifest.assets},
                                {"bytes", manifest.bytes},
                                {"runId", film.runId()}});
}

std::string agent(const Command& command, bool) {
    const Workspace film = opened(command, Access::look);
    if (command.optionalValue("print-command"))
        return compact(launchReply(command.value("pi"), command.value("film"), film.runManifest()));
    return "Here " + command.optionalValue("pi").value_or("pi") + " would begin to work on \"" +
           textOf(film.project(), "title") + "\".";
}

struct Named {
    std::string_view word;
    std::string (*perform)(const Command&, bool cutOff);
};

constexpr std::array<Named, 9> commands{{{"plan", plan},
                                         {"status", status},
                                         {"approve", approveGate},
                                         {"run", run},
                                         {"recover", recoverFilm},
                                         {"reroll", rerollShot},
                                         {"review", reviewFilm},
                                         {"export-vistrel", exportVistrel},
                                         {"agent", agent}}};

} // namespace

std::filesystem::path filmFolder(const Command& command) {
    if (const auto manifest = command.optionalValue("run.json"))
        return absolutePath(*manifest).parent_path();
    return absolutePath(command.value("folder"));
}

std::string perform(const Command& command, bool cutOff) {
    for (const Named& known : commands)
        if (known.word == command.word)
            return known.perform(command, cutOff);
    throw std::logic_error("the command \"" + command.word + "\" has no body");
}

} // namespace film
