// SPDX-License-Identifier: Apache-2.0

// Files are replaced, truncated and removed while they are verified.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "races/changing_film.hpp"
#include "races/exchange.hpp"
#include "support/repeating_thread.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 20;
constexpr int maximumRounds = 50'000;
constexpr std::size_t minimumTurns = 40;

void overwrite(const fs::path& file, std::string_view content) {
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
}

struct ChangeRow {
    const char* sentence;
    void (*prepare)(const ChangingFilm& film);
    /// Changes one of the files; `turn` counts the earlier changes of the same file.
    void (*change)(const ChangingFilm& film, std::size_t file, std::size_t turn);
    std::set<FileResult> expected; ///< Each of them has to occur.
    std::set<FileResult> possible; ///< These may occur as well.
};

const auto noPreparation = [](const ChangingFilm& /*film*/) {};

const ChangeRow rows[] = {
    {"replaced by another",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t turn) {
         fs::path next = film.file(file);
         next += ".next";
         if (turn % 2 == 0)
             fs::copy_file(film.otherFile(file), next);
         else
             std::ofstream(next, std::ios::binary) << film.content(file);
         fs::rename(next, film.file(file));
     },
     {FileResult::sound, FileResult::other},
     {}},
    {"exchanged with another",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         exchange(film.file(file), film.otherFile(file));
     },
     {FileResult::sound, FileResult::other},
     {}},
    {"in a folder that is exchanged with another",
     noPreparation,
     [](const ChangingFilm& film, std::size_t /*file*/, std::size_t /*turn*/) {
         exchange(film.clips(), film.others());
     },
     {FileResult::sound, FileResult::other},
     {}},
    {"removed, and put back",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         fs::path backup = film.file(file);
         backup += ".backup";
         fs::rename(film.file(file), backup);
         fs::rename(backup, film.file(file));
     },
     {FileResult::sound, FileResult::missing},
     {FileResult::unreadable}},
    {"in a folder that is removed, and put back",
     noPreparation,
     [](const ChangingFilm& film, std::size_t /*file*/, std::size_t /*turn*/) {
         fs::path backup = film.clips();
         backup += ".backup";
         fs::rename(film.clips(), backup);
         fs::rename(backup, film.clips());
     },
     {FileResult::sound, FileResult::missing},
     {FileResult::unreadable}},
    {"emptied, and written again",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         fs::resize_file(film.file(file), 0);
         overwrite(film.file(file), film.content(file));
     },
     {FileResult::sound, FileResult::mixed},
     {}},
    {"truncated to half its size, and written again",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         const std::string& content = film.content(file);
         fs::resize_file(film.file(file), content.size() / 2);
         fs::resize_file(film.file(file), content.size());
         overwrite(film.file(file), content);
     },
     {FileResult::sound, FileResult::mixed},
     {}},
    {"appended to, and truncated again",
     noPreparation,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         std::ofstream(film.file(file), std::ios::binary | std::ios::app) << "more";
         fs::resize_file(film.file(file), film.content(file).size());
     },
     {FileResult::sound, FileResult::mixed},
     {}},
    {"exchanged with a FIFO",
     [](const ChangingFilm& film) {
         for (std::size_t file = 0; file < ChangingFilm::fileCount; ++file) {
             fs::remove(film.otherFile(file));
             ASSERT_EQ(::mkfifo(film.otherFile(file).c_str(), 0644), 0);
         }
     },
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         exchange(film.file(file), film.otherFile(file));
     },
     {FileResult::sound, FileResult::unreadable},
     {}},
    {"exchanged with a folder",
     [](const ChangingFilm& film) {
         for (std::size_t file = 0; file < ChangingFilm::fileCount; ++file) {
             fs::remove(film.otherFile(file));
             fs::create_directory(film.otherFile(file));
         }
     },
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         exchange(film.file(file), film.otherFile(file));
     },
     {FileResult::sound, FileResult::unreadable},
     {}},
};

bool allOccurred(const std::set<FileResult>& expected, ResultCounts& results) {
    return std::all_of(expected.begin(), expected.end(),
                       [&](FileResult result) { return results[result] > 0; });
}

TEST(FileChange, GivesOnlyTheResultsOfOneOfTheStates) {
    for (const ChangeRow& row : rows)
        for (const unsigned workers : {1U, 3U}) {
            SCOPED_TRACE(testing::Message() << row.sentence << ", " << workers << " workers");
            const ChangingFilm film;
            row.prepare(film);
            ResultCounts results;
            const RepeatingThread changes([&](std::size_t turn) {
                row.change(film, turn % ChangingFilm::fileCount, turn / ChangingFilm::fileCount);
            });
            const auto isComplete = [&] {
                return allOccurred(row.expected, results) && changes.turns() >= minimumTurns;
            };
            for (int round = 0; round < (isComplete() ? rounds : maximumRounds); ++round) {
                film.audit(workers, results);
                film.build(workers, results);
            }
            EXPECT_TRUE(allOccurred(row.expected, results));
            for (const auto& [result, count] : results) {
                EXPECT_TRUE(count == 0 || row.expected.contains(result) || row.possible.contains(result))
                    << "result " << static_cast<int>(result) << " occurred " << count << " times";
            }
            EXPECT_GE(changes.turns(), minimumTurns);
        }
}

} // namespace
} // namespace kinovane::test
