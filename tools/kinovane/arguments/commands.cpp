// SPDX-License-Identifier: Apache-2.0

#include "arguments/commands.hpp"

#include <algorithm>
#include <map>

#include <CLI/CLI.hpp>

#include <kinovane/version.hpp>

#include "arguments/argument_checks.hpp"
#include "arguments/command_descriptions.hpp"
#include "arguments/help_footers.hpp"

namespace kinovane::tool {

namespace {

/// An option whose value is one of several words.
template <class Value>
void addChoice(CLI::App& app, const char* name, Value& value, const char* type, const char* help,
               const std::map<std::string, Value>& choices) {
    std::vector<std::string> words;
    for (const auto& [word, ignored] : choices)
        words.push_back(word);
    app.add_option_function<std::string>(
           name, [&value, choices](const std::string& word) { value = choices.at(word); }, help)
        ->type_name(type)
        ->check([words](const std::string& word) { return choiceError(word, words); });
}

void addCommonOptions(CLI::App& app, CommonOptions& options) {
    app.add_flag("--json", options.json, "Print JSON instead of text, errors included");
    app.add_flag("-q,--quiet", options.quiet, "Print no steps and no progress");
    app.add_flag("-v,--verbose", options.verbose, "Print digests, and each file that is examined");
    addChoice<ColorMode>(
        app, "--color", options.color, "WHEN", "Use color: auto, always or never (default: auto)",
        {{"auto", ColorMode::automatic}, {"always", ColorMode::always}, {"never", ColorMode::never}});
    addChoice<ProgressMode>(
        app, "--progress", options.progress, "HOW",
        "Show progress: auto, json (one object a line on standard error) or none",
        {{"auto", ProgressMode::automatic}, {"json", ProgressMode::json}, {"none", ProgressMode::none}});
}

} // namespace

Command Requests::select(const std::string& name) const {
    const std::map<std::string, Command> requests{
        {"status", status}, {"inspect", inspect},   {"shots", shots},           {"artifacts", artifacts},
        {"open", open},     {"verify", verify},     {"publish", publish},       {"copy", copy},
        {"plan", plan},     {"approve", approve},   {"advance", advance},       {"review", review},
        {"reroll", reroll}, {"recover", recover},   {"storyboard", storyboard}, {"export", exportFilm},
        {"doctor", doctor}, {"timeline", timeline},
    };
    return requests.at(name);
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
    const std::vector<const CLI::App*> commands = commandsOf(app);
    const auto found = std::ranges::find(commands, name, &CLI::App::get_name);
    return found == commands.end() ? nullptr : *found;
}

std::unique_ptr<CLI::App> commandLineDescription(Requests& requests, CommonOptions& options) {
    auto app = std::make_unique<CLI::App>(
        "Shows the workspace of a film, verifies its files, produces it with the film tool, and publishes it "
        "to Vistrel.",
        "kinovane");
    app->set_help_flag("-h,--help", "Show this help");
    app->set_version_flag("--version", std::string("kinovane ") + KinovaneCoreVersionString,
                          "Show the version");
    app->require_subcommand(0, 1);
    app->fallthrough();
    app->footer(mainFooter);
    addCommonOptions(*app, options);
    describeCommands(*app, requests);
    return app;
}

} // namespace kinovane::tool
