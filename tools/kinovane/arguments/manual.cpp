// SPDX-License-Identifier: Apache-2.0

#include "arguments/manual.hpp"

#include <cctype>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include <kinovane/version.hpp>

#include "arguments/commands.hpp"
#include "session/failure.hpp"

namespace kinovane::tool {

namespace {

/// Text as roff reads it: a hyphen that can be copied, no escape sequences, no requests at the start of
/// lines.
std::string roff(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if ((character == '.' || character == '\'') && (result.empty() || result.back() == '\n'))
            result += R"(\&)";
        if (character == '\\')
            result += R"(\e)";
        else if (character == '-')
            result += R"(\-)";
        else
            result += character;
    }
    return result;
}

std::string upperCase(std::string text) {
    for (char& character : text)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    return text;
}

std::string section(std::string_view title, const std::string& content) {
    return content.empty() ? "" : ".SH " + std::string(title) + "\n" + content;
}

/// One entry of a list: a term in bold type, its argument in italics, and a paragraph.
std::string entry(const std::string& term, const std::string& argument, const std::string& text) {
    return ".TP\n\\fB" + roff(term) + "\\fR" + (argument.empty() ? "" : " \\fI" + roff(argument) + "\\fR") +
           "\n" + roff(text) + "\n";
}

std::string optionNames(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "--" : ", --") + name;
    return names;
}

/// The options; of a command those that other commands do not have.
std::string optionsText(const CLI::App& app, bool isCommand) {
    std::string text;
    for (const CLI::Option* option : app.get_options())
        if (option->nonpositional() && !(isCommand && option->check_name("--help")))
            text += entry(optionNames(*option), option->get_type_name(), option->get_description());
    return text;
}

std::string argumentsText(const CLI::App& command) {
    std::string text;
    for (const CLI::Option* option : command.get_options())
        if (!option->nonpositional())
            text += entry(option->get_name(true), "", option->get_description());
    return text;
}

std::string synopsis(const CLI::App& command) {
    std::string text = "\\fBkinovane " + roff(command.get_name()) + "\\fR [\\fIOPTIONS\\fR]";
    for (const CLI::Option* option : command.get_options())
        if (!option->nonpositional()) {
            const std::string name = "\\fI" + option->get_name(true) + "\\fR";
            text += " " + (option->get_required() ? name : "[" + name + "]") +
                    (option->get_items_expected_max() > 1 ? " ..." : "");
        }
    return text + "\n";
}

std::string header(const std::string& name) {
    return ".TH " + upperCase(roff(name)) + " 1 \"\" \"kinovane " + KinovaneCoreVersionString + "\"\n";
}

std::string footer(const CLI::App& command) {
    const std::string text = command.get_footer();
    return text.empty() ? "" : ".nf\n" + roff(text) + (text.back() == '\n' ? "" : "\n") + ".fi\n";
}

std::string page(const CLI::App& app) {
    std::string commands;
    std::string pages;
    for (const CLI::App* command : commandsOf(app)) {
        commands += entry(command->get_name(), "", command->get_description() + ".");
        pages += (pages.empty() ? "" : ",\n") + (".BR kinovane\\-" + command->get_name()) + " (1)";
    }
    return header("kinovane") + section("NAME", "kinovane \\- see, check, produce and publish a film\n") +
           section("SYNOPSIS", "\\fBkinovane\\fR [\\fIOPTIONS\\fR] \\fICOMMAND\\fR [\\fIARGUMENTS\\fR]\n") +
           section("DESCRIPTION", roff(app.get_description()) + "\n") + section("COMMANDS", commands) +
           section("OPTIONS",
                   "Every command has these options; they can stand before or after the command.\n" +
                       optionsText(app, false)) +
           section("EXAMPLES AND EXIT STATUSES", footer(app)) + section("SEE ALSO", pages + "\n");
}

std::string page(const CLI::App& app, const CLI::App& command) {
    return header("kinovane-" + command.get_name()) +
           section("NAME",
                   "kinovane\\-" + command.get_name() + " \\- " + roff(command.get_description()) + "\n") +
           section("SYNOPSIS", synopsis(command)) + section("ARGUMENTS", argumentsText(command)) +
           section("OPTIONS", optionsText(command, true)) +
           section("OPTIONS OF ALL COMMANDS", optionsText(app, false)) +
           section("EXAMPLES AND NOTES", footer(command)) + section("SEE ALSO", ".BR kinovane (1)\n");
}

} // namespace

std::string manualPage(const CLI::App& app, const std::string& command) {
    if (command.empty())
        return page(app);
    const CLI::App* described = commandNamed(app, command);
    if (described == nullptr)
        throw UsageError("\"" + command + "\" is not a command\nFor help: kinovane --help");
    return page(app, *described);
}

} // namespace kinovane::tool
