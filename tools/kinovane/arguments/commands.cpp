// SPDX-License-Identifier: Apache-2.0

#include "arguments/commands.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <thread>
#include <utility>

#include <CLI/CLI.hpp>

#include <kinovane/version.hpp>

namespace kinovane::tool {

namespace {

constexpr unsigned maximumWorkers = 64; // The library uses no more.

constexpr const char* filmHelp = "The film's folder, or the run.json in it (default: the current folder)";

constexpr const char* mainFooter = R"(Examples:
  kinovane status                 where the film in this folder stands, and what to do next
  kinovane verify my-film         examine every file that is handed over
  kinovane publish --dry-run      check the film in this folder with Vistrel

Exit statuses:
  0    done
  1    something unexpected went wrong
  2    the arguments were not understood, or would replace one of the film's own files
  3    the workspace could not be read
  4    the film cannot be handed over: a file is missing, damaged or misplaced, or the
       documents prevent it
  5    an external program is missing, failed, or gave no valid reply
  6    a file or folder could not be read or written
  7    Vistrel refused the film
  130  interrupted by Ctrl-C
)";

constexpr const char* verifyFooter = R"(Examples:
  kinovane verify my-film
  kinovane verify --all --unrecorded film-1 film-2
  kinovane verify --write-checksums - | sha256sum --check

Ends with the status 0 when every file is sound, with 4 when a file is missing, changed
or misplaced, and with 6 when the only problem is files that could not be read.
)";

constexpr const char* copyFooter = R"(Example:
  kinovane copy my-film /media/archive/my-film

A copy that was interrupted is continued by the same command. A file of the target that
differs from the film is reported and never replaced.
)";

constexpr const char* publishFooter = R"(Examples:
  kinovane publish --dry-run
  kinovane publish my-film --vistrel /opt/vistrel/bin/vistrel
  SOURCE_DATE_EPOCH=0 kinovane publish --manifest-only --output - >manifest.json

Nothing is imported unless every file of the film has the digest that the project
records for it, and Vistrel has accepted the manifest in a dry run.
)";

constexpr const char* artifactsFooter = R"(Example:
  kinovane artifacts --kind shot-clip --paths -0 | xargs -0 ls -l
)";

constexpr const char* openFooter = R"(Examples:
  kinovane open                   the best cut
  kinovane open shot-03           the clip of a shot
  kinovane open poster --print    the path of the poster
)";

constexpr const char* filmToolFooter =
    R"(The film tool's output is shown as it arrives. Ctrl-C stops the tool and what it started.
Afterwards the command shows what changed in the film.
)";

constexpr const char* doctorFooter = R"(Example:
  kinovane doctor --film /opt/film/bin/film

Ends with the status 0 when all four programs are found and quexrun replies, and
otherwise with 5. It is no failure when no model is installed.
)";

unsigned defaultWorkers() { return std::clamp(std::thread::hardware_concurrency(), 1U, maximumWorkers); }

/// A CLI11 validator: the error message, or an empty text.
std::string wholeNumberError(const std::string& text, std::int64_t least, std::int64_t most) {
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && rest == end && number >= least && number <= most)
        return {};
    return "\"" + text + "\" is not a whole number from " + std::to_string(least) + " to " +
           std::to_string(most);
}

/// Adds the commands to the description, each with its arguments.
class Description {
  public:
    Description(CLI::App& app, Requests& requests) : app_(app), requests_(requests) {}

    void addCommands() {
        addLooking();
        addChecking();
        addProducing();
        addHelp();
    }

  private:
    CLI::App& add(const char* name, const char* summary, const char* group, const char* footer = "") {
        CLI::App* command = app_.add_subcommand(name, summary)->group(group);
        command->footer(footer);
        return *command;
    }

    template <class Value>
    static CLI::Option* option(CLI::App& command, const char* name, Value& value, const char* type,
                               const char* help) {
        return command.add_option(name, value, help)->type_name(type);
    }

    static void film(CLI::App& command, std::filesystem::path& film) {
        option(command, "FILM", film, "", filmHelp);
    }

    static void films(CLI::App& command, std::vector<std::filesystem::path>& films) {
        option(command, "FILM", films, "",
               "The films' folders, or the run.json files in them (default: the "
               "current folder)");
    }

    static void workers(CLI::App& command, unsigned& workers) {
        workers = defaultWorkers();
        option(command, "--workers", workers, "N",
               "How many files to read at once (default: one for each core of this machine)")
            ->check([](const std::string& text) { return wholeNumberError(text, 1, maximumWorkers); });
    }

    static void program(CLI::App& command, const char* name, std::string& program, const char* help) {
        option(command, name, program, "PROGRAM", help);
    }

    static void filmTool(CLI::App& command, FilmToolArguments& tool, bool usesAgent) {
        program(command, "--film-tool", tool.program, "The film tool: its name, or its path (default: film)");
        if (!usesAgent)
            return;
        option(command, "--pi", tool.pi, "PROGRAM", "The coding agent that the film tool is to use");
        option(command, "--provider", tool.provider, "NAME", "The provider of the agent's model");
        option(command, "--model", tool.model, "NAME", "The agent's model");
    }

    void addLooking() {
        constexpr const char* group = "See a film";
        CLI::App& status = add("status", "Show where the film stands, and what to do next", group);
        film(status, requests_.status.film);

        CLI::App& inspect = add("inspect", "Show everything that a film's documents tell", group);
        films(inspect, requests_.inspect.films);

        CLI::App& shots = add("shots", "List the planned shots in film order", group);
        film(shots, requests_.shots.film);

        CLI::App& artifacts = add("artifacts", "List the recorded files", group, artifactsFooter);
        film(artifacts, requests_.artifacts.film);
        option(artifacts, "--shot", requests_.artifacts.shot, "ID",
               "Only the key frame and the clip of a shot");
        option(artifacts, "--kind", requests_.artifacts.kind, "KIND", "Only files of this kind");
        artifacts.add_flag("--paths", requests_.artifacts.paths, "Print only the paths, one a line");
        artifacts.add_flag("-0,--null", requests_.artifacts.nul,
                           "Print only the paths, each followed by a NUL byte");

        CLI::App& open = add("open", "Open a shot's clip, the poster or the best cut", group, openFooter);
        option(open, "WHAT", requests_.open.what, "",
               "The id of a shot, or \"poster\" (default: the best cut)");
        film(open, requests_.open.film);
        open.add_flag("--print", requests_.open.print, "Print the path, and open nothing");
    }

    void addChecking() {
        constexpr const char* group = "Check and hand over";
        CLI::App& verify =
            add("verify", "Examine a film's files, and show all that are damaged", group, verifyFooter);
        films(verify, requests_.verify.films);
        workers(verify, requests_.verify.workers);
        verify.add_flag("--all", requests_.verify.all,
                        "Examine every recorded file, not only those that are handed over");
        verify.add_flag("--unrecorded", requests_.verify.unrecorded,
                        "List the files that the project does not record as well");
        option(verify, "--checksums", requests_.verify.checksums, "FILE",
               "Compare the files with a list in the format of sha256sum as well");
        option(verify, "--write-checksums", requests_.verify.writeChecksums, "FILE",
               "Store the digests of the sound files in the format of sha256sum (- for standard output)");

        CLI::App& publish =
            add("publish", "Verify a film, write its handoff manifest, import it into Vistrel", group,
                publishFooter);
        PublishRequest& request = requests_.publish;
        film(publish, request.film);
        program(publish, "--vistrel", request.vistrel,
                "Vistrel's command-line program: its name, or its path (default: vistrel)");
        option(publish, "--output", request.manifest, "MANIFEST",
               "Where to store the manifest (default: vistrel-handoff.json in the film's folder; - for "
               "standard output, which implies --manifest-only)");
        option(publish, "--exported-at", request.exportedAt, "TIME",
               "The time stamp in the manifest (default: SOURCE_DATE_EPOCH, or the current time)");
        publish.add_flag("--force", request.force, "Replace a file that is no handoff manifest");
        publish.add_flag("--dry-run", request.dryRun,
                         "Let Vistrel check the film; import nothing, store nothing in the film's folder");
        publish.add_flag("--manifest-only", request.manifestOnly, "Store the manifest, and run no importer");
        publish.add_flag("--strict", request.strict, "Refuse a film with warnings");
        workers(publish, request.workers);

        CLI::App& copy = add("copy", "Copy a film to another disk, and verify the copy", group, copyFooter);
        option(copy, "FILM", requests_.copy.film, "", "The film's folder, or the run.json in it")->required();
        option(copy, "TARGET", requests_.copy.target, "", "The folder of the copy")->required();
    }

    void addProducing() {
        constexpr const char* group = "Produce a film";
        CLI::App& plan = add("plan", "Plan a new film", group, filmToolFooter);
        option(plan, "IDEA", requests_.plan.idea, "", "What the film is about")->required();
        option(plan, "--title", requests_.plan.title, "TITLE", "The title of the film")->required();
        option(plan, "--duration", requests_.plan.durationSeconds, "SECONDS", "The length of the film")
            ->required()
            ->check([](const std::string& text) {
                return wholeNumberError(text, 1, std::numeric_limits<std::int64_t>::max());
            });
        option(plan, "--folder", requests_.plan.folder, "FOLDER",
               "Where to create the film's folder (default: the current folder)");
        filmTool(plan, requests_.plan.tool, true);

        CLI::App& approve = add("approve", "Approve what the film waits for", group, filmToolFooter);
        option(approve, "GATE", requests_.approve.gate, "",
               "The approval gate (default: the one that the film waits for)");
        film(approve, requests_.approve.film);
        option(approve, "--note", requests_.approve.note, "TEXT", "A note that is recorded");
        option(approve, "--by", requests_.approve.approvedBy, "NAME",
               "Who approves (default: your user name)");
        filmTool(approve, requests_.approve.tool, false);

        CLI::App& advance =
            add("advance", "Continue the production until the next approval", group, filmToolFooter);
        film(advance, requests_.advance.film);
        filmTool(advance, requests_.advance.tool, true);

        CLI::App& review = add("review", "Review the film", group, filmToolFooter);
        film(review, requests_.review.film);
        filmTool(review, requests_.review.tool, true);

        CLI::App& reroll = add("reroll", "Request another take of a shot", group, filmToolFooter);
        option(reroll, "SHOT", requests_.reroll.shot, "", "The id of the shot")->required();
        film(reroll, requests_.reroll.film);
        option(reroll, "--note", requests_.reroll.note, "TEXT", "What should be different")->required();
        filmTool(reroll, requests_.reroll.tool, false);

        CLI::App& recover =
            add("recover", "Recover a film whose last step was interrupted", group, filmToolFooter);
        film(recover, requests_.recover.film);
        filmTool(recover, requests_.recover.tool, false);

        CLI::App& exportFilm =
            add("export", "Let the film tool write a handoff for Vistrel", group, filmToolFooter);
        film(exportFilm, requests_.exportFilm.film);
        option(exportFilm, "--output", requests_.exportFilm.output, "MANIFEST",
               "Where to write it (default: the film tool decides)");
        filmTool(exportFilm, requests_.exportFilm.tool, false);
    }

    void addHelp() {
        constexpr const char* group = "Help";
        CLI::App& doctor =
            add("doctor", "Show which external programs and models are there", group, doctorFooter);
        program(doctor, "--film", requests_.doctor.film,
                "The film tool: its name, or its path (default: film)");
        program(doctor, "--vistrel", requests_.doctor.vistrel,
                "Vistrel's command-line program: its name, or its path (default: vistrel)");
        program(doctor, "--quexrun", requests_.doctor.quexrun,
                "The local agent runtime: its name, or its path (default: quexrun)");
        program(doctor, "--pi", requests_.doctor.pi, "The coding agent: its name, or its path (default: pi)");

        CLI::App& help = add("help", "Show the help of a command", group);
        option(help, "COMMAND", requests_.helpTopic, "", "The command (default: all commands)");

        CLI::App& completion = add("completion", "Print a completion script for a shell", group);
        option(completion, "SHELL", requests_.shell, "", "The shell: bash, zsh or fish")
            ->required()
            ->check([](const std::string& shell) {
                const bool known = shell == "bash" || shell == "zsh" || shell == "fish";
                return known ? std::string() : "\"" + shell + "\" is not one of bash, fish, zsh";
            });

        CLI::App& manual = add("manual", "Print a manual page in the language of man(7)", group);
        option(manual, "COMMAND", requests_.helpTopic, "", "The command (default: the tool as a whole)");
    }

    CLI::App& app_;
    Requests& requests_;
};

/// An option whose value is one of several words.
template <class Value>
void addChoice(CLI::App& app, const char* name, Value& value, const char* type, const char* help,
               const std::map<std::string, Value>& choices) {
    const auto check = [choices](const std::string& word) {
        std::string words;
        for (const auto& [choice, ignored] : choices)
            words += (words.empty() ? "" : ", ") + choice;
        return choices.contains(word) ? std::string() : "\"" + word + "\" is not one of " + words;
    };
    app.add_option_function<std::string>(
           name, [&value, choices](const std::string& word) { value = choices.at(word); }, help)
        ->type_name(type)
        ->check(check);
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
        {"status", status}, {"inspect", inspect}, {"shots", shots},       {"artifacts", artifacts},
        {"open", open},     {"verify", verify},   {"publish", publish},   {"copy", copy},
        {"plan", plan},     {"approve", approve}, {"advance", advance},   {"review", review},
        {"reroll", reroll}, {"recover", recover}, {"export", exportFilm}, {"doctor", doctor},
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
    Description(*app, requests).addCommands();
    return app;
}

} // namespace kinovane::tool
