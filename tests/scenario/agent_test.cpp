// SPDX-License-Identifier: Apache-2.0

#include <functional>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// The tool's log of its calls.
class ToolLog {
  public:
    explicit ToolLog(const Production& production) : log_(production.folder / "film-tool-log.jsonl") {
        news();
    }

    /// The new lines since the last call, without their time stamps.
    std::string news() {
        const std::string whole = contentOf(log_);
        std::string lines = whole.substr(seen_);
        seen_ = whole.size();
        const std::string time = std::string(R"({"at":")") + Production::planned + R"(",)";
        for (std::size_t place = 0; (place = lines.find(time, place)) != std::string::npos;)
            lines.erase(place, time.size());
        return lines;
    }

  private:
    fs::path log_;
    std::size_t seen_ = 0;
};

TEST(Agent, PassesArgumentsAndVariablesUnchanged) {
    const Production production;
    const FilmToolClient& film = production.film;
    const fs::path run = production.run;
    const std::string quoted = "\"" + run.string() + "\"";
    ToolLog log(production);
    for (const std::string& gate : gates())
        production.approve(gate);
    log.news();
    struct Row {
        const char* sentence;
        std::function<void()> call;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"status", [&] { film.status(run).get(); }, R"("arguments":["status",)" + quoted + "]}\n"},
        {"a path with dot components, unchanged",
         [&] { film.status(run.parent_path() / "./../the late ferry/run.json").get(); },
         R"("arguments":["status",")" + run.parent_path().string() +
             R"(/./../the late ferry/run.json"]})"
             "\n"},
        {"a relative path, as an absolute one", [&] { film.status(fs::proximate(run)).get(); },
         R"("arguments":["status",")" + fs::absolute(fs::proximate(run)).string() + "\"]}\n"},
        {"advance with everything",
         [&] { film.advance(run, "/opt/pi agents/pi", "a provider", "heron-32b-q4").get(); },
         R"("arguments":["run",)" + quoted +
             R"(,"--pi-command","/opt/pi agents/pi"],"piCommand":"/opt/pi agents/pi",)"
             R"("piProvider":"a provider","piModel":"heron-32b-q4"})"
             "\n"},
        {"advance with nothing", [&] { film.advance(run).get(); },
         R"("arguments":["run",)" + quoted + "]}\n"},
        {"advance with a model", [&] { film.advance(run, std::nullopt, std::nullopt, "heron").get(); },
         R"("arguments":["run",)" + quoted +
             R"(],"piModel":"heron"})"
             "\n"},
        {"review with everything", [&] { film.review(run, "pi", "local", "heron-8b-q4").get(); },
         R"("arguments":["review",)" + quoted +
             R"(,"--pi-command","pi"],"piCommand":"pi","piProvider":"local","piModel":"heron-8b-q4"})"
             "\n"},
        {"review with empty texts", [&] { film.review(run, "", "", "").get(); },
         R"("arguments":["review",)" + quoted +
             R"(,"--pi-command",""],"piCommand":"","piProvider":"","piModel":""})"
             "\n"},
        {"review with a provider", [&] { film.review(run, std::nullopt, "local").get(); },
         R"("arguments":["review",)" + quoted +
             R"(],"piProvider":"local"})"
             "\n"},
        {"reroll", [&] { film.reroll(run, "shot-03", "--note “it” 'twice'\n").get(); },
         R"("arguments":["reroll",)" + quoted +
             R"(,"--shot","shot-03","--note","--note “it” 'twice'\n"]})"
             "\n"},
        {"recover", [&] { film.recover(run).get(); }, R"("arguments":["recover",)" + quoted + "]}\n"},
        {"export", [&] { film.exportVistrel(run, production.directory / "h.json").get(); },
         R"("arguments":["export-vistrel",)" + quoted + R"(,"--output",")" +
             (production.directory / "h.json").string() + "\"]}\n"},
        {"the agent's launch", [&] { film.agentLaunchSpec(run, "my pi").get(); },
         R"("arguments":["agent","--run-manifest",)" + quoted +
             R"(,"--pi-command","my pi","--plugin-command",")" + programPath("film") +
             R"(","--print-command"],"piCommand":"my pi"})"
             "\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        row.call();
        EXPECT_EQ(log.news(), row.expected);
    }
}

TEST(Agent, PassesThePiCommandToAPlan) {
    const Production production;
    const fs::path folder = production.directory / "second";
    production.film.plan("An idea", "A title", 6, folder, "/opt/pi").get();
    EXPECT_EQ(contentOf(folder / "film-tool-log.jsonl"),
              R"({"at":")" + std::string(Production::planned) +
                  R"(","arguments":["plan","--idea","An idea","--title","A title","--duration","6",)"
                  R"("--output-dir",")" +
                  folder.string() + R"(","--pi-command","/opt/pi"],"piCommand":"/opt/pi"})" + "\n");
}

TEST(Agent, IsFoundAndLaunchedOnTheFilm) {
    const Production production;
    const Variable path("PATH", fs::path(programPath("pi")).parent_path().string());
    const std::string pi = PiExecutableResolver::resolve("pi").string();
    EXPECT_EQ(pi, programPath("pi"));
    EXPECT_EQ(FilmToolClient(pi).run({"--version"}).get(),
              (ProcessResult{pi, {"--version"}, 0, "pi 0.0.0-simulator\n", ""}));

    const PiAgentLaunchSpec launch = production.film.agentLaunchSpec(production.run, pi).get();
    PiAgentLaunchSpec expected;
    expected.command = {pi, "--extension", programPath("film"), "--run-manifest", production.run.string()};
    expected.cwd = production.folder.string();
    expected.environment = {{"QUEX_FILM_TOOLS_PLUGIN", programPath("film")},
                            {"QUEX_FILM_TOOLS_RUN_MANIFEST", production.run.string()}};
    EXPECT_EQ(launch, expected);

    // A tool that is given by its bare name reports its absolute path.
    EXPECT_EQ(FilmToolClient("film").agentLaunchSpec(production.run, pi).get(), expected);

    for (const std::optional<std::string>& command : {std::optional(pi), std::optional<std::string>()})
        EXPECT_EQ(production.film.run(production.film.agentArguments(production.run, command)).get().stdout,
                  "Here " + command.value_or("pi") + " would begin to work on \"" + Production::title +
                      "\".\n");
}

TEST(Agent, UsesTheLargestModelThatCanBeStarted) {
    const Variable statusFile("QUEXRUN_STATUS_FILE", std::nullopt);
    const Variable behaviour("QUEXRUN_MISBEHAVE", std::nullopt);
    const QuexRunAgentStatus status = QuexRunAgentClient(programPath("quexrun")).status().get();
    const QuexRunAgentModel best{"heron-32b-q4", "Heron 32B", true, 48, "llama-server", true};
    QuexRunAgentStatus expected;
    expected.models = {{"heron-8b-q4", "Heron 8B", true, 16, "llama-server", true},
                       best,
                       {"bittern-70b", "Bittern 70B", true, 96, "external", false},
                       {"bittern-120b", "Bittern 120B", false, 192, "mlx", true}};
    expected.pi = {true, "/usr/local/bin/pi", "0.0.0-simulator"};
    EXPECT_EQ(status, expected);
    EXPECT_EQ(status.bestInstalledModel(), best);

    const Production production;
    ToolLog log(production);
    production.approve("plan");
    log.news();
    production.film.advance(production.run, status.pi.path, "quexrun", best.id).get();
    EXPECT_EQ(log.news(), R"("arguments":["run",")" + production.run.string() +
                              R"(","--pi-command","/usr/local/bin/pi"],"piCommand":"/usr/local/bin/pi",)"
                              R"("piProvider":"quexrun","piModel":"heron-32b-q4"})"
                              "\n");
}

} // namespace
} // namespace kinovane::test
