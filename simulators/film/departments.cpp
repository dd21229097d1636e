// SPDX-License-Identifier: Apache-2.0

#include "departments.hpp"

#include <array>
#include <vector>

namespace film {
namespace {

struct Task {
    const char *id, *role, *phase;
    std::vector<std::string> dependsOn;
    bool synthesis;
};

std::vector<Task> tasks() {
    return {{"script", "writer", "plan", {}, false},
            {"breakdown", "director", "plan", {"script"}, true},
            {"masters", "production-designer", "frames", {"breakdown"}, false},
            {"frames", "cinematographer", "frames", {"masters"}, false},
            {"clips", "animator", "clips", {"frames"}, false},
            {"voices", "voice-director", "sound", {"breakdown"}, false},
            {"effects", "sound-designer", "sound", {"breakdown"}, false},
            {"music", "composer", "sound", {"breakdown"}, false},
            {"captions", "captioner", "sound", {"voices"}, false},
            {"edit", "editor", "rough-cut", {"clips", "voices", "effects", "music"}, true},
            {"inspection", "inspector", "rough-cut", {"edit"}, false},
            {"master", "editor", "delivery", {"edit"}, false},
            {"review", "producer", "delivery", {"master", "inspection"}, true},
            {"delivery", "producer", "done", {"master", "captions", "review"}, true}};
}

void markTasks(json::object& project, std::string_view phase, const char* status, std::int64_t attempts) {
    for (json::value& value : listOf(project, "departments")) {
        json::object& task = asRecord(value);
        if (textOf(task, "phase") == phase) {
            task["status"] = status;
            task["attempts"] = integerOf(task, "attempts") + attempts;
        }
    }
}

} // namespace

json::array newDepartments() {
    json::array all;
    for (const Task& task : tasks()) {
        all.emplace_back(json::object{{"id", task.id},
                                      {"role", task.role},
                                      {"phase", task.phase},
                                      {"dependsOn", textList(task.dependsOn)},
                                      {"synthesis", task.synthesis},
                                      {"status", "pending"},
                                      {"attempts", 0}});
    }
    return all;
}

void completeTasks(json::object& project, std::string_view phase) {
    markTasks(project, phase, "completed", 1);
}

void reopenTasks(json::object& project, std::string_view phase) { markTasks(project, phase, "pending", 0); }

} // namespace film
