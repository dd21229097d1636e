// SPDX-License-Identifier: Apache-2.0

// Shows a workspace:
//   guide_workspace RUN_JSON
#include <cstdlib>
#include <iostream>
#include <vector>

#include <kinovane/film_shots.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

namespace {

void showOverview(const FilmWorkspaceSnapshot& film) {
    //! [overview]
    const FilmProject& project = film.project;
    std::cout << project.title << '\n'
              << project.status << ", " << project.phase << ", " << project.proof.completedCount()
              << " of 10 steps proven\n";
    for (const auto& [gate, approval] : project.approvals)
        std::cout << "gate " << gate << ": " << approval.status << '\n';
    for (const FilmIssue& issue : project.issues)
        std::cout << (issue.blocking ? "must be solved: " : "note: ") << issue.message << '\n';
    if (film.treatment) // Absent when there is no treatment.json.
        std::cout << film.treatment->logline << '\n';
    //! [overview]
}

void showShots(const FilmWorkspaceSnapshot& film) {
    //! [shots]
    for (const FilmShot& shot : shots(film)) {
        std::cout << shot.planned.id;
        if (shot.startMilliseconds && shot.durationMilliseconds)
            std::cout << " at " << *shot.startMilliseconds << " ms, " << *shot.durationMilliseconds << " ms";
        if (shot.location)
            std::cout << ", " << shot.location->name;
        for (const FilmCastMember& member : shot.cast)
            std::cout << ", " << member.name;
        if (!shot.clip)
            std::cout << " (no clip yet)";
        std::cout << '\n';
    }
    //! [shots]
}

void showKeyframe(const FilmWorkspaceSnapshot& film, const FilmShot& shot) {
    //! [keyframe]
    if (!shot.keyframe)
        return; // Not made yet.
    const std::vector<FilmArtifact> one{*shot.keyframe};
    const ArtifactOutcome outcome = VistrelHandoffBuilder::examine(film.root, one).front();
    if (outcome.sound()) // The file lies inside the workspace and has the recorded digest.
        std::cout << "show " << film.artifactURL(*shot.keyframe).filename().string() << '\n';
    else
        std::cout << outcome.description() << '\n';
    //! [keyframe]
}

void showCut(const FilmWorkspaceSnapshot& film) {
    //! [cut]
    if (const auto cut = film.playableCutURL())
        std::cout << "play " << cut->lexically_relative(film.root).string() << '\n';
    else
        std::cout << "no cut can be played yet\n";
    //! [cut]
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: guide_workspace RUN_JSON\n";
        return 2;
    }
    try {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(arguments[1]);
        showOverview(film);
        showShots(film);
        for (const FilmShot& shot : shots(film))
            showKeyframe(film, shot);
        showCut(film);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
