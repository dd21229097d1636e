// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <kinovane/workspace.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// The sample workspace of the repository; tests must not write to it.
std::filesystem::path sampleFilm();

/// The path of a program that this project builds.
std::string programPath(std::string_view name);

/// The digest of an empty file.
inline constexpr std::string_view emptyDigest =
    "sha256:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

/// The smallest film-project.json that loads, as compact JSON.
std::string smallestProject();

/// A shot with this id and duration.
FilmProductionShot shotOf(std::string id, double durationSeconds);

/// Makes a workspace on disk and as a snapshot: one shot "s1" of 1.5 s, no artifacts.
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
