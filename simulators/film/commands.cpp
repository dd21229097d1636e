// SPDX-License-Identifier: Apache-2.0

#include "commands.hpp"

#include <stdexcept>

#include "changes.hpp"
#include "common/digest.hpp"
#include "common/handoff.hpp"
#include "story.hpp"
#include "vistrel_manifest.hpp"

namespace simulator::film {
namespace {

std::string plan(const Command& command) {
    const std::filesystem::path manifest = createFilm(
        {command.value("idea"), command.value("title"), std::stoll(command.value("seconds")), timeStamp()},
        command.value("folder"));
    writeWholeFile(manifest.parent_path() / logName, "");
    return json::serialize(json::object{{"ok", true},
                                        {"contractVersion", "quexrun/film-plan-reply.v1"},
                                        {"status", statusOf(Workspace(manifest, Access::read))}});
}

std::string exportVistrel(const Workspace& film, const Command& command) {
    const auto output = command.optionalValue("file");
    const std::filesystem::path file = output ? absolutePath(*output) : film.path("vistrel-handoff.json");
    const VistrelManifest manifest = vistrelManifestOf(film);
    const std::string text = pretty(manifest.document);
    std::filesystem::create_directories(file.parent_path());
    replaceFile(file, text);
    return json::serialize(json::object{{"ok", true},
                                        {"contractVersion", handoffContract},
                                        {"manifest", file.native()},
                                        {"manifestSha256", "sha256:" + digestOf(text)},
                                        {"projectId", textOf(film.project(), "projectId")},
                                        {"shots", manifest.shots},
                                        {"assets", manifest.assets},
                                        {"bytes", manifest.bytes},
                                        {"runId", film.runId()}});
}

std::string agent(const Workspace& film, const Command& command) {
    const std::string pi = command.optionalValue("pi").value_or("pi");
    if (!command.optionalValue("print-command"))
        return "Here " + pi + " would begin to work on \"" + textOf(film.project(), "title") + "\".";
    const std::string& plugin = command.value("film");
    const std::string& manifest = film.runManifest().native();
    return json::serialize(
        json::object{{"command", textList({pi, "--extension", plugin, "--run-manifest", manifest})},
                     {"cwd", film.root().native()},
                     {"environment", json::object{{"QUEX_FILM_TOOLS_PLUGIN", plugin},
                                                  {"QUEX_FILM_TOOLS_RUN_MANIFEST", manifest}}}});
}

} // namespace

std::filesystem::path filmFolder(const Command& command) {
    if (const auto manifest = command.optionalValue("run.json"))
        return absolutePath(*manifest).parent_path();
    return absolutePath(command.value("folder"));
}

std::string performCommand(const Command& command, bool cutOff) {
    const std::string& word = command.word;
    if (word == "plan")
        return plan(command);
    const bool readOnly = word == "status" || word == "export-vistrel" || word == "agent";
    Workspace film(command.value("run.json"), readOnly ? Access::read : Access::change);
    if (word == "status")
        return json::serialize(statusOf(film));
    if (word == "export-vistrel")
        return exportVistrel(film, command);
    if (word == "agent")
        return agent(film, command);
    if (word == "approve")
        return approve(film, command.value("gate"), command.value("note"), command.value("name"));
    if (word == "run")
        return advance(film, cutOff);
    if (word == "recover")
        return recover(film);
    if (word == "reroll")
        return reroll(film, command.value("shot"), command.value("note"));
    if (word == "review")
        return review(film);
    throw std::logic_error("the command \"" + word + "\" is not implemented");
}

} // namespace simulator::film
