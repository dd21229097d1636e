// SPDX-License-Identifier: Apache-2.0

#include <stdexcept>
#include <string>
#include <vector>

#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "file_text.hpp"
#include "film_data.hpp"
#include "peer_json.hpp"
#include "report.hpp"

/// Figures 5 to 7: the time and the memory to load a workspace.
namespace kinovane::benchmarks {

namespace {

/// A workspace that consists of a run manifest and a project document.
struct Workspace {
    Workspace(const Settings& settings, const std::string& name, std::size_t bytes)
        : folder(settings.data / name, settings.keep), run(folder.path() / "run.json"),
          project(folder.path() / "film-project.json") {
        const std::string document = projectDocument(bytes);
        size = document.size();
        storeText(run, "{}\n");
        storeText(project, document);
    }

    /// A peer that makes other records would do a different task.
    void requireSameRecords() const {
        const FilmProject expected = FilmProjectLoader::load(run).project;
        for (const auto& load : {loadWithNlohmann, loadWithSimdjsonTree, loadWithSimdjsonOnDemand})
            if (load(project) != expected)
                throw std::runtime_error("a peer makes other records than the library");
    }

    DataFolder folder;
    std::filesystem::path run;
    std::filesystem::path project;
    std::size_t size = 0;
};

void measureTime(const Workspace& workspace, const Settings& settings, Report& report) {
    report.add(
        compare({5, "load, project document of 49 MB"}, settings.rounds(15),
                timed([&] { FilmProjectLoader::load(workspace.run); }),
                {{"nlohmann::json into records", 7, timed([&] { loadWithNlohmann(workspace.project); })},
                 {"Boost.JSON tree, no records", 1.0, timed([&] { parseWithBoost(workspace.project); })},
                 {"simdjson tree into records", 1.0, timed([&] { loadWithSimdjsonTree(workspace.project); })},
                 {"simdjson on demand into records", 1.0,
                  timed([&] { loadWithSimdjsonOnDemand(workspace.project); })}}));
}

/// The growth of memory divided by the size of the document, each time in a new process.
Row memoryRow(const std::string& loader, const std::string& name, std::optional<double> target,
              const Workspace& workspace, std::size_t rounds) {
    Row row{.figure = {6, "load, 49 MB, peak memory over the document's size"},
            .peer = name,
            .ratios = {},
            .target = target,
            .atMost = true};
    const FilmToolClient program(KINOVANE_MEMORY_OF_LOAD);
    for (std::size_t round = 0; round < rounds; ++round) {
        const ProcessResult result = program.run({loader, workspace.folder.path().string()}).get();
        row.ratios.push_back(std::stod(result.stdout) * 1024 / static_cast<double>(workspace.size));
    }
    return row;
}

void measureSmallDocument(const Settings& settings, Report& report) {
    const Workspace workspace(settings, "small-project", 150'000);
    workspace.requireSameRecords();
    const std::size_t times = settings.size(400);
    report.add(compare({7, "load, project document of 150 KB"}, settings.rounds(15),
                       timedRepeatedly(times, [&] { FilmProjectLoader::load(workspace.run); }),
                       {{"nlohmann::json into records", 6,
                         timedRepeatedly(times, [&] { loadWithNlohmann(workspace.project); })},
                        {"Boost.JSON tree, no records", 1.0,
                         timedRepeatedly(times, [&] { parseWithBoost(workspace.project); })}}));
}

} // namespace

void measureLoad(const Settings& settings, Report& report) {
    if (settings.wants(7))
        measureSmallDocument(settings, report);
    if (!settings.wants(5) && !settings.wants(6))
        return;
    const Workspace workspace(settings, "large-project", settings.size(49'000'000));
    workspace.requireSameRecords();
    if (settings.wants(5))
        measureTime(workspace, settings, report);
    if (settings.wants(6))
        report.add({memoryRow("library", "(the library)", 2.0, workspace, settings.rounds(5)),
                    memoryRow("nlohmann", "(nlohmann::json, for comparison)", std::nullopt, workspace,
                              settings.rounds(5))});
}

} // namespace kinovane::benchmarks
