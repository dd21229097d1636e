// SPDX-License-Identifier: Apache-2.0

#include "tooling/film_tool/command_rows.hpp"

#include <optional>
#include <utility>

#include "support/recorder.hpp"
#include "support/task_failure.hpp"
#include "tooling/film_tool/replies.hpp"

namespace kinovane::test {

namespace {

using Client = FilmToolClient;

/// Calls whose reply is decoded.
std::vector<CommandRow> decodingRows() {
    const std::string run = "/films/run.json";
    return {
        {"plan",
         planReply("/r.json"),
         [](const Client& client) { return failureOf(client.plan("An idea", "A title", 90, "/films")); },
         {"plan", "--idea", "An idea", "--title", "A title", "--duration", "90", "--output-dir", "/films"}},
        {"plan with pi",
         planReply("/r.json"),
         [](const Client& client) {
             return failureOf(client.plan("An idea", "A title", 90, "/films", "/opt/pi"));
         },
         {"plan", "--idea", "An idea", "--title", "A title", "--duration", "90", "--output-dir", "/films",
          "--pi-command", "/opt/pi"}},
        {"plan with an empty pi",
         planReply("/r.json"),
         [](const Client& client) { return failureOf(client.plan("", "", 0, "/", "")); },
         {"plan", "--idea", "", "--title", "", "--duration", "0", "--output-dir", "/", "--pi-command", ""}},
        {"status",
         statusRow().fullDocument(),
         [run](const Client& client) { return failureOf(client.status(run)); },
         {"status", run}},
        {"exportVistrel",
         exportReceiptRow().fullDocument(),
         [run](const Client& client) { return failureOf(client.exportVistrel(run)); },
         {"export-vistrel", run}},
        {"exportVistrel with an output",
         exportReceiptRow().fullDocument(),
         [run](const Client& client) { return failureOf(client.exportVistrel(run, "/films/h.json")); },
         {"export-vistrel", run, "--output", "/films/h.json"}},
        {"agentLaunchSpec",
         launchSpecRow().fullDocument(),
         [run](const Client& client) { return failureOf(client.agentLaunchSpec(run, "pi")); },
         {"agent", "--run-manifest", run, "--pi-command", "pi", "--plugin-command", Recorder::path(),
          "--print-command"}},
    };
}

/// Calls whose output is not decoded.
std::vector<CommandRow> otherRows() {
    const std::string run = "/films/run.json";
    return {
        {"approve",
         "",
         [run](const Client& client) { return failureOf(client.approve(run, "plan", "Go on", "Noor")); },
         {"approve", run, "--gate", "plan", "--note", "Go on", "--approved-by", "Noor"}},
        {"approve with empty texts",
         "",
         [run](const Client& client) { return failureOf(client.approve(run, "", "", "")); },
         {"approve", run, "--gate", "", "--note", "", "--approved-by", ""}},
        {"recover",
         "",
         [run](const Client& client) { return failureOf(client.recover(run)); },
         {"recover", run}},
        {"reroll",
         "",
         [run](const Client& client) { return failureOf(client.reroll(run, "s1", "darker")); },
         {"reroll", run, "--shot", "s1", "--note", "darker"}},
        {"run",
         "",
         [](const Client& client) { return failureOf(client.run({"--version", ""})); },
         {"--version", ""}},
        {"run with an environment",
         "",
         [](const Client& client) { return failureOf(client.run({}, {{"KINOVANE_A", "a=b"}})); },
         {},
         {{"KINOVANE_A", "a=b"}}},
    };
}

using OptionalText = std::optional<std::string>;

/// Adds `advance` or `review` with and without pi command, provider and model.
void addPiRows(std::vector<CommandRow>& rows, const std::string& name, const std::string& word,
               Task<ProcessResult> (Client::*operation)(const std::filesystem::path&, const OptionalText&,
                                                        const OptionalText&, const OptionalText&, RunOptions)
                   const) {
    struct Options {
        const char* sentence;
        OptionalText command;
        OptionalText provider;
        OptionalText model;
    };
    const std::vector<Options> rowsOfOptions{
        {"without options", {}, {}, {}},         {"with pi", "/opt/pi", {}, {}},
        {"with an empty pi", "", {}, {}},        {"with a provider", {}, "local", {}},
        {"with an empty provider", {}, "", {}},  {"with a model", {}, {}, "x"},
        {"with an empty model", {}, {}, ""},     {"with provider and model", {}, "local", "a model=\"x\"\n"},
        {"with everything", "pi", "local", "x"},
    };
    for (const Options& options : rowsOfOptions) {
        CommandRow row{name + " " + options.sentence, "", {}, {word, "/films/run.json"}};
        row.failure = [operation, options](const Client& client) {
            return failureOf((client.*operation)("/films/run.json", options.command, options.provider,
                                                 options.model, RunOptions()));
        };
        if (options.command) {
            row.arguments.emplace_back("--pi-command");
            row.arguments.push_back(*options.command);
        }
        if (options.provider)
            row.environment["QUEX_FILM_TOOLS_PI_PROVIDER"] = *options.provider;
        if (options.model)
            row.environment["QUEX_FILM_TOOLS_PI_MODEL"] = *options.model;
        row.decodes = false;
        rows.push_back(row);
    }
}

} // namespace

std::vector<CommandRow> commandRows() {
    std::vector<CommandRow> rows = decodingRows();
    for (CommandRow row : otherRows()) {
        row.decodes = false;
        rows.push_back(std::move(row));
    }
    addPiRows(rows, "advance", "run", &Client::advance);
    addPiRows(rows, "review", "review", &Client::review);
    return rows;
}

} // namespace kinovane::test
