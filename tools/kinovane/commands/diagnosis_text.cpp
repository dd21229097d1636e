// SPDX-License-Identifier: Apache-2.0

#include "commands/diagnosis_text.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "json/json_output.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

using enum TextTable::Alignment;

constexpr const char* modelAdvice = "Install a model that quexrun can start.";
constexpr const char* noReply = "  not known, because quexrun gave no answer\n";

std::string summaryText(const Diagnosis& diagnosis) {
    const std::size_t count = diagnosis.problemCount();
    if (count == 0)
        return "All four programs are there, and quexrun answers.\n";
    if (count == diagnosis.programs().size())
        return "All four programs are missing or do not answer.\n";
    return std::to_string(count) + " of the four programs " +
           (count == 1 ? "is missing or does" : "are missing or do") + " not answer.\n";
}

/// An error description from an external program may have several lines and end with a line break.
std::vector<std::string> plainLines(std::string_view text) {
    text = text.substr(0, text.find_last_not_of('\n') + 1);
    std::vector<std::string> lines;
    for (;;) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(shown(text.substr(0, end)));
        if (end == text.size())
            return lines;
        text.remove_prefix(end + 1);
    }
}

std::string programsText(const Diagnosis& diagnosis) {
    TextTable table({left, left, left});
    for (const ProgramFinding* program : diagnosis.programs()) {
        std::string role = program->role;
        if (program->path)
            table.addUnwrapped({std::exchange(role, ""), "found", shownPath(program->path->string())});
        if (program->problem) {
            const auto& [description, advice] = *program->problem;
            std::string state = program->path ? "FAILING" : "MISSING";
            for (const std::string& line : plainLines(description))
                table.addUnwrapped({std::exchange(role, ""), std::exchange(state, ""), line});
            table.add({"", "", advice});
        }
    }
    return "\nPrograms\n" + table.text();
}

const char* originText(PiOrigin origin) {
    switch (origin) {
    case PiOrigin::searchPath:
        return "on the search path";
    case PiOrigin::namedPath:
        return "named with --pi";
    case PiOrigin::installedCopy:
        break;
    }
    return "installed copy";
}

const char* choiceText(const std::optional<PiOrigin>& origin) {
    if (!origin)
        return "  Installed copies are used only for the name \"pi\".\n";
    switch (*origin) {
    case PiOrigin::searchPath:
        return "  What is on the search path comes before the installed copies.\n";
    case PiOrigin::namedPath:
        return "  What is named with --pi comes before the installed copies.\n";
    case PiOrigin::installedCopy:
        break;
    }
    return "  There is no pi on the search path, so the newest installed copy is used.\n";
}

std::string copiesText(const Diagnosis& diagnosis) {
    if (!diagnosis.piOrigin && diagnosis.installedPis.empty())
        return "\nCopies of pi\n  none\n";
    TextTable table({left, left, left});
    bool fromCopies = diagnosis.piOrigin == PiOrigin::installedCopy;
    if (diagnosis.piOrigin && diagnosis.pi.path && !fromCopies)
        table.addUnwrapped({"USED", originText(*diagnosis.piOrigin), shownPath(diagnosis.pi.path->string())});
    for (const std::filesystem::path& copy : diagnosis.installedPis)
        table.addUnwrapped({std::exchange(fromCopies, false) ? "USED" : "",
                            originText(PiOrigin::installedCopy), shownPath(copy.string())});
    return "\nCopies of pi\n" + table.text() + choiceText(diagnosis.piOrigin);
}

std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

std::string modelsText(const std::optional<QuexRunAgentStatus>& agent) {
    if (!agent)
        return std::string("\nModels\n") + noReply;
    auto best = agent->bestInstalledModel();
    TextTable table({left, left, left, left, left, right, left});
    table.add({"", "name", "id", "installed", "startable", "memory", "engine"});
    for (const QuexRunAgentModel& model : agent->models) {
        const bool marked = best == model;
        if (marked) // Only the first of two equal models is marked.
            best.reset();
        table.add({marked ? "BEST" : "", shown(model.displayName), shown(model.id), yesOrNo(model.installed),
                   yesOrNo(model.startableByQuexRun),
                   std::to_string(model.recommendedUnifiedMemoryGB) + " GB", shown(model.servingEngine)});
    }
    std::string text = "\nModels\n" + (agent->models.empty() ? "  none\n" : table.text());
    if (!agent->bestInstalledModel())
        text += std::string("  No model is both installed and startable by quexrun. ") + modelAdvice + "\n";
    return text;
}

std::string agentPiText(const std::optional<QuexRunAgentStatus>& agent) {
    const char* title = "\nWhat quexrun says of its own pi\n";
    if (!agent)
        return std::string(title) + noReply;
    TextTable table({left, left});
    table.add({"Installed", yesOrNo(agent->pi.installed)});
    table.add({"Version", shown(agent->pi.version.value_or("not given"))});
    table.addUnwrapped({"Place", shownPath(agent->pi.path.value_or("not given"))});
    return title + table.text();
}

json::object programJSON(const ProgramFinding& program) {
    const auto& problem = program.problem;
    return {{"name", program.name},
            {"path", program.path ? json::value(program.path->string()) : nullptr},
            {"error", problem ? json::value(problem->description) : nullptr},
            {"advice", problem ? json::value(problem->advice) : nullptr}};
}

json::value originJSON(const std::optional<PiOrigin>& origin) {
    if (!origin)
        return nullptr;
    switch (*origin) {
    case PiOrigin::searchPath:
        return "search-path";
    case PiOrigin::namedPath:
        return "named-place";
    case PiOrigin::installedCopy:
        break;
    }
    return "installed-copy";
}

json::value agentJSON(const std::optional<QuexRunAgentStatus>& agent) {
    if (!agent)
        return nullptr;
    const auto best = agent->bestInstalledModel();
    json::array models;
    for (const QuexRunAgentModel& model : agent->models)
        models.push_back(parsedJSON(encodeJSON(model)));
    return {{"models", models},
            {"bestInstalledModel", best ? json::value(best->id) : nullptr},
            {"advice", best ? nullptr : json::value(modelAdvice)},
            {"pi", parsedJSON(encodeJSON(agent->pi))}};
}

} // namespace

std::string humanText(const Diagnosis& diagnosis) {
    return summaryText(diagnosis) + programsText(diagnosis) + copiesText(diagnosis) +
           modelsText(diagnosis.agent) + agentPiText(diagnosis.agent);
}

std::string jsonText(const Diagnosis& diagnosis) {
    json::object programs;
    for (const ProgramFinding* program : diagnosis.programs())
        programs.emplace(program->role, programJSON(*program));
    json::array copies;
    for (const std::filesystem::path& copy : diagnosis.installedPis)
        copies.emplace_back(copy.string());
    return jsonLine({{"version", 1},
                     {"ok", diagnosis.problemCount() == 0},
                     {"programs", programs},
                     {"pi", {{"origin", originJSON(diagnosis.piOrigin)}, {"installedCopies", copies}}},
                     {"agent", agentJSON(diagnosis.agent)}});
}

} // namespace kinovane::tool
