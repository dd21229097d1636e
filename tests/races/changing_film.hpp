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

/// The result of verifying a file while another thread changes it.
enum class FileResult {
    sound,      ///< The recorded content was read.
    other,      ///< The whole other content was read.
    mixed,      ///< Neither of the two was read.
    missing,    ///< It did not exist.
    unreadable, ///< It could not be read, and the error names it.
    wrong       ///< Anything else.
};

/// How often each result occurred.
using ResultCounts = std::map<FileResult, int>;

/// A film of four files, small and large, in the folder "clips". Each has two contents of different length.
/// The first has the recorded digest; the second is in a file of the same name in the folder "others".
class ChangingFilm {
  public:
    static constexpr std::size_t fileCount = 4;

    ChangingFilm();

    std::filesystem::path file(std::size_t index) const;
    std::filesystem::path otherFile(std::size_t index) const;
    std::filesystem::path clips() const { return maker_.directory / "clips"; }
    std::filesystem::path others() const { return maker_.directory / "others"; }
    const std::string& content(std::size_t index) const { return contents_[index]; }

    /// Verifies the film and counts the results: of all files in an audit, of the first bad one in a build.
    void audit(unsigned workers, ResultCounts& results) const;
    void build(unsigned workers, ResultCounts& results) const;

  private:
    FileResult resultOf(const VistrelHandoffError& error) const;

    WorkspaceMaker maker_;
    std::vector<std::string> contents_;
    std::map<std::string, std::string> otherDigests_; ///< By the artifact's path.
};

} // namespace kinovane::test
