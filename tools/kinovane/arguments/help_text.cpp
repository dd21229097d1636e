// SPDX-License-Identifier: Apache-2.0

#include "arguments/help_text.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "arguments/commands.hpp"
#include "terminal/display_width.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t widestTerm = 26;
constexpr std::size_t fewestColumnsForTwo = 60; ///< On a narrower terminal, descriptions are below the terms.
constexpr std::size_t mostColumns = 100;        ///< Longer lines are hard to read.

/// Terms with their descriptions.
using Entries = std::vector<std::pair<std::string, std::string>>;

std::string namesOf(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "--" : ", --") + name;
    if (option.get_items_expected_max() > 0)
        names += " " + option.get_type_name();
    return names;
}

std::string positionalName(const CLI::Option& option) {
    const std::string name = option.get_name(true);
    return option.get_items_expected_max() > 1 ? name + "..." : name;
}

/// The options; of a command those that other commands do not have.
Entries optionsOf(const CLI::App& app, bool isCommand) {
    Entries entries;
    for (const CLI::Option* option : app.get_options())
        if (option->nonpositional() && !(isCommand && option->check_name("--help")))
            entries.emplace_back(namesOf(*option), option->get_description());
    return entries;
}

Entries argumentsOf(const CLI::App& command) {
    Entries entries;
    for (const CLI::Option* option : command.get_options())
        if (!option->nonpositional())
            entries.emplace_back(positionalName(*option), option->get_description());
    return entries;
}

std::string section(const std::string& title, const Entries& entries, std::size_t columns) {
    if (entries.empty())
        return "";
    std::string text = "\n" + styled(Style::heading, title + ":") + "\n";
    const bool twoColumns = columns >= fewestColumnsForTwo;
    const std::size_t left = twoColumns ? indent + widestTerm + 2 : 3 * indent;
    for (const auto& [term, description] : entries) {
        std::string line = std::string(indent, ' ') + term;
        const bool sameLine = twoColumns && displayWidth(term) <= widestTerm;
        if (sameLine) {
            line.resize(left, ' ');
        } else {
            text += line + "\n";
            line.assign(left, ' ');
        }
        for (const std::string& part : wrapped(description, columns - left)) {
            text += line + part + "\n";
            line.assign(left, ' ');
        }
    }
    return text;
}

std::string paragraph(const std::string& text, std::size_t columns) {
    std::string lines;
    for (const std::string& line : wrapped(text, columns))
        lines += line + "\n";
    return lines;
}

std::string usage(const CLI::App& command, bool isTool) {
    std::string text =
        isTool ? "kinovane [OPTIONS] COMMAND" : "kinovane " + command.get_name() + " [OPTIONS]";
    for (const CLI::Option* option : command.get_options())
        if (!option->nonpositional())
            text += " " +
                    (option->get_required() ? positionalName(*option) : "[" + positionalName(*option) + "]");
    return text;
}

/// The commands in their groups.
std::string commandsText(const CLI::App& app, std::size_t columns) {
    std::vector<std::pair<std::string, Entries>> groups;
    for (const CLI::App* command : commandsOf(app)) {
        if (groups.empty() || groups.back().first != command->get_group())
            groups.emplace_back(command->get_group(), Entries());
        groups.back().second.emplace_back(command->get_name(), command->get_description());
    }
    std::string text;
    for (const auto& [name, entries] : groups)
        text += section(name, entries, columns);
    return text;
}

} // namespace

std::string helpText(const CLI::App& app, const CLI::App& command, std::size_t columns) {
    columns = std::min(columns, mostColumns);
    const bool isTool = &command == &app;
    std::string text = paragraph(command.get_description() + (isTool ? "" : "."), columns) + "\n" +
                       styled(Style::heading, "Usage:") + " " + usage(command, isTool) + "\n";
    if (isTool)
        text += commandsText(app, columns);
    text += section("Arguments", argumentsOf(command), columns) +
            section("Options", optionsOf(command, !isTool), columns);
    if (!isTool)
        text += section("Options of all commands", optionsOf(app, false), columns);
    const std::string footer = command.get_footer();
    return footer.empty() ? text : text + "\n" + footer;
}

} // namespace kinovane::tool
