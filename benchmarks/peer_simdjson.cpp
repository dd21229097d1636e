// SPDX-License-Identifier: Apache-2.0

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <simdjson.h>

#include "peer_json.hpp"

// The two interfaces of simdjson differ here only in the iteration over members, so one set of function
// templates serves both.
namespace kinovane::benchmarks {

namespace {

namespace dom = simdjson::dom;
namespace ondemand = simdjson::ondemand;

template <class Found>
std::string text(Found&& found) {
    return std::string(std::string_view(found.get_string().value()));
}

template <class Found>
std::vector<std::string> texts(Found&& found) {
    std::vector<std::string> result;
    auto array = found.get_array().value();
    for (auto element : array)
        result.push_back(text(element));
    return result;
}

template <class Found, class Read>
auto optional(Found found, Read read) -> std::optional<decltype(read(found))> {
    if (found.error() == simdjson::NO_SUCH_FIELD || bool(found.is_null()))
        return std::nullopt;
    return read(found);
}

template <class Object>
std::optional<std::string> optionalText(Object& object, const char* key) {
    return optional(object[key], [](auto& found) { return text(found); });
}

template <class Object>
std::optional<std::int64_t> optionalInteger(Object& object, const char* key) {
    return optional(object[key], [](auto& found) -> std::int64_t { return found.get_int64().value(); });
}

template <class Object>
std::optional<double> optionalReal(Object& object, const char* key) {
    return optional(object[key], [](auto& found) -> double { return found.get_double().value(); });
}

template <class Object>
void readText(Object& object, const char* key, std::optional<std::string>& into) {
    if (!into)
        into = optionalText(object, key);
}

template <class Object>
void readTexts(Object& object, const char* key, std::vector<std::string>& into) {
    if (into.empty())
        into = optional(object[key], [](auto& found) { return texts(found); }).value_or(into);
}

template <class Object>
FilmBrief briefFrom(Object object) {
    FilmBrief brief;
    if (auto found = object["target"]; !found.error()) {
        Object target = found.get_object().value();
        readText(target, "audience", brief.audience);
        brief.targetDurationSeconds = optionalReal(target, "durationSeconds");
        readText(target, "language", brief.language);
        readText(target, "platform", brief.platform);
        readText(target, "rating", brief.rating);
        readText(target, "usage", brief.usage);
    }
    if (auto found = object["creative"]; !found.error()) {
        Object creative = found.get_object().value();
        readText(creative, "genre", brief.genre);
        readText(creative, "tone", brief.tone);
        readTexts(creative, "mustHaves", brief.mustHaves);
        readTexts(creative, "exclusions", brief.exclusions);
        readTexts(creative, "references", brief.references);
    }
    readText(object, "audience", brief.audience);
    readText(object, "genre", brief.genre);
    readText(object, "tone", brief.tone);
    readText(object, "rating", brief.rating);
    readText(object, "language", brief.language);
    readText(object, "platform", brief.platform);
    readText(object, "usage", brief.usage);
    if (!brief.targetDurationSeconds)
        brief.targetDurationSeconds = optionalReal(object, "targetDurationSeconds");
    readTexts(object, "mustHaves", brief.mustHaves);
    readTexts(object, "exclusions", brief.exclusions);
    readTexts(object, "references", brief.references);
    readTexts(object, "openQuestions", brief.openQuestions);
    return brief;
}

template <class Object>
FilmApproval approvalFrom(Object object) {
    return {text(object["status"]),
            optionalText(object, "summary"),
            optionalText(object, "requestedAt"),
            optionalText(object, "approvedAt"),
            optionalText(object, "approvedBy"),
            optionalText(object, "note")};
}

void readApprovals(dom::object object, std::map<std::string, FilmApproval>& approvals) {
    for (const dom::key_value_pair field : object)
        approvals.emplace(field.key, approvalFrom<dom::object>(field.value.get_object().value()));
}

void readApprovals(ondemand::object object, std::map<std::string, FilmApproval>& approvals) {
    for (auto field : object) {
        std::string key(std::string_view(field.unescaped_key().value()));
        approvals.emplace(std::move(key), approvalFrom<ondemand::object>(field.value().get_object().value()));
    }
}

template <class Object>
FilmModelConfiguration modelsFrom(Object object) {
    return {text(object["imageMaster"]), text(object["imageShot"]),
            text(object["video"]),       text(object["visionInspector"]),
            text(object["speechAsr"]),   text(object["speechTts"]),
            text(object["sfx"]),         text(object["music"])};
}

template <class Object>
FilmProductionConfiguration productionFrom(Object object) {
    return {text(object["mode"]),
            object["takesPerShot"].get_int64().value(),
            object["generateScore"].get_bool().value(),
            object["inspectGeneratedMedia"].get_bool().value(),
            object["maxParallelAgents"].get_int64().value(),
            object["piTimeoutSeconds"].get_int64().value(),
            object["mediaTimeoutSeconds"].get_int64().value(),
            modelsFrom<Object>(object["models"].get_object().value())};
}

template <class Object>
FilmProof proofFrom(Object object) {
    const auto step = [&](const char* key) -> bool { return object[key].get_bool().value(); };
    return {step("creation"), step("clips"),      step("assembly"), step("dialogue"),    step("sound"),
            step("captions"), step("inspection"), step("review"),   step("humanReview"), step("delivery")};
}

/// Appends one record for each object of an array.
template <class Object, class Found, class Record, class Make>
void readEach(Found found, std::vector<Record>& records, Make make) {
    auto array = found.get_array().value();
    for (auto element : array) {
        Object object = element.get_object().value();
        records.push_back(make(object));
    }
}

// Braced initialisers are evaluated from left to right, so keys are read in their usual order in the
// document.
template <class Object>
FilmProject projectFrom(Object object) {
    FilmProject project;
    project.contractVersion = text(object["contractVersion"]);
    project.projectId = text(object["projectId"]);
    project.title = text(object["title"]);
    project.idea = text(object["idea"]);
    project.createdAt = text(object["createdAt"]);
    project.updatedAt = text(object["updatedAt"]);
    project.status = text(object["status"]);
    project.phase = text(object["phase"]);
    project.brief = briefFrom<Object>(object["brief"].get_object().value());
    readApprovals(object["approvals"].get_object().value(), project.approvals);
    readEach<Object>(object["departments"], project.departments, [](Object& task) {
        return FilmDepartmentTask{text(task["id"]),
                                  text(task["role"]),
                                  text(task["phase"]),
                                  texts(task["dependsOn"]),
                                  task["synthesis"].get_bool().value(),
                                  text(task["status"]),
                                  task["attempts"].get_int64().value()};
    });
    readEach<Object>(object["shots"], project.shots, [](Object& shot) {
        return FilmShotState{text(shot["id"]), optionalText(shot, "status"), optionalInteger(shot, "take"),
                             optionalInteger(shot, "selectedCandidate")};
    });
    readEach<Object>(object["reviewRequests"], project.reviewRequests, [](Object& request) {
        return FilmReviewRequest{text(request["shotId"]),
                                 text(request["note"]),
                                 text(request["status"]),
                                 text(request["recordedAt"]),
                                 optionalText(request, "appliedAt"),
                                 optionalInteger(request, "archivedTake")};
    });
    readEach<Object>(object["jobs"], project.jobs, [](Object& job) {
        return FilmJob{text(job["id"]), optionalText(job, "kind"), optionalText(job, "status"),
                       optionalText(job, "shotId"), optionalText(job, "error")};
    });
    project.production = productionFrom<Object>(object["production"].get_object().value());
    readEach<Object>(object["artifacts"], project.artifacts, [](Object& artifact) {
        return FilmArtifact{artifact["bytes"].get_int64().value(),
                            text(artifact["contentType"]),
                            text(artifact["createdAt"]),
                            text(artifact["kind"]),
                            text(artifact["path"]),
                            text(artifact["sha256"]),
                            text(artifact["source"])};
    });
    project.proof = proofFrom<Object>(object["proof"].get_object().value());
    readEach<Object>(object["issues"], project.issues, [](Object& issue) {
        return FilmIssue{text(issue["code"]), text(issue["message"]), issue["blocking"].get_bool().value(),
                         optionalText(issue, "recordedAt")};
    });
    return project;
}

} // namespace

FilmProject loadWithSimdjsonTree(const std::filesystem::path& project) {
    const simdjson::padded_string text = simdjson::padded_string::load(project.string()).value();
    dom::parser parser;
    return projectFrom<dom::object>(parser.parse(text).get_object().value());
}

FilmProject loadWithSimdjsonOnDemand(const std::filesystem::path& project) {
    const simdjson::padded_string text = simdjson::padded_string::load(project.string()).value();
    ondemand::parser parser;
    ondemand::document document = parser.iterate(text).value();
    return projectFrom<ondemand::object>(document.get_object().value());
}

} // namespace kinovane::benchmarks
