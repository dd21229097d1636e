// SPDX-License-Identifier: Apache-2.0

#include "arguments/command_line.hpp"

#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include <kinovane/version.hpp>

#include "arguments/commands.hpp"
#include "arguments/completion.hpp"
#include "arguments/help_text.hpp"
#include "arguments/manual.hpp"
#include "arguments/suggestion.hpp"
#include "session/failure.hpp"

namespace kinovane::tool {

namespace {

/// CLI11 ends some of its messages with a line break.
std::string trimmed(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

std::string inQuotes(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : commandsOf(app))
        names.push_back(command->get_name());
    return names;
}

/// The options of a command and those that every command has.
std::vector<std::string> optionNames(const CLI::App& app, const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* owner : {&command, &app})
        for (const CLI::Option* option : owner->get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
    return names;
}

std::string withSuggestion(std::string message, const std::string& word,
                           const std::vector<std::string>& known) {
    const std::optional<std::string> similar = similarWord(word, known);
    return similar ? std::move(message) + ". Did you mean " + inQuotes(*similar) + "?" : std::move(message);
}

/// The command that the arguments name; the whole application when they name none.
const CLI::App& parsedCommand(const CLI::App& app) {
    const std::vector<CLI::App*> parsed = app.get_subcommands();
    return parsed.empty() ? app : *parsed.front();
}

/// What is wrong with the arguments, and the command that shows the help.
std::string describe(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = parsedCommand(app);
    const std::string name = &command == &app ? "kinovane" : "kinovane " + command.get_name();
    std::string message = trimmed(error.what());
    const std::vector<std::string> remaining = app.remaining(true);
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !remaining.empty()) {
        // The first word that was not understood: the others may belong to it.
        const std::string& word = remaining.front();
        if (word.starts_with("-"))
            message = withSuggestion(inQuotes(word) + " is not an option of " + name, word,
                                     optionNames(app, command));
        else if (&command == &app)
            message = withSuggestion(inQuotes(word) + " is not a command", word, commandNames(app));
        else
            message = inQuotes(word) + " is one argument too many";
    }
    return message + "\nFor help: " + name + " --help";
}

/// The help of the command that is named after "help", or of all.
std::string helpFor(const CLI::App& app, const std::string& name, std::size_t columns) {
    if (name.empty())
        return helpText(app, app, columns);
    const CLI::App* command = commandNamed(app, name);
    if (command == nullptr)
        throw UsageError(withSuggestion(inQuotes(name) + " is not a command", name, commandNames(app)) +
                         "\nFor help: kinovane --help");
    return helpText(app, *command, columns);
}

} // namespace

Command parseCommandLine(int argumentCount, const char* const* arguments, CommonOptions& options,
                         std::size_t columns) {
    Requests requests;
    const std::unique_ptr<CLI::App> app = commandLineDescription(requests, options);
    try {
        app->parse(argumentCount, arguments);
    } catch (const CLI::CallForHelp&) {
        return Notice{helpText(*app, parsedCommand(*app), columns)};
    } catch (const CLI::CallForVersion&) {
        return Notice{std::string("kinovane ") + KinovaneCoreVersionString + "\n"};
    } catch (const CLI::ParseError& error) {
        throw UsageError(describe(*app, error));
    }
    const std::vector<CLI::App*> parsed = app->get_subcommands();
    if (parsed.empty()) {
        if (const std::vector<std::string> words = app->remaining(); !words.empty())
            throw UsageError(describe(*app, CLI::ExtrasError(words)));
        throw UsageError("a command is needed, such as \"kinovane status\"\nFor help: kinovane --help");
    }
    const std::string name = parsed.front()->get_name();
    if (name == "help")
        return Notice{helpFor(*app, requests.helpTopic, columns)};
    if (name == "completion")
        return Notice{completionScript(*app, requests.shell)};
    if (name == "manual")
        return Notice{manualPage(*app, requests.helpTopic)};
    for (std::vector<std::filesystem::path>* films : {&requests.inspect.films, &requests.verify.films})
        if (films->empty())
            films->emplace_back(".");
    return requests.select(name);
}

} // namespace kinovane::tool
