// SPDX-License-Identifier: Apache-2.0

#include "arguments/completion.hpp"

#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "arguments/commands.hpp"

namespace kinovane::tool {

namespace {

/// The option's names, such as "-0 --null".
std::string namesOf(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "-" : " -") + name;
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "--" : " --") + name;
    return names;
}

void addOptions(std::string& names, const CLI::App& app, bool isCommand) {
    for (const CLI::Option* option : app.get_options())
        if (option->nonpositional() && !(isCommand && option->check_name("--help")))
            names += (names.empty() ? "" : " ") + namesOf(*option);
}

/// The options of a command and those that every command has.
std::string optionsOf(const CLI::App& app, const CLI::App& command) {
    std::string names;
    if (&command != &app)
        addOptions(names, command, true);
    addOptions(names, app, false);
    return names;
}

/// The words that can stand for the first argument, such as the names of shells.
std::string wordsFor(const CLI::App& app, const std::string& command) {
    std::string words;
    if (command == "completion")
        return "bash zsh fish";
    if (command == "help" || command == "manual")
        for (const CLI::App* each : commandsOf(app))
            words += (words.empty() ? "" : " ") + each->get_name();
    return words;
}

/// Text between single quotes in a shell script.
std::string shellQuoted(std::string_view text) {
    std::string result = "'";
    for (const char character : text)
        result += character == '\'' ? std::string(R"('\'')") : std::string(1, character);
    return result + "'";
}

/// A function that bash uses itself and zsh through bashcompinit.
std::string bashFunction(const CLI::App& app) {
    std::string commands;
    std::string cases;
    for (const CLI::App* command : commandsOf(app)) {
        const std::string& name = command->get_name();
        commands += (commands.empty() ? "" : " ") + name;
        cases += "        " + name + ") options=" + shellQuoted(optionsOf(app, *command)) +
                 " words=" + shellQuoted(wordsFor(app, name)) + " ;;\n";
    }
    return R"(_kinovane() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command= word options words
    local commands=)" +
           shellQuoted(commands) + R"(
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case " $commands " in *" $word "*) command=$word; break ;; esac
    done
    COMPREPLY=()
    case $previous in
        --color) COMPREPLY=($(compgen -W 'auto always never' -- "$current")); return ;;
        --format) COMPREPLY=($(compgen -W 'edl fcpxml otio' -- "$current")); return ;;
        --progress) COMPREPLY=($(compgen -W 'auto json none' -- "$current")); return ;;
        --references) COMPREPLY=($(compgen -W 'absolute relative' -- "$current")); return ;;
    esac
    case $command in
)" + cases +
           "        *) options=" + shellQuoted(optionsOf(app, app)) + R"( words=$commands ;;
    esac
    case $current in
        -*) COMPREPLY=($(compgen -W "$options" -- "$current")) ;;
        *) COMPREPLY=($(compgen -W "$words" -- "$current")) ;;
    esac
}
)";
}

std::string bashScript(const CLI::App& app) {
    return "# Completion of kinovane for bash; made by \"kinovane completion bash\".\n" + bashFunction(app) +
           "complete -o default -o bashdefault -F _kinovane kinovane\n";
}

std::string zshScript(const CLI::App& app) {
    return "#compdef kinovane\n"
           "# Completion of kinovane for zsh; made by \"kinovane completion zsh\".\n"
           "autoload -U +X bashcompinit && bashcompinit\n" +
           bashFunction(app) + "complete -o default -o bashdefault -F _kinovane kinovane\n";
}

std::string fishOption(const CLI::Option& option, const std::string& condition) {
    std::string line = "complete -c kinovane" + condition;
    for (const std::string& name : option.get_snames())
        line += " -s " + name;
    for (const std::string& name : option.get_lnames())
        line += " -l " + name;
    if (option.get_items_expected_max() > 0)
        line += " -r";
    return line + " -d " + shellQuoted(option.get_description()) + "\n";
}

std::string fishScript(const CLI::App& app) {
    std::string script = "# Completion of kinovane for fish; made by \"kinovane completion fish\".\n";
    for (const CLI::Option* option : app.get_options())
        script += fishOption(*option, "");
    for (const CLI::App* command : commandsOf(app)) {
        const std::string& name = command->get_name();
        script += "complete -c kinovane -n __fish_use_subcommand -a " + name + " -d " +
                  shellQuoted(command->get_description()) + "\n";
        const std::string condition = " -n '__fish_seen_subcommand_from " + name + "'";
        for (const CLI::Option* option : command->get_options())
            if (option->nonpositional() && !option->check_name("--help"))
                script += fishOption(*option, condition);
        if (const std::string words = wordsFor(app, name); !words.empty())
            script += "complete -c kinovane" + condition + " -f -a " + shellQuoted(words) + "\n";
    }
    return script;
}

} // namespace

std::string completionScript(const CLI::App& app, const std::string& shell) {
    if (shell == "zsh")
        return zshScript(app);
    return shell == "fish" ? fishScript(app) : bashScript(app);
}

} // namespace kinovane::tool
