// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <cstdlib>
#include <iostream>

#include "commands.hpp"
#include "common/program.hpp"
#include "misbehaviour.hpp"
#include "workspace.hpp"

namespace simulator::film {
namespace {

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
constexpr std::string_view hint =
    "<seconds> is a whole number from 1 on. A file whose name begins with \"-\" is written as \"./-name\".\n";

void addVariable(json::object& entry, const char* key, const char* variable) {
    if (const char* value = std::getenv(variable))
        entry[key] = value;
}

/// Appends one line of JSON: the arguments, the pi command, and the variables that choose pi's provider and
/// model. A variable that is not set has no key. A film without a log gets no line: it was not planned here,
/// and reading it must not change it.
void logInvocation(const std::filesystem::path& root, Arguments arguments, const Command& command) {
    const std::filesystem::path log = root / logName;
    if (!std::filesystem::exists(log))
        return;
    json::object entry{{"at", timeStamp()}, {"arguments", json::array(arguments.begin(), arguments.end())}};
    if (const auto pi = command.optionalValue("pi"))
        entry["piCommand"] = *pi;
    addVariable(entry, "piProvider", "QUEX_FILM_TOOLS_PI_PROVIDER");
    addVariable(entry, "piModel", "QUEX_FILM_TOOLS_PI_MODEL");
    // One write per line keeps the lines of concurrent calls apart.
    File::append(log).write(json::serialize(entry) + '\n');
}

int perform(const Command& command, Arguments arguments) {
    // A new film has no log yet: its first entry follows its creation.
    const bool isNew = command.word == "plan";
    if (!isNew)
        logInvocation(filmFolder(command), arguments, command);
    bool cutOff = false;
    if (const auto status = misbehave("FILM_MISBEHAVE", misbehaviours(command, cutOff)))
        return *status;
    std::cout << performCommand(command, cutOff) << '\n';
    if (isNew)
        logInvocation(filmFolder(command), arguments, command);
    return 0;
}

} // namespace
} // namespace simulator::film

int main(int argumentCount, char** argumentValues) {
    using namespace simulator;
    return runProgram(argumentCount, argumentValues, {"film", film::forms, film::hint}, "reply",
                      film::perform);
}
