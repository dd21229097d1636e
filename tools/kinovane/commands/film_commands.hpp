// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "session/session.hpp"

/// The commands that run the film tool. Each shows the tool's output as it arrives, stops the tool when the
/// user interrupts it, and then prints what changed in the workspace.
namespace kinovane::tool {

/// The programs and the model that the film tool is run with.
struct FilmToolArguments {
    std::string program = "film";
    std::optional<std::string> pi;
    std::optional<std::string> provider; ///< Of the agent's model.
    std::optional<std::string> model;
};

struct PlanRequest {
    std::string idea;
    std::string title;
    std::int64_t durationSeconds = 0;
    std::filesystem::path folder = "."; ///< The workspace is created below it.
    FilmToolArguments tool;
};
ExitStatus plan(const PlanRequest& request, const Session& session);

struct ApproveRequest {
    std::optional<std::string> gate; ///< The gate that the film waits for when absent.
    std::filesystem::path film = ".";
    std::string note;
    std::optional<std::string> approvedBy; ///< The user's name when absent.
    FilmToolArguments tool;
};
ExitStatus approve(const ApproveRequest& request, const Session& session);

struct AdvanceRequest {
    std::filesystem::path film = ".";
    FilmToolArguments tool;
};
ExitStatus advance(const AdvanceRequest& request, const Session& session);

struct RerollRequest {
    std::string shot;
    std::string note;
    std::filesystem::path film = ".";
    FilmToolArguments tool;
};
ExitStatus reroll(const RerollRequest& request, const Session& session);

struct ReviewRequest {
    std::filesystem::path film = ".";
    FilmToolArguments tool;
};
ExitStatus review(const ReviewRequest& request, const Session& session);

struct RecoverRequest {
    std::filesystem::path film = ".";
    FilmToolArguments tool;
};
ExitStatus recover(const RecoverRequest& request, const Session& session);

struct ExportRequest {
    std::filesystem::path film = ".";
    std::optional<std::filesystem::path> output;
    FilmToolArguments tool;
};
ExitStatus exportFilm(const ExportRequest& request, const Session& session);

} // namespace kinovane::tool
