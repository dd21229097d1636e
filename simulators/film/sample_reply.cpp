// SPDX-License-Identifier: Apache-2.0

#include "sample_reply.hpp"

#include <array>

#include "agent_launch.hpp"
#include "phases.hpp"
#include "vistrel_manifest.hpp"

namespace film {
namespace {

json::object noProof() {
    json::object proof;
    for (const char* flag : {"creation", "clips", "assembly", "dialogue", "sound", "captions", "inspection",
                             "review", "humanReview", "delivery"}) {
        proof[flag] = false;
    }
    return proof;
}

json::object sampleStatus() {
    return {{"contractVersion", "quexrun/film-status.v1"},
            {"runId", "run-sample"},
            {"projectId", "film-sample"},
            {"title", "Sample"},
            {"status", "waiting-for-approval"},
            {"phase", "plan"},
            {"nextGate", "plan"},
            {"openQuestions", json::array()},
            {"approvals", newApprovals()},
            {"taskCounts", json::object{{"pending", 14}}},
            {"shots", 3},
            {"reviewRequests", json::array()},
            {"jobs", 0},
            {"artifacts", 0},
            {"issues", json::array()},
            {"proof", noProof()},
            {"productionMode", "stand-in"},
            {"takesPerShot", 1},
            {"projectDirectory", "/films/sample"},
            {"runManifest", "/films/sample/run.json"}};
}

json::object sampleReceipt() {
    return {{"ok", true},
            {"contractVersion", handoffContract},
            {"manifest", "/films/sample/vistrel-handoff.json"},
            {"manifestSha256", "sha256:" + std::string(64, '0')},
            {"projectId", "film-sample"},
            {"shots", 3},
            {"assets", 5},
            {"bytes", 1234},
            {"runId", "run-sample"}};
}

/// Per command: the key that is taken away and the one whose value is exchanged.
struct Weak {
    std::string_view word;
    const char *missing, *mistyped;
};

constexpr std::array<Weak, 3> weakKeys{{{"status", "proof", "shots"},
                                        {"export-vistrel", "manifestSha256", "bytes"},
                                        {"agent", "cwd", "environment"}}};

const Weak& weakKeysOf(const Command& command) {
    static constexpr Weak other{"", "ok", "ok"};
    for (const Weak& weak : weakKeys)
        if (weak.word == command.word)
            return weak;
    return other;
}

} // namespace

json::object sampleReply(const Command& command) {
    if (command.word == "status")
        return sampleStatus();
    if (command.word == "plan")
        return {{"ok", true}, {"status", sampleStatus()}};
    if (command.word == "export-vistrel")
        return sampleReceipt();
    if (command.word == "agent")
        return launchReply("pi", "film", "/films/sample/run.json");
    return {{"ok", true}};
}

json::object replyWithoutKey(const Command& command) {
    json::object reply = sampleReply(command);
    if (command.word == "plan")
        recordOf(reply, "status").erase("runManifest");
    else
        reply.erase(weakKeysOf(command).missing);
    return reply;
}

json::object replyOfWrongType(const Command& command) {
    json::object reply = sampleReply(command);
    if (command.word == "plan")
        recordOf(reply, "status")["runManifest"] = 7;
    else
        reply[weakKeysOf(command).mistyped] = json::array();
    return reply;
}

} // namespace film
