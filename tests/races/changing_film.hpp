// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {

/// What may become of a file that somebody works on while it is verified.
enum class Fate {
    sound,      ///< It had the recorded content.
    other,      ///< It had its other content, whole.
    mixed,      ///< It had neither.
    missing,    ///< It was not there.
    unreadable, ///< It could not be read, and the failure names it.
    wrong       ///< Anything else.
};

/// How often each came.
using Fates = std::map<Fate, int>;

/// A film of four files, small and large, in the folder "clips". Each has two contents of different length,
/// of which the first is the recorded one; the second lies beside it in the folder "others".
class ChangingFilm {
  public:
    static constexpr std::size_t fileCount = 4;

    ChangingFilm();

    std::filesystem::path file(std::size_t index) const;
    std::filesystem::path otherFile(std::size_t index) const;
    std::filesystem::path clips() const { return maker_.directory / "clips"; }
    std::filesystem::path others() const { return maker_.directory / "others"; }
    const std::string& content(std::size_t index) const { return contents_[index]; }

    /// Verifies the film and adds what became of its files: of all in an audit, of the first bad one in a
    /// build.
    void audit(unsigned workers, Fates& fates) const;
    void build(unsigned workers, Fates& fates) const;

  private:
    Fate fateOf(const VistrelHandoffError& error) const;

    WorkspaceMaker maker_;
    std::vector<std::string> contents_;
    std::map<std::string, std::string> otherDigests_; ///< By the artifact's path.
};

} // namespace kinovane::test
