// SPDX-License-Identifier: Apache-2.0

#include "common/program.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <vector>

#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace simulator {
namespace {

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
    // If the caller forgets a file, the option after it must not be taken for the file's name.
    for (const char* file : {"<run.json>", "<folder>", "<file>", "<manifest>"})
        if (placeholder == file)
            return !value.empty() && value.front() != '-';
    return true;
}

std::optional<Command> match(std::string_view form, Arguments arguments) {
    const std::vector<std::string_view> words = wordsOf(form);
    if (words.size() != arguments.size())
        return std::nullopt;
    Command command{std::string(words.front()), {}};
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        const std::string_view argument = arguments[index];
        if (isPlaceholder(word) ? !accepts(word, argument) : word != argument)
            return std::nullopt;
        if (isPlaceholder(word))
            command.values.insert_or_assign(std::string(word.substr(1, word.size() - 2)), argument);
        else if (word.starts_with("--"))
            command.values.emplace(word.substr(2), "");
    }
    return command;
}

} // namespace

std::optional<std::string> Command::optionalValue(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Command> CommandLine::parse(Arguments arguments) const {
    for (const std::string_view form : forms)
        if (auto command = match(form, arguments))
            return command;
    return std::nullopt;
}

std::string CommandLine::usage() const {
    std::string text;
    for (const std::string_view form : forms) {
        text += (text.empty() ? "usage: " : "       ") + std::string(program) + ' ';
        text += form;
        text += '\n';
    }
    return text.append(hint);
}

int runProgram(int argumentCount, char** argumentValues, const CommandLine& commandLine, const char* reply,
               const std::function<int(const Command&, Arguments)>& perform) {
    try {
        const std::vector<std::string_view> all(argumentValues, argumentValues + argumentCount);
        const Arguments arguments = Arguments(all).subspan(all.empty() ? 0 : 1);
        const auto command = commandLine.parse(arguments);
        if (!command) {
            std::cerr << commandLine.usage();
            return misused;
        }
        const int status = perform(*command, arguments);
        if (!std::cout.flush())
            throw Refusal("cannot write the " + std::string(reply) + " to standard output");
        return status;
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "cannot use " << jsonQuoted(error.path1().native()) << ": " << error.code().message()
                  << '\n';
    } catch (const std::bad_alloc&) {
        std::cerr << "there is not enough memory\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return refused;
}

} // namespace simulator
