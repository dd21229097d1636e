// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/tooling.hpp>

#include "common/json/table.hpp"

namespace kinovane {

/// The film tool's reply to `plan`, of which only the run manifest's path is read.
struct FilmPlanResponse {
    struct Status {
        std::string runManifest;
    };
    Status status;
};

/// The JSON keys of the film tool's replies.
namespace json {

template <>
struct Table<FilmStatusResponse> {
    static constexpr std::tuple fields{
        field("contractVersion", &FilmStatusResponse::contractVersion),
        field("runId", &FilmStatusResponse::runId),
        field("projectId", &FilmStatusResponse::projectId),
        field("title", &FilmStatusResponse::title),
        field("status", &FilmStatusResponse::status),
        field("phase", &FilmStatusResponse::phase),
        field("nextGate", &FilmStatusResponse::nextGate),
        field("openQuestions", &FilmStatusResponse::openQuestions),
        field("approvals", &FilmStatusResponse::approvals),
        field("taskCounts", &FilmStatusResponse::taskCounts),
        field("shots", &FilmStatusResponse::shots),
        field("reviewRequests", &FilmStatusResponse::reviewRequests),
        field("jobs", &FilmStatusResponse::jobs),
        field("artifacts", &FilmStatusResponse::artifacts),
        field("issues", &FilmStatusResponse::issues),
        field("proof", &FilmStatusResponse::proof),
        field("productionMode", &FilmStatusResponse::productionMode),
        field("takesPerShot", &FilmStatusResponse::takesPerShot),
        field("projectDirectory", &FilmStatusResponse::projectDirectory),
        field("runManifest", &FilmStatusResponse::runManifest),
        field("reviewPackage", &FilmStatusResponse::reviewPackage),
    };
};

template <>
struct Table<FilmVistrelExportReceipt> {
    static constexpr std::tuple fields{
        field("ok", &FilmVistrelExportReceipt::ok),
        field("contractVersion", &FilmVistrelExportReceipt::contractVersion),
        field("manifest", &FilmVistrelExportReceipt::manifest),
        field("manifestSha256", &FilmVistrelExportReceipt::manifestSha256),
        field("projectId", &FilmVistrelExportReceipt::projectId),
        field("shots", &FilmVistrelExportReceipt::shots),
        field("assets", &FilmVistrelExportReceipt::assets),
        field("bytes", &FilmVistrelExportReceipt::bytes),
        field("runId", &FilmVistrelExportReceipt::runId),
    };
};

template <>
struct Table<PiAgentLaunchSpec> {
    static constexpr std::tuple fields{
        field("command", &PiAgentLaunchSpec::command),
        field("cwd", &PiAgentLaunchSpec::cwd),
        field("environment", &PiAgentLaunchSpec::environment),
    };
};

template <>
struct Table<FilmPlanResponse::Status> {
    static constexpr std::tuple fields{field("runManifest", &FilmPlanResponse::Status::runManifest)};
};

template <>
struct Table<FilmPlanResponse> {
    static constexpr std::tuple fields{field("status", &FilmPlanResponse::status)};
};

} // namespace json
} // namespace kinovane
