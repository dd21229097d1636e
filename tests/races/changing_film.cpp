// SPDX-License-Identifier: Apache-2.0

#include "races/changing_film.hpp"

#include <array>
#include <span>

#include "common/overloaded.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// One that a single read takes, some that need several, and one that is read ahead.
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

Fate ChangingFilm::fateOf(const VistrelHandoffError& error) const {
    return std::visit(Overloaded{
                          [](const VistrelHandoffError::missingArtifact& missing) {
                              return missing.path.starts_with("clips/") ? Fate::missing : Fate::wrong;
                          },
                          [&](const VistrelHandoffError::hashMismatch& mismatch) {
                              if (mismatch.actual == mismatch.expected)
                                  return Fate::wrong;
                              return mismatch.actual == otherDigests_.at(mismatch.path) ? Fate::other
                                                                                        : Fate::mixed;
                          },
                          [](const auto& /*refusal*/) { return Fate::wrong; },
                      },
                      error.value());
}

void ChangingFilm::audit(unsigned workers, Fates& fates) const {
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(maker_.snapshot, {workers, {}, {}}))
        if (outcome.sound())
            ++fates[Fate::sound];
        else if (outcome.refusal)
            ++fates[fateOf(*outcome.refusal)];
        else
            ++fates[outcome.description().find(outcome.artifact.path) != std::string::npos ? Fate::unreadable
                                                                                           : Fate::wrong];
}

void ChangingFilm::build(unsigned workers, Fates& fates) const {
    try {
        VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", {workers, {}, {}});
        ++fates[Fate::sound];
    } catch (const VistrelHandoffError& error) {
        ++fates[fateOf(error)];
    } catch (const fs::filesystem_error& error) {
        ++fates[error.path1().parent_path() == clips() ? Fate::unreadable : Fate::wrong];
    }
}

} // namespace kinovane::test
