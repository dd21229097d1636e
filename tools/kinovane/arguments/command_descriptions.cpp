// SPDX-License-Identifier: Apache-2.0

#include "arguments/command_descriptions.hpp"

#include <algorithm>
#include <limits>
#include <thread>

#include <CLI/CLI.hpp>

#include "arguments/argument_checks.hpp"
#include "arguments/help_footers.hpp"
#include "arguments/storyboard_description.hpp"
#include "arguments/timeline_description.hpp"

namespace kinovane::tool {

namespace {

constexpr unsigned maximumWorkers = 64; // The library uses no more.

constexpr const char* filmHelp = "The film's folder, or the run.json in it (default: the current folder)";

unsigned defaultWorkers() { return std::clamp(std::thread::hardware_concurrency(), 1U, maximumWorkers); }

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

        CLI::App& storyboard =
            add("storyboard", "Write a page that shows the film in a browser", group, storyboardFooter);
        describeStoryboard(storyboard, requests_.storyboard);
        workers(storyboard, requests_.storyboard.workers);
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

        CLI::App& timeline =
            add("timeline", "Write the film as a timeline for an editing program", group, timelineFooter);
        film(timeline, requests_.timeline.film);
        describeTimeline(timeline, requests_.timeline);
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
            ->check([](const std::string& shell) { return choiceError(shell, {"bash", "fish", "zsh"}); });

        CLI::App& manual = add("manual", "Print a manual page in the language of man(7)", group);
        option(manual, "COMMAND", requests_.helpTopic, "", "The command (default: the tool as a whole)");
    }

    CLI::App& app_;
    Requests& requests_;
};

} // namespace

void describeCommands(CLI::App& app, Requests& requests) { Description(app, requests).addCommands(); }

} // namespace kinovane::tool
