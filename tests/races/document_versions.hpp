// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include <kinovane/workspace.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// Two versions of the sample film's documents. They differ in nearly every text and its length, so a record
/// mixed from both equals neither.
class DocumentVersions {
  public:
    static constexpr std::array names{"film-project.json", "production-plan.json", "treatment.json"};

    /// Every text of the second version is longer by this many characters.
    explicit DocumentVersions(std::size_t addedLength);

    const std::string& text(std::size_t document, std::size_t version) const {
        return texts_[version][document];
    }

    /// The version of a loaded record; std::nullopt when it equals neither.
    std::optional<std::size_t> versionOf(const FilmProject& project) const;
    std::optional<std::size_t> versionOf(const FilmProductionPlan& plan) const;
    std::optional<std::size_t> versionOf(const FilmTreatment& treatment) const;

  private:
    struct Records {
        FilmProject project;
        FilmProductionPlan plan;
        FilmTreatment treatment;
    };

    std::array<std::array<std::string, names.size()>, 2> texts_;
    std::array<Records, 2> records_;
};

} // namespace kinovane::test
