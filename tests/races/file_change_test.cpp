// SPDX-License-Identifier: Apache-2.0

// Files are replaced, cut and removed while they are read.

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
#include "support/attacker.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 20;
constexpr int mostRounds = 50'000;
constexpr std::size_t minimumTurns = 40;

void overwrite(const fs::path& file, std::string_view content) {
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
}

struct ChangeRow {
    const char* sentence;
    void (*prepare)(const ChangingFilm& film);
    /// Works on one of the files; told how often it has had this one before.
    void (*change)(const ChangingFilm& film, std::size_t file, std::size_t turn);
    std::set<Fate> expected; ///< Each of them is met.
    std::set<Fate> possible;
};

const auto nothing = [](const ChangingFilm& /*film*/) {};

const ChangeRow rows[] = {
    {"replaced by another",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t turn) {
         fs::path next = film.file(file);
         next += ".next";
         if (turn % 2 == 0)
             fs::copy_file(film.otherFile(file), next);
         else
             std::ofstream(next, std::ios::binary) << film.content(file);
         fs::rename(next, film.file(file));
     },
     {Fate::sound, Fate::other},
     {}},
    {"exchanged with another",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         exchange(film.file(file), film.otherFile(file));
     },
     {Fate::sound, Fate::other},
     {}},
    {"in a folder that is exchanged with another",
     nothing,
     [](const ChangingFilm& film, std::size_t /*file*/, std::size_t /*turn*/) {
         exchange(film.clips(), film.others());
     },
     {Fate::sound, Fate::other},
     {}},
    {"removed, and put back",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         fs::path away = film.file(file);
         away += ".away";
         fs::rename(film.file(file), away);
         fs::rename(away, film.file(file));
     },
     {Fate::sound, Fate::missing},
     {Fate::unreadable}},
    {"in a folder that is removed, and put back",
     nothing,
     [](const ChangingFilm& film, std::size_t /*file*/, std::size_t /*turn*/) {
         fs::path away = film.clips();
         away += ".away";
         fs::rename(film.clips(), away);
         fs::rename(away, film.clips());
     },
     {Fate::sound, Fate::missing},
     {Fate::unreadable}},
    {"emptied, and written again",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         fs::resize_file(film.file(file), 0);
         overwrite(film.file(file), film.content(file));
     },
     {Fate::sound, Fate::mixed},
     {}},
    {"cut to its half, and made whole again",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         const std::string& content = film.content(file);
         fs::resize_file(film.file(file), content.size() / 2);
         fs::resize_file(film.file(file), content.size());
         overwrite(film.file(file), content);
     },
     {Fate::sound, Fate::mixed},
     {}},
    {"made longer, and cut again",
     nothing,
     [](const ChangingFilm& film, std::size_t file, std::size_t /*turn*/) {
         std::ofstream(film.file(file), std::ios::binary | std::ios::app) << "more";
         fs::resize_file(film.file(file), film.content(file).size());
     },
     {Fate::sound, Fate::mixed},
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
     {Fate::sound, Fate::unreadable},
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
     {Fate::sound, Fate::unreadable},
     {}},
};

bool allMet(const std::set<Fate>& expected, Fates& fates) {
    return std::all_of(expected.begin(), expected.end(), [&](Fate fate) { return fates[fate] > 0; });
}

TEST(FileChange, EveryOutcomeIsOneThatTheFileHad) {
    for (const ChangeRow& row : rows)
        for (const unsigned workers : {1U, 3U}) {
            SCOPED_TRACE(testing::Message() << row.sentence << ", " << workers << " workers");
            const ChangingFilm film;
            row.prepare(film);
            Fates fates;
            const Attacker attacker([&](std::size_t turn) {
                row.change(film, turn % ChangingFilm::fileCount, turn / ChangingFilm::fileCount);
            });
            const auto isOver = [&] {
                return allMet(row.expected, fates) && attacker.turns() >= minimumTurns;
            };
            for (int round = 0; round < (isOver() ? rounds : mostRounds); ++round) {
                film.audit(workers, fates);
                film.build(workers, fates);
            }
            EXPECT_TRUE(allMet(row.expected, fates));
            for (const auto& [fate, count] : fates) {
                EXPECT_TRUE(count == 0 || row.expected.contains(fate) || row.possible.contains(fate))
                    << "fate " << static_cast<int>(fate) << " came " << count << " times";
            }
            EXPECT_GE(attacker.turns(), minimumTurns);
        }
}

} // namespace
} // namespace kinovane::test
