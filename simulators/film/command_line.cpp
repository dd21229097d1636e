// SPDX-License-Identifier: Apache-2.0

#include "command_line.hpp"

#include <algorithm>
#include <array>
#include <vector>

namespace film {
namespace {

/// Every accepted form. A word in angle brackets stands for a value; all other words stand for themselves.
constexpr std::array<std::string_view, 15> forms{
    "plan --idea <idea> --title <title> --duration <seconds> --output-dir <folder>",
    "plan --idea <idea> --title <title> --duration <seconds> --output-dir <folder> --pi-command <pi>",
    "status <run.json>",
    "approve <run.json> --gate <gate> --note <note> --approved-by <name>",
    "run <run.json>",
    "run <run.json> --pi-command <pi>",
    "recover <run.json>",
    "reroll <run.json> --shot <shot> --note <note>",
    "review <run.json>",
    "review <run.json> --pi-command <pi>",
    "export-vistrel <run.json>",
    "export-vistrel <run.json> --output <file>",
    "agent --run-manifest <run.json>",
    "agent --run-manifest <run.json> --pi-command <pi>",
    "agent --run-manifest <run.json> --pi-command <pi> --plugin-command <film> --print-command"};

std::vector<std::string_view> wordsOf(std::string_view form) {
    std::vector<std::string_view> words;
    while (!form.empty()) {
        const std::size_t end = std::min(form.find(' '), form.size());
        words.push_back(form.substr(0, end));
        form.remove_prefix(std::min(end + 1, form.size()));
    }
    return words;
}

bool isPlaceholder(std::string_view word) { return word.front() == '<'; }

bool isWholeSeconds(std::string_view text) {
    return !text.empty() && text.size() <= 9 && text.front() != '0' &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool accepts(std::string_view placeholder, std::string_view value) {
    if (placeholder == "<seconds>")
        return isWholeSeconds(value);
    // A forgotten file would otherwise turn the flag after it into a file name.
    if (placeholder == "<run.json>" || placeholder == "<folder>" || placeholder == "<file>")
        return !value.empty() && value.front() != '-';
    return true;
}

std::optional<Command> match(std::string_view form, std::span<const std::string_view> arguments) {
    const std::vector<std::string_view> words = wordsOf(form);
    if (words.size() != arguments.size())
        return std::nullopt;
    Command command{std::string(words.front()), {}};
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (!isPlaceholder(word)) {
            if (word != arguments[index])
                return std::nullopt;
            if (word.starts_with("--") && (index + 1 == words.size() || !isPlaceholder(words[index + 1])))
                command.values.emplace(word.substr(2), "");
        } else if (accepts(word, arguments[index])) {
            command.values.emplace(word.substr(1, word.size() - 2), arguments[index]);
        } else {
            return std::nullopt;
        }
    }
    return command;
}

} // namespace

std::optional<std::string> Command::optionalValue(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Command> parseCommandLine(std::span<const std::string_view> arguments) {
    for (const std::string_view form : forms)
        if (auto command = match(form, arguments))
            return command;
    return std::nullopt;
}

std::string usage() {
    std::string text;
    for (const std::string_view form : forms) {
        text += text.empty() ? "usage: film " : "       film ";
        text += form;
        text += '\n';
    }
    return text + "<seconds> is a whole number from 1 on. A file whose name begins with \"-\" is written as "
                  "\"./-name\".\n";
}

} // namespace film
