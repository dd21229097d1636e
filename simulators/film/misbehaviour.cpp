// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <map>
#include <string>
#include <utility>

#include "common/program.hpp"
#include "documents.hpp"

namespace simulator::film {
namespace {

constexpr int failed = 4;

/// Of each reply that is read: a key to remove and a key to give another type.
const std::map<std::string_view, std::pair<const char*, const char*>> keys{
    {"status", {"proof", "shots"}},
    {"export-vistrel", {"manifestSha256", "bytes"}},
    {"agent", {"cwd", "environment"}}};

/// An invented reply in the form of the real one.
json::object sampleReply(std::string_view command) {
    json::object replies = documentTemplate("replies.json");
    if (command == "plan")
        return {{"ok", true}, {"status", replies.at("status")}};
    return replies.contains(command) ? recordOf(replies, command) : json::object{{"ok", true}};
}

/// Lacks a key that every reader of this reply needs.
json::object replyWithoutKey(std::string_view command) {
    json::object reply = sampleReply(command);
    const auto found = keys.find(command);
    if (command == "plan")
        recordOf(reply, "status").erase("runManifest");
    else if (found != keys.end())
        reply.erase(found->second.first);
    else
        reply.erase("ok");
    return reply;
}

/// Has another type where every reader of this reply needs a certain one.
json::object replyOfWrongType(std::string_view command) {
    json::object reply = sampleReply(command);
    const auto found = keys.find(command);
    if (command == "plan")
        recordOf(reply, "status")["runManifest"] = 7;
    else if (found != keys.end())
        reply[found->second.second] = json::array();
    else
        reply["ok"] = json::array();
    return reply;
}

} // namespace

std::vector<Misbehaviour> misbehaviours(const Command& command, bool& cutOff) {
    return {
        {"not-json", [&] { return print("The command \"" + command.word + "\" has been carried out."); }},
        {"missing-key", [&] { return print(json::serialize(replyWithoutKey(command.word))); }},
        {"wrong-type", [&] { return print(json::serialize(replyOfWrongType(command.word))); }},
        {"noise",
         [&] { return print("[info] opening the film\n" + json::serialize(sampleReply(command.word))); }},
        {"flood", [&] { return flood(json::serialize(sampleReply(command.word))); }},
        {"exit-4", [] { return failed; }},
        {"complain",
         [] { return complain("The projector has lost a reel. Try again after the intermission.", failed); }},
        {"slow", [] { return waitForRelease("FILM_RELEASE"); }},
        {"stubborn", [] { return waitStubbornly("FILM_RELEASE"); }},
        {"killed", []() -> int { dieByKill(); }},
        {"cut-off",
         [&]() -> std::optional<int> {
             if (command.word != "run")
                 return complain("FILM_MISBEHAVE: only \"run\" can be cut off", misused);
             cutOff = true;
             return std::nullopt;
         }},
    };
}

} // namespace simulator::film
