// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <kinovane/handoff.hpp>

#include "film_data.hpp"
#include "peer_openssl.hpp"
#include "peer_process.hpp"
#include "report.hpp"

/// Figures 1 to 4: how fast a film's media files are verified.
namespace kinovane::benchmarks {

namespace {

constexpr std::size_t megabyte = 1'000'000;

Timing building(const MediaFilm& film, unsigned workers) {
    return timed([&film, workers] {
        HandoffBuildOptions options;
        options.workers = workers;
        VistrelHandoffBuilder::build(film.snapshot, "film", "now", options);
    });
}

std::vector<std::string> withFiles(std::vector<std::string> command, const MediaFilm& film) {
    for (const std::filesystem::path& file : film.files)
        command.push_back(file.string());
    return command;
}

/// A list for `sha256sum -c`.
std::filesystem::path checksumList(const MediaFilm& film, const std::filesystem::path& list) {
    std::ofstream out(list);
    for (std::size_t index = 0; index < film.files.size(); ++index)
        out << film.snapshot.project.artifacts[index].sha256.substr(7) << "  " << film.files[index].string()
            << '\n';
    return list;
}

void measureLargeFiles(const Settings& settings, Report& report) {
    const DataFolder folder(settings.data / "large", settings.keep);
    const MediaFilm film =
        makeMediaFilm(folder.path(), std::vector<std::size_t>(40, settings.size(50 * megabyte)));
    const auto list = checksumList(film, folder.path() / "checksums");
    if (settings.wants(1))
        report.add(compare(
            {1, "build, 2 GB in 40 files, one worker"}, settings.rounds(9), building(film, 1),
            {{"openssl dgst -sha256", 1.12,
              timed([command = withFiles({"openssl", "dgst", "-sha256"}, film)] { runQuietly(command); })},
             {"hashing in memory", 0.95, timed([&] { hashInMemory(film.bytes); })},
             {"sha256sum -c", 3.2, timed([&] { runQuietly({"sha256sum", "-c", list.string()}); })}}));
    if (settings.wants(2))
        report.add(compare(
            {2, "build, 2 GB in 40 files, two workers"}, settings.rounds(11), building(film, 2),
            {{"one worker", 1.85, building(film, 1)}, {"hashing in memory on two threads", 0.90, timed([&] {
                                                           hashInMemoryOnTwoThreads(film.bytes);
                                                       })}}));
}

void measureUnevenFiles(const Settings& settings, Report& report) {
    const DataFolder folder(settings.data / "uneven", settings.keep);
    std::vector<std::size_t> sizes(40, settings.size(25 * megabyte));
    sizes.push_back(settings.size(1000 * megabyte));
    const MediaFilm bigLast = makeMediaFilm(folder.path(), sizes);
    MediaFilm bigFirst = bigLast;
    auto& artifacts = bigFirst.snapshot.project.artifacts;
    std::rotate(artifacts.begin(), artifacts.end() - 1, artifacts.end());
    for (const auto& [position, film] :
         {std::pair("last", &bigLast), std::pair<const char*, const MediaFilm*>("first", &bigFirst)})
        report.add(compare(
            {3, std::string("build, 1 GB and 40 of 25 MB, two workers, big one ") + position},
            settings.rounds(11), building(*film, 2),
            {{"hashing half of it in memory", 0.90, timed([&] { hashInMemory(bigLast.bytes / 2); })}}));
}

void measureSmallFiles(const Settings& settings, Report& report) {
    const DataFolder folder(settings.data / "small", settings.keep);
    const MediaFilm film =
        makeMediaFilm(folder.path(), std::vector<std::size_t>(settings.size(20'000), 1'000));
    report.add(
        compare({4, "build, 20,000 files of 1 KB, one worker"}, settings.rounds(21), building(film, 1),
                {{"open, fstat, read, hash, close", 0.80, timed([&] { hashFilesBare(film.files); })}}));
}

} // namespace

void measureDigests(const Settings& settings, Report& report) {
    if (settings.wants(1) || settings.wants(2))
        measureLargeFiles(settings, report);
    if (settings.wants(3))
        measureUnevenFiles(settings, report);
    if (settings.wants(4))
        measureSmallFiles(settings, report);
}

} // namespace kinovane::benchmarks
