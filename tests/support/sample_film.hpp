// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <kinovane/workspace.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// The workspace in the repository; never written to.
std::filesystem::path sampleFilm();

/// A program that this project builds.
std::string programPath(std::string_view name);

/// The digest of an empty file.
inline constexpr std::string_view emptyDigest =
    "sha256:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

/// The smallest film-project.json that loads, as compact JSON.
std::string smallestProject();

/// A shot of which only these matter.
FilmProductionShot shotOf(std::string id, double durationSeconds);

/// A workspace being made by a test, on disk and as a snapshot: one shot "s1" of 1.5 s, no artifacts.
class WorkspaceMaker {
  public:
    WorkspaceMaker();

    TemporaryDirectory directory;
    FilmWorkspaceSnapshot snapshot;

    /// Writes a file below the workspace and lists it as an artifact with its true size and digest.
    FilmArtifact& add(std::string_view kind, std::string_view path, std::string_view content);

    /// Lists an artifact without writing a file; the digest is an empty file's.
    FilmArtifact& list(std::string_view kind, std::string_view path);
};

} // namespace kinovane::test
