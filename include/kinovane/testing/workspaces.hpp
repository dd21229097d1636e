// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <ios>
#include <string>
#include <string_view>
#include <variant>

#include <kinovane/run_options.hpp>
#include <kinovane/testing/simulators.hpp>
#include <kinovane/testing/temporary_directory.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

/// Ready workspaces for the tests of an application. Each function makes a film in `folder`, which must not
/// exist or must be empty, and returns the location of its run manifest:
///
///     TemporaryDirectory directory;
///     const auto snapshot = FilmProjectLoader::load(finishedFilm(directory / "film"));
///
/// The simulator of the film tool makes the films. They have three shots and are the same at each call,
/// except for the paths in the run manifest. Making one takes some milliseconds for each step of the
/// production.
///
/// All functions throw FilmToolError if the simulator cannot be run or refuses, and
/// std::filesystem::filesystem_error or std::ios_base::failure if a file cannot be changed. They block, and
/// may be called on several threads at once with different folders. FILM_MISBEHAVE and FILM_CLOCK of the
/// application's environment have no influence.
namespace kinovane::testing {

/// The title of every film.
inline constexpr std::string_view filmTitle = "The Last Train";
/// The planned duration of every film, in seconds.
inline constexpr std::int64_t filmSeconds = 12;
/// The creation time, and that of every later change.
inline constexpr std::string_view filmTime = "2026-03-01T14:05:09Z";
/// The artifact that is damaged, missing or a link in the films below whose names say so.
inline constexpr std::string_view affectedClip = "clips/shot-02.mp4";

namespace detail {

inline RunOptions makingOptions() {
    RunOptions options;
    options.environment = {{"FILM_CLOCK", std::string(filmTime)}, {"FILM_MISBEHAVE", ""}};
    options.standardInput = StandardInput::empty;
    return options;
}

inline void passGates(const std::filesystem::path& runManifest, std::initializer_list<const char*> gates) {
    const FilmToolClient film(filmSimulator());
    for (const char* gate : gates) {
        film.approve(runManifest, gate, "approved for a test", "test", makingOptions()).get();
        film.advance(runManifest, {}, {}, {}, makingOptions()).get();
    }
}

} // namespace detail

/// A film that has just been planned. It has no artifacts and waits for the gate "plan".
inline std::filesystem::path plannedFilm(const std::filesystem::path& folder) {
    return FilmToolClient(filmSimulator())
        .plan("A signalman keeps one lamp burning.", std::string(filmTitle), filmSeconds, folder, {},
              detail::makingOptions())
        .get();
}

/// A film in the middle of its production: key frames, clips, sound and rough cut are made, and it waits for
/// the gate "rough-cut".
inline std::filesystem::path filmInProduction(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = plannedFilm(folder);
    detail::passGates(runManifest, {"plan", "frames"});
    return runManifest;
}

/// A film whose production is complete. All gates are approved, and it can be published.
inline std::filesystem::path finishedFilm(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = plannedFilm(folder);
    detail::passGates(runManifest, {"plan", "frames", "rough-cut", "delivery"});
    return runManifest;
}

/// A film whose tool was killed in the middle of a step. Its documents can be loaded; the tool refuses every
/// change until FilmToolClient::recover.
inline std::filesystem::path filmWithInterruptedStep(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = plannedFilm(folder);
    const FilmToolClient film(filmSimulator());
    film.approve(runManifest, "plan", "approved for a test", "test", detail::makingOptions()).get();
    RunOptions options = detail::makingOptions();
    options.environment["FILM_MISBEHAVE"] = "cut-off";
    try {
        film.advance(runManifest, {}, {}, {}, options).get();
    } catch (const FilmToolError& error) {
        constexpr int killed = 9; // The number of SIGKILL.
        const auto* failure = std::get_if<FilmToolError::commandFailed>(&error.value());
        if (failure == nullptr || failure->result.exitCode != killed)
            throw;
    }
    return runManifest;
}

/// A finished film in which one byte of `affectedClip` has changed; its size is as recorded. A build fails
/// with VistrelHandoffError::hashMismatch.
inline std::filesystem::path filmWithDamagedClip(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = finishedFilm(folder);
    std::fstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(runManifest.parent_path() / affectedClip, std::ios::in | std::ios::out | std::ios::binary);
    file.seekg(-1, std::ios::end);
    const int last = file.get();
    file.seekp(-1, std::ios::end);
    file.put(static_cast<char>(last ^ 1));
    file.close();
    return runManifest;
}

/// A finished film without the file `affectedClip`. A build fails with VistrelHandoffError::missingArtifact.
inline std::filesystem::path filmWithMissingClip(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = finishedFilm(folder);
    std::filesystem::remove(runManifest.parent_path() / affectedClip);
    return runManifest;
}

/// A finished film in which `affectedClip` is a symbolic link to a file outside of the film, beside `folder`
/// and with the recorded content. A build fails with VistrelHandoffError::unsafeArtifactPath.
inline std::filesystem::path filmWithLinkLeadingOut(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = finishedFilm(folder);
    const std::filesystem::path film = runManifest.parent_path();
    const std::filesystem::path outside = film.parent_path() / (film.filename().string() + "-outside.mp4");
    std::filesystem::rename(film / affectedClip, outside);
    std::filesystem::create_symlink(outside, film / affectedClip);
    return runManifest;
}

/// A finished film of whose document film-project.json only the first half was written. Loading it fails with
/// FilmProjectError::invalidProject.
inline std::filesystem::path filmWithHalfWrittenProject(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = finishedFilm(folder);
    const std::filesystem::path project = runManifest.parent_path() / FilmWorkspaceDocument::project;
    std::filesystem::resize_file(project, std::filesystem::file_size(project) / 2);
    return runManifest;
}

/// A finished film without the document production-plan.json. It can be loaded and not published: preflight
/// finds PreflightCode::productionPlanMissing.
inline std::filesystem::path filmWithoutProductionPlan(const std::filesystem::path& folder) {
    const std::filesystem::path runManifest = finishedFilm(folder);
    std::filesystem::remove(runManifest.parent_path() / FilmWorkspaceDocument::productionPlan);
    return runManifest;
}

} // namespace kinovane::testing
