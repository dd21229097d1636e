// SPDX-License-Identifier: Apache-2.0

#include "arguments/command_line.hpp"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <thread>
#include <utility>

#include <CLI/CLI.hpp>

#include <kinovane/version.hpp>

namespace kinovane::tool {

namespace {

constexpr unsigned maximumWorkers = 256;
constexpr std::size_t optionColumn = 26;

constexpr const char* workspaceHelp = "The run.json of the film's workspace, or the folder that holds it";
constexpr const char* jsonHelp = "Print one JSON object instead of text";

constexpr const char* mainFooter = R"(Examples:
  kinovane inspect my-film/run.json
  kinovane verify my-film/run.json
  kinovane publish my-film/run.json --vistrel vistrel --dry-run
  kinovane doctor

Exit statuses:
  0  done
  1  something unexpected went wrong
  2  the arguments were not understood
  3  the workspace could not be read
  4  the film cannot be handed over: a file is missing, damaged or misplaced, or there is no plan
  5  an external program is missing, failed, or gave no proper answer
  6  a file or folder could not be read or written
  7  Vistrel refused the film
)";

constexpr const char* inspectFooter = R"(Example:
  kinovane inspect my-film/run.json
)";

constexpr const char* verifyFooter = R"(Example:
  kinovane verify my-film/run.json

Ends with the status 0 when every file is sound, with 4 when a file is missing, changed
or misplaced, and with 6 when the only trouble is files that could not be read.

With --json: {"files": how many were verified, "bytes": their size as the project
records it, "sound": how many are sound, "damaged": [{"path", "kind", "description"}]},
where "kind" is missing, mismatch, unsafe or unreadable.
)";

constexpr const char* publishFooter = R"(Example:
  kinovane publish my-film/run.json --vistrel /opt/vistrel/bin/vistrel

Nothing is imported unless every file of the film has the digest that the project
records for it, and Vistrel has accepted the manifest in a dry run.
)";

constexpr const char* doctorFooter = R"(Example:
  kinovane doctor --film /opt/film/bin/film

Ends with the status 0 when all four programs are there and quexrun answers, and
otherwise with 5. That no model is installed is told, but is no failure.
)";

unsigned defaultWorkers() { return std::clamp(std::thread::hardware_concurrency(), 1U, maximumWorkers); }

/// A CLI11 validator: the error message, or an empty text.
std::string workersError(const std::string& text) {
    unsigned number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && rest == end && number >= 1 && number <= maximumWorkers)
        return {};
    return "\"" + text + "\" is not a whole number from 1 to " + std::to_string(maximumWorkers);
}

/// CLI11 ends some of its messages with a line break.
std::string trimmed(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

/// CLI11's help begins and ends with varying numbers of empty lines.
std::string helpText(const CLI::App& app) {
    const std::string text = app.help();
    const auto begin = std::min(text.find_first_not_of('\n'), text.size());
    return trimmed(text.substr(begin)) + "\n";
}

UsageError usageError(std::string message, const std::string& help) {
    return UsageError(trimmed(std::move(message)) + "\nFor help: " + help);
}

CLI::App* addInspect(CLI::App& app, InspectRequest& request) {
    CLI::App* command = app.add_subcommand("inspect", "Show what there is to know about a film's workspace")
                            ->group("Commands");
    command->add_option("RUN_JSON", request.runManifest, workspaceHelp)->required()->type_name("");
    command->add_flag("--json", request.json, jsonHelp);
    command->footer(inspectFooter);
    return command;
}

void addWorkers(CLI::App& command, unsigned& workers) {
    workers = defaultWorkers();
    command
        .add_option("--workers", workers,
                    "How many files to verify at once (default: one for each core of this machine)")
        ->type_name("N")
        ->check(workersError);
}

CLI::App* addVerify(CLI::App& app, VerifyRequest& request) {
    CLI::App* command =
        app.add_subcommand("verify", "Examine every file that is handed over, and show all that are damaged")
            ->group("Commands");
    command->add_option("RUN_JSON", request.runManifest, workspaceHelp)->required()->type_name("");
    addWorkers(*command, request.workers);
    command->add_flag("--json", request.json, jsonHelp);
    command->footer(verifyFooter);
    return command;
}

CLI::App* addPublish(CLI::App& app, PublishRequest& request) {
    CLI::App* command =
        app.add_subcommand("publish",
                           "Verify a film's files, write its handoff manifest and import it into Vistrel")
            ->group("Commands");
    command->add_option("RUN_JSON", request.runManifest, workspaceHelp)->required()->type_name("");
    command->add_option("--vistrel", request.vistrel, "Vistrel's command-line program: its name, or its path")
        ->required()
        ->type_name("PROGRAM");
    command
        ->add_option("--output", request.manifest,
                     "Where to write the manifest (default: vistrel-handoff.json in the workspace)")
        ->type_name("MANIFEST");
    command->add_flag("--dry-run", request.dryRun, "Let Vistrel check the manifest, and import nothing");
    addWorkers(*command, request.workers);
    command->add_flag("--json", request.json, jsonHelp);
    command->footer(publishFooter);
    return command;
}

CLI::App* addDoctor(CLI::App& app, DoctorRequest& request) {
    CLI::App* command =
        app.add_subcommand("doctor",
                           "Show which external programs and models are there, and what to do about "
                           "those that are not")
            ->group("Commands");
    const auto addProgram = [&](const std::string& name, std::string& program,
                                const std::string& description) {
        command
            ->add_option("--" + name, program,
                         description + ": its name, or its path (default: " + name + ")")
            ->type_name("PROGRAM");
    };
    addProgram("film", request.film, "The film tool");
    addProgram("vistrel", request.vistrel, "Vistrel's command-line program");
    addProgram("quexrun", request.quexrun, "The local agent runtime");
    addProgram("pi", request.pi, "The coding agent");
    command->add_flag("--json", request.json, jsonHelp);
    command->footer(doctorFooter);
    return command;
}

} // namespace

Command parseCommandLine(int argumentCount, const char* const* arguments) {
    InspectRequest inspectRequest;
    VerifyRequest verifyRequest;
    PublishRequest publishRequest;
    DoctorRequest doctorRequest;

    CLI::App app(
        "Looks into the workspace of a film, verifies its files, publishes the film to Vistrel, and shows "
        "whether the programs for it are there.",
        "kinovane");
    const auto formatter = app.get_formatter();
    formatter->column_width(optionColumn);
    formatter->label("Positionals", "Arguments");
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("REQUIRED", "(required)");
    app.set_help_flag("-h,--help", "Show this help");
    app.set_version_flag("--version", std::string("kinovane ") + KinovaneCoreVersionString,
                         "Show the version");
    app.require_subcommand(1);
    app.footer(mainFooter);
    const CLI::App* inspectCommand = addInspect(app, inspectRequest);
    const CLI::App* verifyCommand = addVerify(app, verifyRequest);
    const CLI::App* publishCommand = addPublish(app, publishRequest);
    const CLI::App* doctorCommand = addDoctor(app, doctorRequest);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::CallForHelp&) {
        return Notice{helpText(app)};
    } catch (const CLI::CallForVersion& version) {
        return Notice{trimmed(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        if (inspectCommand->parsed())
            throw usageError(error.what(), "kinovane inspect --help");
        if (verifyCommand->parsed())
            throw usageError(error.what(), "kinovane verify --help");
        if (publishCommand->parsed())
            throw usageError(error.what(), "kinovane publish --help");
        if (doctorCommand->parsed())
            throw usageError(error.what(), "kinovane doctor --help");
        throw usageError("A command is needed: inspect, verify, publish or doctor", "kinovane --help");
    }
    if (inspectCommand->parsed())
        return inspectRequest;
    if (verifyCommand->parsed())
        return verifyRequest;
    if (doctorCommand->parsed())
        return doctorRequest;
    return publishRequest;
}

} // namespace kinovane::tool
