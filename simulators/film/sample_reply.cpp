// SPDX-License-Identifier: Apache-2.0

#include "sample_reply.hpp"

#include <map>
#include <utility>

#include "documents.hpp"

namespace simulator::film {
namespace {

/// Of each reply that is read: a key to remove and a key to give another type.
const std::map<std::string_view, std::pair<const char*, const char*>> keys{
    {"status", {"proof", "shots"}},
    {"export-vistrel", {"manifestSha256", "bytes"}},
    {"agent", {"cwd", "environment"}}};

} // namespace

json::object sampleReply(std::string_view command) {
    json::object replies = documentTemplate("replies.json");
    if (command == "plan")
        return {{"ok", true}, {"status", replies.at("status")}};
    return replies.contains(command) ? recordOf(replies, command) : json::object{{"ok", true}};
}

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

} // namespace simulator::film
