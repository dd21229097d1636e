// SPDX-License-Identifier: Apache-2.0

#include "races/changing_film.hpp"

#include <array>
#include <span>

#include "common/overloaded.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// Read at once, read in several chunks, and read ahead.
constexpr std::array<std::size_t, ChangingFilm::fileCount> sizes{1000, 200'000, 1'048'577, 4'194'309};

std::string nameOf(std::size_t index) { return std::to_string(index) + ".mp4"; }

} // namespace

ChangingFilm::ChangingFilm() {
    for (std::size_t index = 0; index < fileCount; ++index) {
        const std::string path = "clips/" + nameOf(index);
        const std::string other(sizes[index] + 500'000, 'b');
        contents_.emplace_back(sizes[index], 'a');
        maker_.add("dialogue", path, contents_.back());
        maker_.directory.write("others/" + nameOf(index), other);
        otherDigests_[path] = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(other)));
    }
}

fs::path ChangingFilm::file(std::size_t index) const { return clips() / nameOf(index); }

fs::path ChangingFilm::otherFile(std::size_t index) const { return others() / nameOf(index); }

FileResult ChangingFilm::resultOf(const VistrelHandoffError& error) const {
    return std::visit(Overloaded{
                          [](const VistrelHandoffError::missingArtifact& missing) {
                              return missing.path.starts_with("clips/") ? FileResult::missing
                                                                        : FileResult::wrong;
                          },
                          [&](const VistrelHandoffError::hashMismatch& mismatch) {
                              if (mismatch.actual == mismatch.expected)
                                  return FileResult::wrong;
                              return mismatch.actual == otherDigests_.at(mismatch.path) ? FileResult::other
                                                                                        : FileResult::mixed;
                          },
                          [](const auto& /*refusal*/) { return FileResult::wrong; },
                      },
                      error.value());
}

void ChangingFilm::audit(unsigned workers, ResultCounts& results) const {
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(maker_.snapshot, {workers, {}, {}}))
        if (outcome.sound())
            ++results[FileResult::sound];
        else if (outcome.refusal)
            ++results[resultOf(*outcome.refusal)];
        else
            ++results[outcome.description().find(outcome.artifact.path) != std::string::npos
                          ? FileResult::unreadable
                          : FileResult::wrong];
}

void ChangingFilm::build(unsigned workers, ResultCounts& results) const {
    try {
        VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", {workers, {}, {}});
        ++results[FileResult::sound];
    } catch (const VistrelHandoffError& error) {
        ++results[resultOf(error)];
    } catch (const fs::filesystem_error& error) {
        ++results[error.path1().parent_path() == clips() ? FileResult::unreadable : FileResult::wrong];
    }
}

} // namespace kinovane::test
