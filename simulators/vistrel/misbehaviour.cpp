// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <array>
#include <iostream>
#include <string>

namespace simulator::vistrel {
namespace {

std::string sampleReceipt(bool ok) {
    return std::string(R"({"ok":)") + (ok ? "true" : "false") +
           R"(,"project_id":"vistrel_sample","episode_id":"vistrel_sample_episode_1","imported_scenes":2,)"
           R"("imported_shots":3,"imported_assets":5,"project_url":"vistrel://projects/vistrel_sample"})";
}

constexpr const char* camelCaseReceipt =
    R"({"ok":true,"projectId":"vistrel_sample","episodeId":"vistrel_sample_episode_1","importedScenes":2,)"
    R"("importedShots":3,"importedAssets":5,"projectUrl":"vistrel://projects/vistrel_sample"})";

/// Writes far more than a pipe holds to both streams in turn: a reader of only one of them never finishes.
int flood() {
    constexpr std::size_t chunkSize = std::size_t{64} << 10U;
    constexpr std::size_t chunks = 128;
    const std::string padding(chunkSize, ' ');
    std::string log;
    while (log.size() < chunkSize)
        log += "[debug] examining the film again\n";
    log.resize(chunkSize - 1);
    log += '\n';
    std::cout << sampleReceipt(true);
    for (std::size_t chunk = 0; chunk < chunks; ++chunk) {
        std::cout << padding << std::flush;
        std::cerr << log << std::flush;
    }
    return print("");
}

} // namespace

std::span<const Misbehaviour> misbehaviours() {
    static const std::array<Misbehaviour, 7> all{
        {{"not-json", [] { return print("The film has been imported."); }},
         {"camel-case", [] { return print(camelCaseReceipt); }},
         {"not-ok", [] { return print(sampleReceipt(false)); }},
         {"exit-3", [] { return 3; }},
         {"noise", [] { return print("[info] opening the library\n" + sampleReceipt(true)); }},
         {"flood", flood},
         {"killed", []() -> int { dieByKill(); }}}};
    return all;
}

} // namespace simulator::vistrel
